#pragma once

#include "tools/Random.h"

#include <array>
#include <cstddef>

// Noise with mean 0 and deviation 1 that looks like turbulence: slow swings are large, quick ones small.
//
// A sum of first-order autoregressive processes whose time scales lie a factor 8 apart and whose amplitudes
// double from one to the next, which is near the -5/3 slope of the spectrum of wind and temperature.
class ColouredNoise {
public:
    static constexpr std::size_t maximumScales = 4;

    // `scales` processes, the quickest with the time scale `fastest`, sampled every `step` (both in seconds).
    ColouredNoise(Random random, std::size_t scales, double fastest, double step);

    double next() {
        double sum = 0;
        for (std::size_t i = 0; i < scales_; ++i) {
            Process &process = processes_[i];
            process.value = process.memory * process.value + process.push * random_.normal();
            sum += process.value;
        }
        return sum;
    }

private:
    struct Process {
        double memory = 0;
        double push = 0;
        double value = 0;
    };

    Random random_;
    std::size_t scales_;
    std::array<Process, maximumScales> processes_;
};

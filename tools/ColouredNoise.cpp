#include "tools/ColouredNoise.h"

#include <algorithm>
#include <cmath>

ColouredNoise::ColouredNoise(Random random, std::size_t scales, double fastest, double step)
    : random_(random), scales_(std::min(scales, maximumScales)), processes_() {
    double power = 0;
    double weight = 1;
    for (std::size_t i = 0; i < scales_; ++i, weight *= 2) {
        power += weight * weight;
    }
    double scale = fastest;
    weight = 1 / std::sqrt(power);
    for (std::size_t i = 0; i < scales_; ++i, weight *= 2, scale *= 8) {
        Process &process = processes_[i];
        process.memory = scale / (scale + step);
        process.push = weight * std::sqrt(1 - process.memory * process.memory);
        // Starts in its steady state: a file's first minutes look like its later ones.
        process.value = weight * random_.normal();
    }
}

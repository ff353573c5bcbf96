#pragma once

#include <cstdint>

// A stream of pseudo-random numbers (splitmix64).
//
// The same seed and stream number give the same numbers on every machine and compiler: only integers and
// exactly rounded operations are used. Streams of one seed are independent, so a signal that draws more
// numbers than before leaves the other signals as they were.
class Random {
public:
    Random(std::uint64_t seed, std::uint64_t stream) : state_(mix(seed + mix(stream))) {}

    std::uint64_t next() {
        state_ += 0x9e3779b97f4a7c15U;
        return mix(state_);
    }

    // 0 <= uniform() < 1
    double uniform() { return static_cast<double>(next() >> 11U) * 0x1p-53; }
    double uniform(double from, double to) { return from + (to - from) * uniform(); }

    bool happens(double probability) { return uniform() < probability; }

    // Nearly normal with mean 0 and deviation 1, never beyond 3.47: the sum of four 16-bit numbers.
    double normal() {
        const std::uint64_t bits = next();
        const std::uint64_t sum =
            (bits & 0xffffU) + ((bits >> 16U) & 0xffffU) + ((bits >> 32U) & 0xffffU) + (bits >> 48U);
        return (static_cast<double>(sum) - 131070.0) * (1.0 / 37837.22725);
    }

private:
    static std::uint64_t mix(std::uint64_t z) {
        z = (z ^ (z >> 30U)) * 0xbf58476d1ce4e5b9U;
        z = (z ^ (z >> 27U)) * 0x94d049bb133111ebU;
        return z ^ (z >> 31U);
    }

    std::uint64_t state_;
};

#pragma once

#include "tools/ColouredNoise.h"
#include "tools/Random.h"

// How much light comes through an analyser's open path: 1 for clean mirrors, 0 for none.
//
// Mirrors get dirty over hours. Drops or an animal block the path for some seconds and leave dirt: often in a
// shower, now and then without one.
class OpticalPath {
public:
    OpticalPath(std::uint64_t seed, unsigned rate);

    void advanceSecond();
    double nextSample();
    void clean() { dirt_ = 0.02; }

    bool isRaining() const { return showerSeconds_ > 0; }
    bool isBlocked() const { return blockedSeconds_ > 0; }
    double dirt() const { return dirt_; }

private:
    double step_;
    Random random_;
    ColouredNoise flicker_;
    double dirt_ = 0.08;
    double cover_ = 0;
    int showerSeconds_ = 0;
    int blockedSeconds_ = 0;
    double level_ = 0.92;
};

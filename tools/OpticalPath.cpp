#include "tools/OpticalPath.h"

#include <algorithm>

OpticalPath::OpticalPath(std::uint64_t seed, unsigned rate)
    : step_(1.0 / rate), random_(seed, 200), flicker_({seed, 201}, 2, 0.5, step_) {}

void OpticalPath::advanceSecond() {
    dirt_ = std::min(0.7, dirt_ + 2e-5 * random_.uniform());
    if (showerSeconds_ > 0) {
        --showerSeconds_;
    } else if (random_.happens(1.0 / 40000)) {
        showerSeconds_ = static_cast<int>(random_.uniform(600, 5400));
    }
    if (blockedSeconds_ > 0) {
        --blockedSeconds_;
        if (blockedSeconds_ == 0) {
            dirt_ = std::min(0.7, dirt_ + random_.uniform(0.02, 0.3));
        }
    } else if (random_.happens(isRaining() ? 1.0 / 200 : 1.0 / 8000)) {
        blockedSeconds_ = static_cast<int>(random_.uniform(6, 40));
        cover_ = random_.uniform(0.85, 1);
    }
}

double OpticalPath::nextSample() {
    const double target = (1 - dirt_) * (isBlocked() ? 1 - cover_ : 1);
    level_ += (target - level_) * std::min(1.0, step_ / 0.7);
    return std::clamp(level_ * (1 + 0.006 * flicker_.next()), 0.0, 1.0);
}

#pragma once

#include <cstdint>

// Sine of a full circle's `turns`, within 4e-6. Written out because the last digit of a library's sine
// differs between machines.
inline double sineOfTurns(double turns) {
    turns -= static_cast<double>(static_cast<std::int64_t>(turns));
    if (turns < 0) {
        turns += 1;
    }
    if (turns > 0.75) {
        turns -= 1;
    } else if (turns > 0.25) {
        turns = 0.5 - turns;
    }
    const double x = turns * 6.283185307179586;
    const double y = x * x;
    return x * (1 - y * (1.0 / 6 - y * (1.0 / 120 - y * (1.0 / 5040 - y * (1.0 / 362880)))));
}

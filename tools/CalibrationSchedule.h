#pragma once

#include "tools/Random.h"

#include <cstdint>

// When an analyser checks itself with gas from a bottle: once in every period, at a place that the seed
// decides. It writes no records while the bottle's gas flows; the valves take a few seconds before and after.
class CalibrationSchedule {
public:
    CalibrationSchedule(std::uint64_t seed, std::int64_t periodSeconds)
        : period_(periodSeconds),
          begin_(
              static_cast<std::int64_t>(Random(seed, 300).uniform() * static_cast<double>(periodSeconds))) {}

    bool isCalibrating(std::int64_t utc) const { return sinceBegin(utc) < valveSeconds * 2 + gasSeconds; }
    bool isGasFlowing(std::int64_t utc) const {
        const std::int64_t since = sinceBegin(utc);
        return since >= valveSeconds && since < valveSeconds + gasSeconds;
    }

private:
    static constexpr std::int64_t valveSeconds = 5;
    static constexpr std::int64_t gasSeconds = 40;

    std::int64_t sinceBegin(std::int64_t utc) const { return ((utc - begin_) % period_ + period_) % period_; }

    std::int64_t period_;
    std::int64_t begin_;
};

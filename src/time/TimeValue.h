#pragma once

#include <cstdint>
#include <string>

// A point in time (UTC since 1970) or the difference of two. A difference may have negative parts.
struct TimeValue {
    std::int64_t seconds = 0;     // records lie up to 4294967295 s apart
    std::int32_t nanoseconds = 0; // 0 to 999999999 for a point in time
};

// Decimal seconds, a point and nine digits of nanoseconds: "5.000000007", "-0.250000000".
std::string formatSecondsNanos(TimeValue value);

#pragma once

#include "data/Record.h"

#include <cstdint>
#include <initializer_list>

// 2021-06-30 13:30:00.5 UTC in a zone at `utcOffset` seconds east, whose local time the caller may change.
inline Record recordAtHalfPastOne(std::initializer_list<double> values, std::int32_t utcOffset = 0) {
    Record record;
    record.seconds = 1625059800;
    record.nanoseconds = 500'000'000;
    record.utcOffset = utcOffset;
    record.year = 2021;
    record.month = 6;
    record.day = 30;
    record.hour = static_cast<std::uint8_t>(13 + utcOffset / 3600);
    record.minute = 30;
    record.values = values;
    return record;
}

#pragma once

#include <cstdint>
#include <vector>

// When a record was taken and what its diagnostic word said: all of a record but its values.
struct RecordStamp {
    std::uint32_t seconds = 0;     // UTC since 1970
    std::uint32_t nanoseconds = 0; // of the second
    std::uint32_t diagnosticWord = 0;
    std::int32_t utcOffset = 0; // of the local time below, seconds east of UTC
    std::uint16_t year = 0;     // local calendar time
    std::uint8_t month = 0;     // 1 to 12
    std::uint8_t day = 0;       // 1 to 31
    std::uint8_t hour = 0;
    std::uint8_t minute = 0;
    std::uint8_t second = 0;
    std::uint8_t flags = 0; // hasDate, hasTimeOfDay

    static constexpr std::uint8_t hasDate = 1;
    static constexpr std::uint8_t hasTimeOfDay = 2;
};

// One line of measured values.
struct Record : RecordStamp {
    std::vector<double> values; // one for each value column
};

// UTC seconds with their fraction: the x value of plots and the order of fragments.
inline double timeOf(const RecordStamp &stamp) {
    return static_cast<double>(stamp.seconds) + static_cast<double>(stamp.nanoseconds) / 1e9;
}

// The two bounds that stand for "from the first record" and "to the last record" in queries by time.
inline constexpr double wholeRangeStart = 0.0;
inline constexpr double wholeRangeEnd = 2147483648.0;

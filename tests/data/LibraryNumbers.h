#pragma once

#include "SmallHexadecimal.h"
#include "data/NumberReading.h"
#include "support/HeapText.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <string_view>

// Numbers as they are read here, and as the C library reads them.

// A number that was read and how many bytes it took; no bytes when there was none.
template <typename Number>
struct NumberFound {
    Number value = 0;
    std::ptrdiff_t length = 0;
};

inline NumberFound<float> readFloatFrom(std::string_view text) {
    const HeapText copy(text);
    TextCursor cursor{copy.begin(), copy.end()};
    NumberFound<float> reading;
    reading.length = readFloat(cursor, reading.value) ? cursor.at - copy.begin() : 0;
    return reading;
}

inline NumberFound<std::int64_t> readIntegerFrom(std::string_view text) {
    const HeapText copy(text);
    TextCursor cursor{copy.begin(), copy.end()};
    NumberFound<std::int64_t> reading;
    reading.length = readInteger(cursor, reading.value) ? cursor.at - copy.begin() : 0;
    return reading;
}

// What strtof gives, but for hexadecimal numbers below the normal range, which it rounds wrongly.
inline NumberFound<float> strtofFrom(const std::string &text) {
    char *end = nullptr;
    float value = std::strtof(text.c_str(), &end);
    const std::string_view taken(text.c_str(), static_cast<std::size_t>(end - text.c_str()));
    const auto prefix = std::min(taken.find("0x"), taken.find("0X"));
    if (prefix != std::string_view::npos && std::abs(value) <= std::numeric_limits<float>::min()) {
        value = std::copysign(nearestSmallHexadecimal(taken.substr(prefix)), value);
    }
    return {value, taken.end() - taken.begin()};
}

inline NumberFound<std::int64_t> strtollFrom(const std::string &text) {
    char *end = nullptr;
    const std::int64_t value = std::strtoll(text.c_str(), &end, 10);
    return {value, end - text.c_str()};
}

inline bool isSame(const NumberFound<float> &a, const NumberFound<float> &b) {
    if (a.length != b.length || a.length == 0) {
        return a.length == b.length;
    }
    if (std::isnan(a.value) || std::isnan(b.value)) {
        return std::isnan(a.value) && std::isnan(b.value) && std::signbit(a.value) == std::signbit(b.value);
    }
    return std::bit_cast<std::uint32_t>(a.value) == std::bit_cast<std::uint32_t>(b.value);
}

inline bool isSame(const NumberFound<std::int64_t> &a, const NumberFound<std::int64_t> &b) {
    return a.length == b.length && (a.length == 0 || a.value == b.value);
}

template <typename Number>
std::string describe(const NumberFound<Number> &reading) {
    return reading.length == 0
               ? "nothing"
               : testing::PrintToString(reading.value) + " in " + std::to_string(reading.length) + " bytes";
}

inline testing::AssertionResult readsAsStrtof(const std::string &text) {
    const NumberFound<float> actual = readFloatFrom(text);
    const NumberFound<float> expected = strtofFrom(text);
    if (isSame(actual, expected)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << testing::PrintToString(text) << " gives " << describe(actual)
                                       << ", strtof " << describe(expected);
}

inline testing::AssertionResult readsAsStrtoll(const std::string &text) {
    const NumberFound<std::int64_t> actual = readIntegerFrom(text);
    const NumberFound<std::int64_t> expected = strtollFrom(text);
    if (isSame(actual, expected)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << testing::PrintToString(text) << " gives " << describe(actual)
                                       << ", strtoll " << describe(expected);
}

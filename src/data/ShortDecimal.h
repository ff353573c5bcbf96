#pragma once

#include "data/EightBytes.h"

#include <cstdint>

// The powers of ten that are singles without rounding.
inline constexpr float exactPowersOfTen[] = {1e0F, 1e1F, 1e2F, 1e3F, 1e4F, 1e5F,
                                             1e6F, 1e7F, 1e8F, 1e9F, 1e10F};

// Digits with a point somewhere among them, or none, that fill up to eight bytes.
struct ShortDecimal {
    std::uint32_t digits = 0;   // their number without the point
    std::uint32_t fraction = 0; // how many stand behind the point
};

// Without a name, as it is also built for processors of one kind only.
namespace {

// Reads the decimal in the last `length` of the eight bytes before `end`, 1 to 8; without sign. False for any
// other text.
[[maybe_unused]] inline bool readShortDecimal(const char *end, unsigned length, ShortDecimal &decimal) {
    if constexpr (!canTakeEightBytes) {
        return false;
    }
    // The bytes before the decimal become zeros.
    const std::uint64_t bytes = eightDigitsAt(end - 8) >> (64 - 8 * length) << (64 - 8 * length);
    const std::uint64_t others = noDigitsIn(bytes);
    std::uint64_t digits = bytes;
    decimal.fraction = 0;
    if (others != 0) {
        // The first one must be the point and the only one, with a digit beside it.
        const auto place = static_cast<unsigned>(firstPlaceOf(others));
        const std::uint64_t belowPoint = (std::uint64_t{1} << 8 * place) - 1;
        if (end[static_cast<int>(place) - 8] != '.' || (others & (others - 1)) != 0 || length == 1) {
            return false;
        }
        decimal.fraction = 7 - place;
        digits = (bytes & belowPoint) << 8 | (bytes & ~belowPoint & ~(std::uint64_t{0xFF} << 8 * place));
    }
    decimal.digits = numberOf(digits);
    return true;
}

// Reads a decimal of at most eight bytes that begins at `at`, without sign, and stands before a tab; more
// than eight bytes before the line's end. Gives how many bytes it has, 0 for any other text.
[[maybe_unused]] inline int takeShortDecimal(const char *at, const char *lineEnd, ShortDecimal &decimal) {
    constexpr int width = 8;
    if (!canTakeEightBytes || lineEnd - at <= width) {
        return 0;
    }
    const std::uint64_t bytes = eightDigitsAt(at);
    std::uint64_t others = noDigitsIn(bytes);
    const int whole = firstPlaceOf(others);
    if (others != 0 && whole != 0 && at[whole] == '\t') {
        decimal.digits = numberOf(bytes << (8 * (width - whole)));
        decimal.fraction = 0;
        return whole;
    }
    const bool hasPoint = whole < width && at[whole] == '.';
    others &= hasPoint ? others - 1 : others;
    const int length = firstPlaceOf(others);
    const int count = length - (hasPoint ? 1 : 0);
    if (at[length] != '\t' || count == 0) {
        return 0;
    }
    // The digits move together and to the end of the eight bytes, behind zeros.
    const std::uint64_t wholeBits = whole == width ? ~std::uint64_t{0} : (std::uint64_t{1} << 8 * whole) - 1;
    const std::uint64_t digits = (bytes & wholeBits) | (hasPoint ? (bytes >> 8) & ~wholeBits : 0);
    decimal.digits = numberOf(digits << (8 * (width - count)));
    decimal.fraction = static_cast<std::uint32_t>(hasPoint ? length - whole - 1 : 0);
    return length;
}

// The single nearest to it: without a point the number is rounded once; with one it has at most seven digits,
// which a single holds, and so the quotient is rounded once.
[[maybe_unused]] inline float valueOf(const ShortDecimal &decimal) {
    const auto digits = static_cast<float>(decimal.digits);
    return decimal.fraction == 0 ? digits : digits / exactPowersOfTen[decimal.fraction];
}

} // namespace

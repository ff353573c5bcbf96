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

} // namespace

#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

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
// other text. On machines with the low byte first only.
[[maybe_unused]] inline bool readShortDecimal(const char *end, unsigned length, ShortDecimal &decimal) {
    static_assert(sizeof(std::uint64_t) == 8);
    if constexpr (std::endian::native != std::endian::little) {
        return false;
    }
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, end - 8, 8);
    // Digits become their value, all other bytes more than 9, those before the decimal 0.
    bytes = (bytes ^ 0x3030303030303030) >> (64 - 8 * length) << (64 - 8 * length);
    constexpr std::uint64_t highBits = 0x8080808080808080;
    const std::uint64_t others = ((bytes + 0x7676767676767676) | bytes) & highBits;
    std::uint64_t digits = bytes;
    decimal.fraction = 0;
    if (others != 0) {
        // The first one must be the point and the only one, with a digit beside it.
        const auto place = static_cast<unsigned>(__builtin_ctzll(others)) / 8;
        const std::uint64_t belowPoint = (std::uint64_t{1} << 8 * place) - 1;
        if (end[static_cast<int>(place) - 8] != '.' || (others & (others - 1)) != 0 || length == 1) {
            return false;
        }
        decimal.fraction = 7 - place;
        digits = (bytes & belowPoint) << 8 | (bytes & ~belowPoint & ~(std::uint64_t{0xFF} << 8 * place));
    }
    // Neighbouring digits are joined to pairs, pairs to fours, fours to the number.
    digits = digits * 10 + (digits >> 8);
    constexpr std::uint64_t everyFourth = 0x000000FF000000FF;
    digits =
        ((digits & everyFourth) * 0x000F424000000064 + ((digits >> 16) & everyFourth) * 0x0000271000000001) >>
        32;
    decimal.digits = static_cast<std::uint32_t>(digits);
    return true;
}

} // namespace

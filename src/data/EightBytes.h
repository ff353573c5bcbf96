#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

// Eight characters of a text in one integer, the first one in the lowest byte: worth its while only where the
// machine loads them so. Without a name, as it is also built for processors of one kind only.
namespace {

constexpr bool canTakeEightBytes = std::endian::native == std::endian::little;

// Digits become their value, all other bytes more than 9.
[[maybe_unused]] inline std::uint64_t eightDigitsAt(const char *at) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, at, sizeof bytes);
    return bytes ^ 0x3030303030303030;
}

// The highest bit of each byte that is more than 9. Exact up to the second one, if the first is the point or
// a separator; none is lost in any case.
[[maybe_unused]] inline std::uint64_t noDigitsIn(std::uint64_t bytes) {
    return ((bytes + 0x7676767676767676) | bytes) & 0x8080808080808080;
}

// In which byte the first of the bits above is; 8 for none.
[[maybe_unused]] inline int firstPlaceOf(std::uint64_t highBits) {
    return highBits == 0 ? 8 : __builtin_ctzll(highBits) / 8;
}

// Ten times each byte and the next one.
[[maybe_unused]] inline std::uint64_t joinedToPairs(std::uint64_t digits) {
    return digits * 10 + (digits >> 8);
}

// The number that eight digits make.
[[maybe_unused]] inline std::uint32_t numberOf(std::uint64_t digits) {
    // Neighbouring digits are joined to pairs, pairs to fours, fours to the number.
    const std::uint64_t pairs = joinedToPairs(digits);
    constexpr std::uint64_t everyFourth = 0x000000FF000000FF;
    return static_cast<std::uint32_t>(
        ((pairs & everyFourth) * 0x000F424000000064 + ((pairs >> 16) & everyFourth) * 0x0000271000000001) >>
        32);
}

} // namespace

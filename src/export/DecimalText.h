#pragma once

#include <charconv>
#include <cstdint>

// Writes `number` in decimal, padded with zeros to at least `digits` digits, and returns the end. `out` has
// room for the digits or 10 characters, whichever is more.
inline char *writeDecimal(char *out, std::uint32_t number, int digits = 1) {
    std::uint32_t limit = 10;
    for (; digits > 1; --digits, limit *= 10) {
        if (number < limit) {
            *out++ = '0';
        }
    }
    return std::to_chars(out, out + 10, number).ptr;
}

#pragma once

#include <cstdint>
#include <string_view>

// Reading numbers from a line the way the C library's strtol and strtof read them in the "C" locale, but
// within a view that has no end marker and under any locale.

class PlainFields;

// What is still to be read of a line.
struct TextCursor {
    const char *at;
    const char *end;
};

// The six white-space characters of the "C" locale.
constexpr bool isWhiteSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

inline void skipWhiteSpace(TextCursor &cursor) {
    while (cursor.at != cursor.end && isWhiteSpace(*cursor.at)) {
        ++cursor.at;
    }
}

// White space, a sign, decimal digits. Clamps to 64 bits as strtol does. False, with the cursor anywhere,
// when no digit is found.
bool readInteger(TextCursor &cursor, std::int64_t &value);

// White space, a sign, then a decimal or hexadecimal number, "inf", "infinity" or "nan". Beyond the range of
// single precision the result is an infinity or zero. False, with the cursor anywhere, when nothing can be
// read.
bool readFloat(TextCursor &cursor, float &value);

// Passes over `count` numbers one behind the other; `plain` is the line's. Moves the cursor, and fails,
// exactly as readFloat() does when it is called for each of them, but turns nothing into numbers.
bool passFloats(TextCursor &cursor, std::uint32_t count, PlainFields &plain);

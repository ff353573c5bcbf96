#include "data/ClockFields.h"

#include "data/EightBytes.h"

namespace {

// Takes the pairs of digits at `at`, eight bytes with `separator` where `separators` has a byte of ones; a
// pair is in the byte of its first digit. False when anything else is there.
bool takePairs(const char *at, char separator, std::uint64_t separators, std::uint64_t &pairs) {
    const std::uint64_t bytes = eightDigitsAt(at);
    const std::uint64_t digits = bytes & ~separators;
    const std::uint64_t every = 0x0101010101010101 * static_cast<std::uint64_t>(separator ^ '0');
    pairs = joinedToPairs(digits);
    return noDigitsIn(digits) == 0 && ((bytes ^ every) & separators) == 0;
}

std::uint8_t byteOf(std::uint64_t bytes, int place) {
    return static_cast<std::uint8_t>(bytes >> 8 * place);
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

} // namespace

bool readPlainDate(TextCursor &cursor, RecordStamp &stamp) {
    constexpr std::ptrdiff_t length = 12; // with both tabs
    const char *const text = cursor.at + 1;
    if (!canTakeEightBytes || cursor.end - cursor.at < length || *cursor.at != '\t' || text[10] != '\t' ||
        !isDigit(text[8]) || !isDigit(text[9])) {
        return false;
    }
    std::uint64_t pairs = 0;
    if (!takePairs(text, '-', 0xFF0000FF00000000, pairs)) {
        return false;
    }
    stamp.year = static_cast<std::uint16_t>(byteOf(pairs, 0) * 100 + byteOf(pairs, 2));
    stamp.month = byteOf(pairs, 5);
    stamp.day = static_cast<std::uint8_t>((text[8] - '0') * 10 + (text[9] - '0'));
    cursor.at += length - 1;
    return true;
}

bool readPlainTimeOfDay(TextCursor &cursor, RecordStamp &stamp) {
    constexpr std::ptrdiff_t length = 14; // with both tabs and milliseconds
    const char *const text = cursor.at + 1;
    if (!canTakeEightBytes || cursor.end - cursor.at < length || *cursor.at != '\t') {
        return false;
    }
    std::uint64_t pairs = 0;
    if (!takePairs(text, ':', 0x0000FF0000FF0000, pairs)) {
        return false;
    }
    std::ptrdiff_t end = 8;
    if (text[end] == ':' && text[12] == '\t' && isDigit(text[9]) && isDigit(text[10]) && isDigit(text[11])) {
        const int milliseconds = (text[9] - '0') * 100 + (text[10] - '0') * 10 + (text[11] - '0');
        stamp.nanoseconds = static_cast<std::uint32_t>(milliseconds) * 1000000U;
        end = 12;
    } else if (text[end] != '\t') {
        return false;
    }
    stamp.hour = byteOf(pairs, 0);
    stamp.minute = byteOf(pairs, 3);
    stamp.second = byteOf(pairs, 6);
    cursor.at = text + end;
    return true;
}

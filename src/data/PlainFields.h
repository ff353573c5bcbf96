#pragma once

#include "data/NumberReading.h"

#include <cstdint>

// Passes over the fields of a line that hold a plain decimal and nothing else, "\t-412.345" before the next
// tab or the line's end, many bytes at a time: nearly every field of an analyser's file does.
//
// Belongs to one line, and remembers what it saw of it beyond the fields that were passed.
class PlainFields {
public:
    explicit PlainFields(const TextCursor &cursor) : window_(cursor.at) {}

    // Moves the cursor, which may have moved on meanwhile, over at most `count` such fields and gives how
    // many. It stops at any other text, which may still be a number.
    std::uint32_t pass(TextCursor &cursor, std::uint32_t count);

private:
    std::uint64_t endsBehind(const TextCursor &cursor);

    const char *window_; // where the bytes begin that were looked at last; a tab, unless there are no ends
    std::uint64_t ends_ = 0; // of the plain fields that follow each other from there, a bit for each byte
};

#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

// What a line reader has to deliver, found by plain rules over all bytes at once.
struct ReferenceLine {
    std::string_view text;
    std::uint64_t trueOffset;
    // Falls short by the bytes that the refills up to the line's end had to carry over.
    std::uint64_t reportedOffset;
};

struct ReferenceReading {
    std::vector<ReferenceLine> lines;
    // A line of more than 1 MiB ended the reading, before the bytes did.
    bool endsAtLongLine = false;
    std::uint64_t longLineOffset = 0;
};

ReferenceReading referenceReading(std::string_view bytes, std::uint64_t startOffset = 0);

#include "loading/support/ReferenceLines.h"

namespace {

constexpr std::uint64_t longestLine = 1'048'576;
constexpr std::uint64_t pieceLength = 8'388'608;

std::string_view withoutCarriageReturn(std::string_view text) {
    return !text.empty() && text.back() == '\r' ? text.substr(0, text.size() - 1) : text;
}

} // namespace

ReferenceReading referenceReading(std::string_view bytes, std::uint64_t startOffset) {
    ReferenceReading reading;
    std::uint64_t lineStart = startOffset;
    std::uint64_t nextBoundary = startOffset + pieceLength;
    std::uint64_t carried = 0;
    for (std::uint64_t at = startOffset; at < bytes.size(); ++at) {
        // The byte at a boundary can only be seen after a refill, which carries over what stands before it.
        if (at == nextBoundary) {
            carried += at - lineStart;
            nextBoundary += pieceLength;
        }
        if (bytes[at] != '\n') {
            continue;
        }
        const std::string_view text = withoutCarriageReturn(bytes.substr(lineStart, at - lineStart));
        if (text.size() > longestLine) {
            reading.endsAtLongLine = true;
            reading.longLineOffset = lineStart;
            return reading;
        }
        reading.lines.push_back({text, lineStart, lineStart - carried});
        lineStart = at + 1;
    }
    if (lineStart < bytes.size() && withoutCarriageReturn(bytes.substr(lineStart)).size() > longestLine) {
        reading.endsAtLongLine = true;
        reading.longLineOffset = lineStart;
    }
    return reading;
}

#include "data/ReadingBounds.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// `utcSeconds` as whole seconds, held to the range of a record's time; 0 for what is not a number.
std::uint32_t wholeSeconds(double utcSeconds) {
    constexpr double latest = std::numeric_limits<std::uint32_t>::max();
    return utcSeconds > 0 ? static_cast<std::uint32_t>(std::min(std::floor(utcSeconds), latest)) : 0;
}

} // namespace

// A clock may have stood at zero for the first records, whose time the fragment does not keep, or beyond the
// end marker for some: the markers limit nothing.
TimeBounds narrowedTo(const DataFragment &fragment, double start, double end) {
    return {start <= wholeRangeStart ? wholeRangeStart : std::max(start, fragment.firstTime()),
            end == wholeRangeEnd ? fragment.latestTime() : std::min(end, fragment.latestTime())};
}

std::uint64_t linesBegin(const DataFragment &fragment, std::size_t member, double start) {
    if (member > 0) {
        return 0;
    }
    // The index speaks of one member only.
    if (fragment.members().size() > 1) {
        return fragment.blockBegin();
    }
    // Its offsets fall short, so the first lines may be another block's.
    const std::uint64_t indexed =
        startOffsetFor(fragment, fragment.timesDependOnOrder() ? wholeRangeStart : start);
    return std::max(indexed, fragment.blockBegin());
}

std::uint64_t linesEnd(const DataFragment &fragment, std::size_t member) {
    const bool isLast = member + 1 == fragment.members().size();
    return isLast ? fragment.blockEnd() : std::numeric_limits<std::uint64_t>::max();
}

std::uint64_t startOffsetFor(const DataFragment &fragment, double start) {
    std::uint64_t offset = fragment.firstOffset();
    if (start != wholeRangeStart) {
        offset = fragment.halfHourIndex().offsetFor(wholeSeconds(start), offset);
    }
    return std::min(offset, fragment.endOffset());
}

std::uint64_t endOffsetFor(const DataFragment &fragment, double end) {
    std::uint64_t offset = fragment.endOffset();
    if (end != wholeRangeEnd) {
        offset = fragment.halfHourIndex().offsetBehind(std::ceil(end), offset);
    }
    return std::max(offset, fragment.firstOffset());
}

#pragma once

#include "data/DataFragment.h"

#include <cstddef>
#include <cstdint>

// Between which times, and from where in the source, one fragment's records are read again.

// UTC seconds, both inclusive.
struct TimeBounds {
    double start = 0;
    double end = 0;

    // Also true when a bound is not a number.
    bool areEmpty() const { return !(start <= end); }
};

// `start` and `end` (UTC seconds, or the whole-range bounds) as they limit the reading of `fragment`:
// narrowed to its own time range. When they are empty then, there is nothing to be opened.
TimeBounds narrowedTo(const DataFragment &fragment, double start, double end);

// True offsets between which the lines of `fragment` lie that are needed from `start` on (as above) in one of
// its archive members, by its place among them.
std::uint64_t linesBegin(const DataFragment &fragment, std::size_t member, double start);
std::uint64_t linesEnd(const DataFragment &fragment, std::size_t member);

// Byte offsets, as the line reader reports them, between which a fragment's records from `start` to `end`
// (UTC seconds, or the whole-range bounds) are read.
std::uint64_t startOffsetFor(const DataFragment &fragment, double start);
std::uint64_t endOffsetFor(const DataFragment &fragment, double end);

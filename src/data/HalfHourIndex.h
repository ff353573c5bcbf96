#pragma once

#include <cstdint>
#include <utility>
#include <vector>

// Where to start reading a block's source for a given time.
//
// Keys are half-hour boundaries in UTC seconds. A key is the boundary that was pending when its record came,
// so after a gap it lies before the record that it points to: the first one at or after the key. Offsets are
// bytes in the uncompressed source, as the line reader reports them. Filled while the source is read.
class HalfHourIndex {
public:
    // Starts the pending boundary at the half hour of the block's first record.
    void begin(std::uint32_t utcSeconds);
    // Makes room for one more record to be noted, or throws std::bad_alloc.
    void makeRoom();
    // Notes the record at `utcSeconds` when it reaches the pending boundary.
    void note(std::uint32_t utcSeconds, std::uint64_t offset);

    // Offset of the last entry at or before `utcSeconds`, else `fallback`. O(log n).
    std::uint64_t offsetFor(std::uint32_t utcSeconds, std::uint64_t fallback) const;
    // Offset of the first entry at or after `utcSeconds`, else `fallback`. O(log n).
    std::uint64_t offsetBehind(double utcSeconds, std::uint64_t fallback) const;

    using Entry = std::pair<std::uint32_t, std::uint64_t>;
    const std::vector<Entry> &entries() const { return entries_; }
    void releaseSpareMemory() { entries_.shrink_to_fit(); }

private:
    std::uint64_t pending_ =
        0; // wider than a time, so that the last half hour of the range does not wrap round
    std::vector<Entry> entries_; // keys ascending
};

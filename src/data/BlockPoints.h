#pragma once

#include "data/ColumnSelection.h"
#include "data/DataFragment.h"
#include "data/ReadingBounds.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Takes the points of some columns of one fragment from the lines of its source, which come in order: those
// that a DataFragment::_ContextType between the same times gives.
//
// Belongs to one thread; the fragment must outlive it.
class BlockPoints {
public:
    // From `start` to `end`, both inclusive, in UTC seconds or the whole-range bounds; the fragment's time
    // range meets them. `columns` are indices of its value columns.
    BlockPoints(const DataFragment &fragment, std::vector<std::uint32_t> columns, double start, double end);

    // The archive member whose lines it waits for.
    const SourceMember &member() const { return fragment_.members()[member_]; }
    // The true offsets between which those lines begin.
    std::uint64_t linesBegin() const;
    std::uint64_t linesEnd() const;

    // Takes a line that begins between these offsets. False when no more are needed.
    bool takeLine(std::string_view line);

    // Goes on to the block's next archive member; false when there is none or no more lines are needed.
    bool goToNextMember();

    const DataFragment &fragment() const { return fragment_; }
    std::vector<double> &times() { return times_; }
    // Parallel to the columns.
    std::vector<std::vector<double>> &values() { return values_; }

private:
    // What is needed only while lines come: there may be very many blocks in one source.
    struct Reading {
        Reading(const DataFragment &fragment, std::span<const std::uint32_t> columns);

        std::string prefix; // the tag and its tab
        ColumnSelection selection;
        RecordClock clock;
        Record record;
    };

    void takeRecord(double time);

    const DataFragment &fragment_;
    std::vector<std::uint32_t> columns_;
    TimeBounds bounds_;
    std::size_t member_ = 0;
    bool hasBegun_ = false; // a record at or after the start has come
    std::optional<Reading> reading_;
    std::vector<double> times_;
    std::vector<std::vector<double>> values_;
};

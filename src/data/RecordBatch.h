#pragma once

#include "data/AlignedDoubles.h"
#include "data/FieldReaders.h"
#include "data/Record.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

class DataFragment;

// A record line, and what its fields say once they are read.
struct ReadLine {
    DataFragment *block = nullptr; // takes the record
    std::string_view text;         // without the line's end
    std::uint64_t offset = 0;      // in the source, as the line reader reports it
    double *values = nullptr;      // one for each of the block's value columns
    RecordStamp stamp;
    FieldResult result = FieldResult::bad;
};

// Record lines that follow each other, of blocks whose columns are set up.
//
// Reading their fields depends on nothing but each line and its block's layout, so that any one thread may do
// it while another one fills the next batch. What depends on the lines before, their time and their place in
// sums and periods, is left to the thread that loads. All memory is taken at once, 300 kB: reading needs
// none.
class RecordBatch {
public:
    static constexpr std::size_t mostLines = 512;
    static constexpr std::size_t mostValues = std::size_t{32} * 1024;
    static constexpr std::size_t mostBytes = std::size_t{512} * 1024; // unless one line has more

    RecordBatch();

    // False when there is no room left for a line of `block`; one line always has room.
    bool hasRoomFor(const DataFragment &block) const;
    // `line` must hold until it has been read.
    void add(DataFragment &block, std::string_view line, std::uint64_t offset);
    void read() noexcept;

    // Those that were added, in that order.
    std::span<ReadLine> lines() { return {lines_.data(), lineCount_}; }
    bool isEmpty() const { return lineCount_ == 0; }
    void clear();

private:
    std::vector<ReadLine> lines_;
    AlignedDoubles values_;
    std::size_t lineCount_ = 0;
    std::size_t valueCount_ = 0; // with what fills up the last cache line of each record
    std::size_t byteCount_ = 0;
};

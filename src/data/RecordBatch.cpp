#include "data/RecordBatch.h"

#include "data/DataFragment.h"

static_assert(maximumValueColumns <= RecordBatch::mostValues);

RecordBatch::RecordBatch() : lines_(mostLines), values_(mostValues) {}

bool RecordBatch::hasRoomFor(const DataFragment &block) const {
    return lineCount_ < mostLines && byteCount_ < mostBytes &&
           valueCount_ + AlignedDoubles::roundedUp(block.valueCount()) <= mostValues;
}

void RecordBatch::add(DataFragment &block, std::string_view line, std::uint64_t offset) {
    ReadLine &added = lines_[lineCount_++];
    added.block = &block;
    added.text = line;
    added.offset = offset;
    added.values = values_.data() + valueCount_;
    valueCount_ += AlignedDoubles::roundedUp(block.valueCount());
    byteCount_ += line.size();
}

void RecordBatch::read() noexcept {
    const DataFragment *block = nullptr;
    // Looked up once for many lines: the loading thread writes beside them for each record.
    std::span<const FieldReader> readers;
    std::uint8_t checksumSeed = 0;
    std::size_t begin = 0;
    for (ReadLine &line : lines()) {
        if (line.block != block) {
            block = line.block;
            readers = block->layout().readers;
            checksumSeed = block->checksumSeed();
            begin = block->tag().size() + 1;
        }
        line.result = readFields(readers, checksumSeed, line.text.substr(begin), line.stamp, line.values);
    }
}

void RecordBatch::clear() {
    lineCount_ = valueCount_ = byteCount_ = 0;
}

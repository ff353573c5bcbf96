#pragma once

#include "data/DataFragment.h"
#include "data/DataSet.h"
#include "data/ReadingBounds.h"
#include "data/SourceReaders.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// Reads the records of one fragment between two times again from its source, in source order.
//
// Only the fragment's own records come: the bounds are narrowed to its time range, and lines of other blocks
// of the same source are passed over. Reading the whole range gives exactly the records that loading gave,
// unless the source has changed, is gone or cannot be read to the end any more: that gives one line on
// standard error. Belongs to one thread; the fragment must outlive it.
class DataFragment::_ContextType {
public:
    // From `start` to `end`, both inclusive, in UTC seconds or the whole-range bounds.
    _ContextType(const DataFragment &fragment, double start, double end);
    // The same as a part of a pass over many fragments, which have their `sources` in common.
    _ContextType(const DataFragment &fragment, double start, double end, SourceReaders &sources);
    ~_ContextType() = default;
    _ContextType(const _ContextType &) = delete;
    _ContextType &operator=(const _ContextType &) = delete;

    const Record &record() const { return record_; }
    bool isExhausted() const { return record_.values.empty(); }
    void advance();

private:
    bool openMember(std::size_t index);
    bool readNext();
    void exhaust();

    SourceReaders ownSources_;
    SourceReader &source_;
    const DataFragment &fragment_;
    TimeBounds bounds_;
    std::string prefix_; // the tag and its tab
    RecordClock clock_;
    std::size_t member_ = 0;     // index of the open archive member
    std::uint64_t linesEnd_ = 0; // true offset behind the block's lines in it
    Record record_;
};

// Reads the records of all fragments of one instrument and tag between two times, fragment after fragment in
// the data set's order. It walks a snapshot of the data set's list, so the set may change meanwhile.
class DataSet::_ContextType {
public:
    _ContextType(const DataSet &dataSet, std::string_view instrument, std::string_view tag, double start,
                 double end);
    // The same over the fragments of DataSet::fragmentsOf().
    _ContextType(std::vector<std::shared_ptr<const DataFragment>> fragments, double start, double end);

    // Empty when exhausted.
    const Record &record() const { return reader_ ? reader_->record() : exhausted_; }
    bool isExhausted() const { return reader_ == nullptr; }
    void advance();

private:
    void passOverExhausted();

    std::vector<std::shared_ptr<const DataFragment>> fragments_;
    std::size_t nextFragment_ = 0;
    double start_;
    double end_;
    std::unique_ptr<SourceReaders> sources_ = std::make_unique<SourceReaders>(); // the reader has one of them
    std::unique_ptr<DataFragment::_ContextType> reader_;                         // null when exhausted
    Record exhausted_;
};

#pragma once

#include "data/Accumulator.h"
#include "data/AveragedSeries.h"
#include "data/ColumnLayout.h"
#include "data/HalfHourIndex.h"
#include "data/MemoryAllowance.h"
#include "data/Record.h"
#include "data/RecordClock.h"
#include "time/Timezone.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <limits>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

class SourceState;

// Where a block of records comes from and what its key lines said when its header line came.
struct SourceHeader {
    std::string fileName;
    std::string subFileName; // archive member; empty for a plain file
    std::string instrument;
    std::string serialNumber;
    std::string softwareVersion;
    std::string timezone;
    std::uint32_t memberNumber = 0; // of the archive member, in the order of reading
    // What the file was like when it was loaded; null when nobody looked.
    std::shared_ptr<const SourceState> state = nullptr;
};

// A part of a source that is read on its own: an archive member, or a plain file as a whole.
struct SourceMember {
    std::string name;         // empty for a plain file
    std::uint32_t number = 0; // in the order of reading
};

// The names of a diagnostic word's bits. The fragments of a source share them: a damaged file may hold very
// many names, and very many header lines.
using DiagnosticNames = std::shared_ptr<const std::vector<std::string>>;

// What a line of names takes once it is split at its tabs.
std::uint64_t memoryOfNames(std::string_view names);
// What a block takes, without its columns' values and its periods, for its MemoryAllowance. The names are
// those of its header line, with the tabs between them.
std::uint64_t memoryOfBlock(const SourceHeader &header, std::string_view columnNames);

// One block of records of one source: a header line and the record lines of its tag that follow.
//
// Keeps the columns, the time range, an index into the source and averages, minima and maxima at four period
// lengths, but not the records, which are read again from the source. Filled by the one thread that reads the
// source; afterwards held by shared ownership and only read, from any thread.
class DataFragment {
public:
    class _ContextType; // reads the block's records again: data/RecordCursor.h

    static constexpr std::array<std::uint32_t, 4> periods{60, 300, 1800, 7200}; // s

    // Throws Timezone::Error when the header's zone cannot be loaded.
    DataFragment(const SourceHeader &header, std::string tag, std::vector<std::string> columnNames,
                 DiagnosticNames diagnosticNames);
    // In the header's zone, which has been loaded already.
    DataFragment(SourceHeader header, const Timezone &timezone, std::string tag,
                 std::vector<std::string> columnNames, DiagnosticNames diagnosticNames);
    DataFragment(const SourceHeader &header, std::string tag, std::vector<std::string> columnNames,
                 std::vector<std::string> diagnosticNames);

    // While loading.

    // What the block takes from now on for columns and periods; without one it takes what it likes.
    void setAllowance(std::shared_ptr<MemoryAllowance> allowance);
    // Names for the bits of the diagnostic word; they count until the first record line has come.
    void setDiagnosticNames(DiagnosticNames names);
    bool columnsAreSetUp() const { return columnsAreSetUp_; }
    // Binds the columns to their readers. Runs before the first record; throws std::length_error on a header
    // with too many columns, whose records are then all dropped, and MemoryAllowance::Exceeded. After
    // std::bad_alloc it can be called again.
    void setUpColumns();
    // Reads the record line and, when it is good, takes its record in. Throws MemoryAllowance::Exceeded when
    // it was the last for which there is memory. `lineOffset` is the line's offset in
    // the source as the line reader reports it.
    void acceptRecord(std::uint64_t lineOffset, std::string_view line);
    // True when acceptRecord would do nothing but read the line's fields by layout() and accept them.
    bool takesFields() const { return loading_ && columnsAreSetUp_ && !columnsAreRefused_; }
    // The second half of acceptRecord, for a line whose fields have been read into `stamp` and `values` with
    // this result. Only while takesFields().
    void acceptFields(std::uint64_t lineOffset, std::size_t lineLength, FieldResult result,
                      RecordStamp &stamp, const double *values);
    // Of a block whose source no other block of its tag follows.
    static constexpr std::uint64_t openEnd = std::numeric_limits<std::uint64_t>::max();
    // The block's lines lie between these true offsets, the header line first: the begin in its first archive
    // member, the end in its last.
    void setBlockBegin(std::uint64_t offset) { blockBegin_ = offset; }
    void setBlockEnd(std::uint64_t offset) { blockEnd_ = offset; }
    // The block runs on into another archive member.
    void continueIn(SourceMember member) { members_.push_back(std::move(member)); }
    // Gives back the memory that only loading needs; records that still come are dropped.
    void finishLoading();

    // What readFields() takes of a record line: all behind the tag.
    std::string_view fieldsOf(std::string_view line) const {
        return line.substr(std::min(line.size(), tag_.size() + 1));
    }
    // Reads a record line, tag included, into `record`, whose time `clock` completes. False for a bad record;
    // a bad checksum is counted, also when the line is read again.
    bool readRecord(std::string_view line, RecordClock &clock, Record &record) const {
        return readRecord(line, layout_.readers, clock, record);
    }
    // The same by other readers of the block's columns: see ColumnSelection.
    bool readRecord(std::string_view line, const std::vector<FieldReader> &readers, RecordClock &clock,
                    Record &record) const;

    const SourceHeader &header() const { return header_; }
    const std::string &tag() const { return tag_; }
    bool isOf(std::string_view instrument, std::string_view tag) const {
        return header_.instrument == instrument && tag_ == tag;
    }
    const Timezone &timezone() const { return timezone_; }
    const std::vector<std::string> &columnNames() const { return columnNames_; }
    const std::vector<std::string> &diagnosticNames() const { return *diagnosticNames_; }
    const std::vector<std::string> &valueNames() const { return layout_.valueNames; }
    const std::vector<std::string> &valueUnits() const { return layout_.valueUnits; }
    std::size_t valueCount() const { return layout_.valueNames.size(); }
    const ColumnLayout &layout() const { return layout_; }
    std::uint8_t checksumSeed() const { return layout_.checksumSeed; }
    // Index of the first value column called `name`, or -1.
    std::ptrdiff_t valueIndex(std::string_view name) const;
    void addVariableKeys(std::set<std::string> &keys) const;

    std::uint32_t recordCount() const { return recordCount_; }
    std::uint32_t checksumFailures() const { return checksumFailures_.load(std::memory_order_relaxed); }
    // Offsets of the first record line and just behind the last one, as the line reader reports them; 0
    // without records.
    std::uint64_t firstOffset() const { return firstOffset_; }
    std::uint64_t endOffset() const { return endOffset_; }
    // The archive members that the block's lines lie in, the header line's first; one, mostly.
    const std::vector<SourceMember> &members() const { return members_; }
    // True when a record's time depends on the records before it: see RecordClock::hasSearchedZone.
    bool timesDependOnOrder() const {
        return loading_ ? loading_->clock.hasSearchedZone() : timesDependOnOrder_;
    }
    std::uint64_t blockBegin() const { return blockBegin_; }
    std::uint64_t blockEnd() const { return blockEnd_; }
    // Times of the first and the last record in file order, and the latest of all; UTC seconds, 0 without
    // records.
    double firstTime() const { return firstTime_; }
    double lastTime() const { return lastTime_; }
    double latestTime() const;
    const HalfHourIndex &halfHourIndex() const { return halfHourIndex_; }
    // Earliest time and smallest values, latest time and largest values of the whole block.
    const Record &minimumRecord() const;
    const Record &maximumRecord() const;
    // The averaged series of periods[level].
    const AveragedSeries &series(std::size_t level) const { return series_[level]; }

private:
    // What is needed only while records come.
    struct LoadingState {
        explicit LoadingState(const Timezone &zone) : clock(zone) {}

        RecordClock clock;
        Record record; // the one being read
        std::array<Accumulator, periods.size()> accumulators;
        // Wider than a time, so that the last period of the range does not wrap round.
        std::array<std::uint64_t, periods.size()> pendingEnds{};
        std::shared_ptr<MemoryAllowance> allowance; // may be null
        std::uint64_t newPeriods = 0;               // bytes that the record being taken in has added
    };

    std::uint64_t memoryForColumns() const;
    void bindColumns();
    bool isGood(FieldResult result) const;
    void takeIn(const RecordStamp &stamp, const double *values, std::uint64_t lineOffset,
                std::size_t lineLength);
    void startPeriods(std::uint32_t utcSeconds);
    // Whether the period of this level that is open ends before the record.
    bool isClosedBy(const RecordStamp &stamp, std::size_t level) const;
    void makeRoom(const RecordStamp &stamp);
    void closePeriods(const RecordStamp &stamp);
    void widenStamps(const RecordStamp &record);
    void widenExtremes() const;

    SourceHeader header_;
    std::string tag_;
    Timezone timezone_;
    std::vector<SourceMember> members_;
    bool timesDependOnOrder_ = false;
    mutable std::atomic<std::uint32_t> checksumFailures_ = 0;
    std::uint64_t firstOffset_ = 0;
    std::uint64_t endOffset_ = 0;
    std::uint64_t blockBegin_ = 0;
    std::uint64_t blockEnd_ = openEnd;
    std::vector<std::string> columnNames_;
    DiagnosticNames diagnosticNames_; // never null
    ColumnLayout layout_;
    bool columnsAreSetUp_ = false;
    bool columnsAreRefused_ = false;
    HalfHourIndex halfHourIndex_;
    double firstTime_ = 0;
    double lastTime_ = 0;
    // Of records that say more nanoseconds than a second has, as damaged ones do: they may lie behind the
    // record of the latest second.
    double latestOverfullTime_ = 0;
    std::uint32_t recordCount_ = 0;
    std::array<AveragedSeries, periods.size()> series_;
    // While records come, the values lag behind by the open period; nobody else sees the fragment then.
    mutable Record minimum_;
    mutable Record maximum_;
    std::unique_ptr<LoadingState> loading_; // null once loading is finished
};

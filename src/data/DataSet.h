#pragma once

#include "data/DataFileParser.h"
#include "data/DataFragment.h"
#include "data/FragmentList.h"
#include "data/SeriesPoints.h"
#include "data/VariableKeyCounts.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

// An ordered collection of fragments, and every question about variables that the program asks.
//
// One is made for each source while it is read, and takes its lines; the merged one, ordered by time, changes
// only by merge() and removeFile(). Queries on names that match nothing give empty results or "Unknown". Any
// number of threads may query while none changes it.
class DataSet {
public:
    class _ContextType; // a cursor over the records of one instrument and tag: data/RecordCursor.h

    DataSet() = default;
    // For reading the source `fileName` (UTF-8).
    explicit DataSet(const std::string &fileName);

    // Reading a source.
    void setSubFileName(const std::string &name);
    // What the source is like; its fragments share it.
    void setSourceState(std::shared_ptr<const SourceState> state);
    // See DataFileParser::parseLine.
    void parseLine(std::uint64_t offset, std::string_view line, std::uint64_t shortfall = 0);
    // See DataFileParser::blockReadyFor and takeRead.
    DataFragment *blockReadyFor(std::string_view line) const;
    void takeRead(ReadLine &line, std::uint64_t shortfall);
    // Call after the last line: gives back the memory that only reading needs.
    void finishLoading();
    std::string messageText() const;
    // See DataFileParser::problem.
    std::string problem() const;
    // What the source takes, as it is reckoned: see MemoryAllowance.
    std::uint64_t memoryTaken() const { return parser_ ? parser_->allowance().taken() : 0; }
    // What it may still take.
    std::uint64_t memoryLeft() const { return parser_ ? parser_->allowance().left() : 0; }
    // Whether lines were lost to failed allocations.
    bool wasShortOfMemory() const { return parser_ && parser_->wasShortOfMemory(); }
    // See DataFileParser::hasGivenUp.
    bool hasGivenUp() const { return parser_ && parser_->hasGivenUp(); }
    // False when no header line has come: not a data file.
    bool foundHeader() const;

    // Fragments' checksum failures, summed.
    std::uint32_t checksumFailures() const;

    // Removes every fragment whose file name equals the text.
    void removeFile(std::string_view fileName);
    // Takes in those fragments of `other` that hold records, ordered by the time of their first record; equal
    // times keep their order.
    void merge(const DataSet &other);

    const FragmentList &fragments() const { return fragments_; }
    // Those of one instrument and tag, shared, so that they can be read while the set changes.
    std::vector<std::shared_ptr<const DataFragment>> fragmentsOf(std::string_view instrument,
                                                                 std::string_view tag) const;

    std::set<std::string> variableKeys() const;
    // Changes whenever the set of variable keys changes.
    std::uint64_t variableKeysRevision() const { return keys_.revision(); }
    bool hasVariableKeys() const;
    std::set<std::string> variableKeysOfInstrument(std::string_view instrument) const;
    std::set<std::string> variableKeysOfInstrumentAndTag(std::string_view instrument,
                                                         std::string_view tag) const;
    // Each variable key with the unit of the first fragment that has it.
    std::map<std::string, std::string> variableUnits() const;
    std::set<std::string> fileNames() const;
    std::set<std::string> instruments() const;
    std::set<std::string> tagsOfInstrument(std::string_view instrument) const;
    std::string versionOfInstrument(std::string_view instrument) const;
    std::string timeZoneNameOfKey(std::string_view key) const;

    // Base name of a path up to its second "-"; "Unknown" when it has fewer than two.
    static std::string tagOfFileName(std::string_view path);

    // Appends the points of the variable `key` between `start` and `end`, both inclusive (UTC seconds, or the
    // whole-range bounds): averages for the selector "", extremes for "max" and "min". See SeriesBatch.
    void series(std::string_view key, std::string_view selector, double start, double end,
                std::vector<double> &times, std::vector<double> &values) const;
    // The same for each of `requests`, in their order, at the cost of hardly more than one: sources are read
    // once.
    std::vector<SeriesPoints> seriesOf(const std::vector<SeriesRequest> &requests, double start, double end,
                                       ShortBlocks shortBlocks = ShortBlocks::atTheLevel) const;

    // Widens [low, high] by the variable's smallest and largest value.
    void valueRange(std::string_view key, double &low, double &high) const;
    // Widens [first, last] by the times of the instrument's first and last records, UTC seconds.
    void timeRangeOfInstrument(std::string_view instrument, double &first, double &last) const;

    // Columns of the first fragment of that instrument and tag.
    std::vector<std::string> valueNamesOfInstrumentAndTag(std::string_view instrument,
                                                          std::string_view tag) const;
    std::vector<std::string> unitsOfInstrumentAndTag(std::string_view instrument, std::string_view tag) const;
    std::vector<std::string> diagnosticNamesOfInstrumentAndTag(std::string_view instrument,
                                                               std::string_view tag) const;

private:
    const DataFragment *firstOf(std::string_view instrument) const;
    const DataFragment *firstOf(std::string_view instrument, std::string_view tag) const;

    FragmentList fragments_;
    VariableKeyCounts keys_;
    std::optional<DataFileParser> parser_;
    std::vector<std::shared_ptr<DataFragment>> loading_; // the fragments that the parser may still fill
};

#include "data/DataFragment.h"

#include "data/ColumnSteps.h"
#include "data/VariableKey.h"

#include <algorithm>
#include <new>
#include <tuple>
#include <utility>

namespace {

constexpr std::uint64_t stringBytes = sizeof(std::string);

// What only loading needs of each value: in each accumulator its sum, compensation and extremes, and the
// record's value.
constexpr std::uint64_t loadingBytesOfValue =
    (DataFragment::periods.size() * 4 + 1) * std::uint64_t{sizeof(double)};

} // namespace

std::uint64_t memoryOfNames(std::string_view names) {
    // A text of more than 15 bytes has a block of its own.
    const auto tabs = static_cast<std::uint64_t>(std::count(names.begin(), names.end(), '\t'));
    return 2 * names.size() + (tabs + 1) * stringBytes;
}

std::uint64_t memoryOfBlock(const SourceHeader &header, std::string_view columnNames) {
    // Beside the block itself: its state while loading, and its places in the lists of a source and of all.
    constexpr std::uint64_t fixed = sizeof(DataFragment) + 1024;
    const std::uint64_t headerText = header.fileName.size() + 2 * header.subFileName.size() +
                                     header.instrument.size() + header.serialNumber.size() +
                                     header.softwareVersion.size() + 3 * header.timezone.size();
    return fixed + headerText + memoryOfNames(columnNames);
}

namespace {

constexpr std::uint32_t nanosecondsPerSecond = 1'000'000'000;

} // namespace

DataFragment::DataFragment(const SourceHeader &header, std::string tag, std::vector<std::string> columnNames,
                           DiagnosticNames diagnosticNames)
    : DataFragment(header, Timezone(header.timezone), std::move(tag), std::move(columnNames),
                   std::move(diagnosticNames)) {}

DataFragment::DataFragment(SourceHeader header, const Timezone &timezone, std::string tag,
                           std::vector<std::string> columnNames, DiagnosticNames diagnosticNames)
    : header_(std::move(header)),
      tag_(std::move(tag)),
      timezone_(timezone),
      members_{{header_.subFileName, header_.memberNumber}},
      columnNames_(std::move(columnNames)),
      diagnosticNames_(std::move(diagnosticNames)),
      loading_(std::make_unique<LoadingState>(timezone_)) {}

DataFragment::DataFragment(const SourceHeader &header, std::string tag, std::vector<std::string> columnNames,
                           std::vector<std::string> diagnosticNames)
    : DataFragment(header, std::move(tag), std::move(columnNames),
                   std::make_shared<const std::vector<std::string>>(std::move(diagnosticNames))) {}

void DataFragment::setDiagnosticNames(DiagnosticNames names) {
    diagnosticNames_ = std::move(names);
}

void DataFragment::setAllowance(std::shared_ptr<MemoryAllowance> allowance) {
    if (loading_) {
        loading_->allowance = std::move(allowance);
    }
}

// What they take from now on.
std::uint64_t DataFragment::memoryForColumns() const {
    // Kept for each value: name and unit, its extremes and its reader; for all files its key and its place in
    // the table of units.
    constexpr std::uint64_t keptBytes = 2 * stringBytes + 2 * sizeof(double) + sizeof(FieldReader) + 224;
    const ColumnDemand demand = demandOf(columnNames_, *diagnosticNames_);
    const std::uint64_t keyBytes = header_.instrument.size() + tag_.size();
    return demand.values * (keptBytes + loadingBytesOfValue + keyBytes) +
           4 * std::uint64_t{demand.nameBytes} + columnNames_.size() * sizeof(FieldReader);
}

void DataFragment::setUpColumns() {
    columnsAreSetUp_ = true;
    columnsAreRefused_ = true;
    std::uint64_t memory = 0;
    try {
        const std::uint64_t wanted = memoryForColumns();
        if (loading_->allowance) {
            loading_->allowance->take(wanted, "columns");
            memory = wanted;
        }
        bindColumns();
    } catch (const std::bad_alloc &) {
        // The next record line may find what there was not for this one.
        layout_ = {};
        columnsAreSetUp_ = false;
        if (loading_->allowance) {
            loading_->allowance->giveBack(memory);
        }
        throw;
    }
    columnsAreRefused_ = false;
}

void DataFragment::bindColumns() {
    layout_ = layOutColumns(tag_, columnNames_, *diagnosticNames_);
    const std::size_t columns = valueCount();
    for (std::size_t level = 0; level < periods.size(); ++level) {
        loading_->accumulators[level].resize(columns);
        series_[level].setColumns(columns);
    }
    minimum_.values.assign(columns, emptyMinimum);
    maximum_.values.assign(columns, emptyMaximum);
    loading_->record.values.resize(columns);
}

void DataFragment::acceptRecord(std::uint64_t lineOffset, std::string_view line) {
    if (!loading_) {
        return;
    }
    if (!columnsAreSetUp_) {
        setUpColumns();
    }
    if (!columnsAreRefused_) {
        Record &record = loading_->record;
        const FieldResult result = readFields(layout_.readers, layout_.checksumSeed, fieldsOf(line), record);
        acceptFields(lineOffset, line.size(), result, record, record.values.data());
    }
}

void DataFragment::acceptFields(std::uint64_t lineOffset, std::size_t lineLength, FieldResult result,
                                RecordStamp &stamp, const double *values) {
    if (isGood(result)) {
        loading_->clock.complete(stamp);
        takeIn(stamp, values, lineOffset, lineLength);
    }
}

bool DataFragment::readRecord(std::string_view line, const std::vector<FieldReader> &readers,
                              RecordClock &clock, Record &record) const {
    if (!isGood(readFields(readers, layout_.checksumSeed, fieldsOf(line), record))) {
        return false;
    }
    clock.complete(record);
    return true;
}

bool DataFragment::isGood(FieldResult result) const {
    if (result == FieldResult::checksumFailure) {
        checksumFailures_.fetch_add(1, std::memory_order_relaxed);
    }
    return result == FieldResult::good;
}

void DataFragment::takeIn(const RecordStamp &stamp, const double *values, std::uint64_t lineOffset,
                          std::size_t lineLength) {
    if (recordCount_ == 0) {
        startPeriods(stamp.seconds);
    }
    // First all that asks for memory, so that a record for which there is none is left out whole.
    makeRoom(stamp);
    closePeriods(stamp);
    const std::size_t indexSize = halfHourIndex_.entries().size();
    halfHourIndex_.note(stamp.seconds, lineOffset);
    loading_->newPeriods += (halfHourIndex_.entries().size() - indexSize) * sizeof(HalfHourIndex::Entry);
    lastTime_ = timeOf(stamp);
    if (firstTime_ == 0) {
        firstTime_ = lastTime_;
    }
    if (firstOffset_ == 0) {
        firstOffset_ = lineOffset;
    }
    endOffset_ = lineOffset + lineLength;
    loading_->accumulators[0].add(stamp, values);
    widenStamps(stamp);
    ++recordCount_;
    if (const std::uint64_t bytes = std::exchange(loading_->newPeriods, 0);
        bytes > 0 && loading_->allowance) {
        loading_->allowance->take(bytes, "periods");
    }
}

void DataFragment::startPeriods(std::uint32_t utcSeconds) {
    halfHourIndex_.begin(utcSeconds);
    for (std::size_t level = 0; level < periods.size(); ++level) {
        loading_->pendingEnds[level] = std::uint64_t{utcSeconds} / periods[level] * periods[level];
    }
}

bool DataFragment::isClosedBy(const RecordStamp &stamp, std::size_t level) const {
    const std::uint64_t end = loading_->pendingEnds[level];
    // A record exactly at a period's end still belongs to it.
    return end < stamp.seconds || (end == stamp.seconds && stamp.nanoseconds != 0);
}

void DataFragment::makeRoom(const RecordStamp &stamp) {
    halfHourIndex_.makeRoom();
    bool isFilled = false;
    bool mayBeWide = false;
    for (std::size_t level = 0; level < periods.size() && isClosedBy(stamp, level); ++level) {
        // It will take in the periods below it first.
        const Accumulator &period = loading_->accumulators[level];
        isFilled = isFilled || period.count() > 0;
        mayBeWide = mayBeWide || !fitSinglePrecision(period);
        if (isFilled) {
            series_[level].makeRoom(mayBeWide);
        }
    }
}

void DataFragment::closePeriods(const RecordStamp &stamp) {
    auto &accumulators = loading_->accumulators;
    for (std::size_t level = 0; level < periods.size() && isClosedBy(stamp, level); ++level) {
        std::uint64_t &end = loading_->pendingEnds[level];
        Accumulator &period = accumulators[level];
        if (period.count() > 0) {
            series_[level].append(static_cast<std::uint32_t>(end), period);
            loading_->newPeriods += series_[level].bytesPerPeriod();
            if (level == 0) {
                widenExtremes();
            }
            if (level + 1 < periods.size()) {
                accumulators[level + 1].merge(period);
            }
            period.reset();
        }
        end = (stamp.seconds / periods[level] + std::uint64_t{1}) * periods[level];
    }
}

void DataFragment::widenStamps(const RecordStamp &record) {
    const auto takeTime = [&record](Record &extreme) {
        const std::uint32_t word = extreme.diagnosticWord;
        static_cast<RecordStamp &>(extreme) = record;
        extreme.diagnosticWord = word;
    };
    const auto time = [](const RecordStamp &stamp) { return std::tie(stamp.seconds, stamp.nanoseconds); };
    const bool isFirst = recordCount_ == 0;
    if (isFirst || time(record) < time(minimum_)) {
        takeTime(minimum_);
    }
    if (isFirst || time(maximum_) < time(record)) {
        takeTime(maximum_);
    }
    if (record.nanoseconds >= nanosecondsPerSecond) {
        latestOverfullTime_ = std::max(latestOverfullTime_, timeOf(record));
    }
    minimum_.diagnosticWord =
        isFirst ? record.diagnosticWord : std::min(minimum_.diagnosticWord, record.diagnosticWord);
    maximum_.diagnosticWord =
        isFirst ? record.diagnosticWord : std::max(maximum_.diagnosticWord, record.diagnosticWord);
}

// The lowest period's extremes are those of its records, and the first of equal values stays.
void DataFragment::widenExtremes() const {
    if (recordCount_ == 0) {
        return;
    }
    const std::span<const double> minima = loading_->accumulators[0].minima();
    const std::span<const double> maxima = loading_->accumulators[0].maxima();
    for (std::size_t i = 0; i < minima.size(); ++i) {
        widen(minimum_.values[i], maximum_.values[i], minima[i], maxima[i]);
    }
}

const Record &DataFragment::minimumRecord() const {
    if (loading_) {
        widenExtremes();
    }
    return minimum_;
}

const Record &DataFragment::maximumRecord() const {
    if (loading_) {
        widenExtremes();
    }
    return maximum_;
}

void DataFragment::finishLoading() {
    if (loading_) {
        widenExtremes();
        if (loading_->allowance) {
            loading_->allowance->giveBack(loading_->record.values.size() * loadingBytesOfValue);
        }
    }
    timesDependOnOrder_ = timesDependOnOrder();
    loading_.reset();
    halfHourIndex_.releaseSpareMemory();
    for (AveragedSeries &series : series_) {
        series.releaseSpareMemory();
    }
}

double DataFragment::latestTime() const {
    return recordCount_ == 0 ? 0 : std::max(timeOf(maximum_), latestOverfullTime_);
}

std::ptrdiff_t DataFragment::valueIndex(std::string_view name) const {
    const auto &names = layout_.valueNames;
    const auto found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? -1 : found - names.begin();
}

void DataFragment::addVariableKeys(std::set<std::string> &keys) const {
    for (const std::string &name : layout_.valueNames) {
        keys.insert(makeVariableKey(header_.instrument, tag_, name));
    }
}

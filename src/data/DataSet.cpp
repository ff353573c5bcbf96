#include "data/DataSet.h"

#include "data/RecordCursor.h"
#include "data/SeriesBatch.h"
#include "data/VariableKey.h"

#include <algorithm>
#include <new>

namespace {

constexpr std::string_view unknown = "Unknown";

std::string_view instrumentOfKey(std::string_view key) {
    return key.substr(0, key.find(':'));
}

} // namespace

DataSet::DataSet(const std::string &fileName) : parser_(std::in_place, fileName, tagOfFileName(fileName)) {}

std::string DataSet::tagOfFileName(std::string_view path) {
    auto separator = path.rfind('/');
    if (separator == std::string_view::npos) {
        separator = path.rfind('\\');
    }
    const std::string_view baseName = separator == std::string_view::npos ? path : path.substr(separator + 1);
    const auto first = baseName.find('-');
    const auto second = first == std::string_view::npos ? first : baseName.find('-', first + 1);
    return std::string(second == std::string_view::npos ? unknown : baseName.substr(0, second));
}

void DataSet::setSubFileName(const std::string &name) {
    if (parser_) {
        parser_->setSubFileName(name);
    }
}

void DataSet::setSourceState(std::shared_ptr<const SourceState> state) {
    if (parser_) {
        parser_->setSourceState(std::move(state));
    }
}

void DataSet::parseLine(std::uint64_t offset, std::string_view line, std::uint64_t shortfall) {
    if (!parser_) {
        return;
    }
    auto fragment = parser_->parseLine(offset, line, shortfall);
    if (!fragment) {
        return;
    }
    try {
        // In this order, so that none is left unfinished when there is no memory for the second.
        loading_.push_back(fragment);
        fragments_.append(std::move(fragment));
        parser_->keepStarted();
    } catch (const std::bad_alloc &error) {
        parser_->takeStartedBack();
        parser_->noteShortage(error);
    }
}

DataFragment *DataSet::blockReadyFor(std::string_view line) const {
    return parser_ ? parser_->blockReadyFor(line) : nullptr;
}

void DataSet::takeRead(ReadLine &line, std::uint64_t shortfall) {
    if (parser_) {
        parser_->takeRead(line, shortfall);
    }
}

void DataSet::finishLoading() {
    if (parser_) {
        parser_->finish();
    }
    for (const auto &fragment : loading_) {
        fragment->finishLoading();
    }
    loading_.clear();
}

std::string DataSet::messageText() const {
    return parser_ ? parser_->messageText() : std::string();
}

std::string DataSet::problem() const {
    return parser_ ? parser_->problem() : std::string();
}

bool DataSet::foundHeader() const {
    return parser_ && parser_->foundHeader();
}

std::uint32_t DataSet::checksumFailures() const {
    std::uint32_t failures = 0;
    for (const auto &fragment : fragments_) {
        failures += fragment->checksumFailures();
    }
    return failures;
}

void DataSet::removeFile(std::string_view fileName) {
    for (const auto &fragment : fragments_.removeFile(fileName)) {
        keys_.remove(*fragment);
    }
}

void DataSet::merge(const DataSet &other) {
    for (const auto &fragment : other.fragments_) {
        if (fragment->recordCount() > 0) {
            fragments_.append(fragment);
            keys_.add(*fragment);
        }
    }
    fragments_.sort();
}

bool DataSet::hasVariableKeys() const {
    return parser_ ? !variableKeys().empty() : !keys_.empty();
}

std::set<std::string> DataSet::variableKeys() const {
    if (!parser_) {
        return keys_.keys();
    }
    // While a source is read its fragments may still get their columns, so nothing is counted.
    std::set<std::string> keys;
    for (const auto &fragment : fragments_) {
        fragment->addVariableKeys(keys);
    }
    return keys;
}

std::set<std::string> DataSet::variableKeysOfInstrument(std::string_view instrument) const {
    std::set<std::string> keys;
    for (const auto &fragment : fragments_) {
        if (fragment->header().instrument == instrument) {
            fragment->addVariableKeys(keys);
        }
    }
    return keys;
}

std::set<std::string> DataSet::variableKeysOfInstrumentAndTag(std::string_view instrument,
                                                              std::string_view tag) const {
    std::set<std::string> keys;
    for (const auto &fragment : fragments_) {
        if (fragment->isOf(instrument, tag)) {
            fragment->addVariableKeys(keys);
        }
    }
    return keys;
}

std::map<std::string, std::string> DataSet::variableUnits() const {
    std::map<std::string, std::string> units;
    for (const auto &fragment : fragments_) {
        for (std::size_t i = 0; i < fragment->valueCount(); ++i) {
            units.try_emplace(
                makeVariableKey(fragment->header().instrument, fragment->tag(), fragment->valueNames()[i]),
                fragment->valueUnits()[i]);
        }
    }
    return units;
}

std::set<std::string> DataSet::fileNames() const {
    std::set<std::string> names;
    fragments_.forEachFileName([&names](const std::string &name) { names.insert(name); });
    return names;
}

std::set<std::string> DataSet::instruments() const {
    std::set<std::string> names;
    for (const auto &fragment : fragments_) {
        names.insert(fragment->header().instrument);
    }
    return names;
}

std::set<std::string> DataSet::tagsOfInstrument(std::string_view instrument) const {
    std::set<std::string> tags;
    for (const auto &fragment : fragments_) {
        if (fragment->header().instrument == instrument) {
            tags.insert(fragment->tag());
        }
    }
    return tags;
}

std::string DataSet::versionOfInstrument(std::string_view instrument) const {
    const DataFragment *const fragment = firstOf(instrument);
    return fragment != nullptr ? fragment->header().softwareVersion : std::string(unknown);
}

std::string DataSet::timeZoneNameOfKey(std::string_view key) const {
    const DataFragment *const fragment = firstOf(instrumentOfKey(key));
    return fragment != nullptr ? fragment->timezone().name() : std::string(unknown);
}

void DataSet::series(std::string_view key, std::string_view selector, double start, double end,
                     std::vector<double> &times, std::vector<double> &values) const {
    const SeriesRequest request{std::string(key), std::string(selector)};
    seriesOf({request}, start, end).front().appendTo(times, values);
}

std::vector<SeriesPoints> DataSet::seriesOf(const std::vector<SeriesRequest> &requests, double start,
                                            double end, ShortBlocks shortBlocks) const {
    return SeriesBatch(fragments_, requests, start, end, shortBlocks).read();
}

void DataSet::valueRange(std::string_view key, double &low, double &high) const {
    const auto parts = splitVariableKey(key);
    if (!parts) {
        return;
    }
    for (const auto &fragment : fragments_) {
        if (!fragment->isOf(parts->instrument, parts->tag)) {
            continue;
        }
        const std::ptrdiff_t column = fragment->valueIndex(parts->column);
        if (column >= 0) {
            const auto index = static_cast<std::size_t>(column);
            low = std::min(low, fragment->minimumRecord().values[index]);
            high = std::max(high, fragment->maximumRecord().values[index]);
        }
    }
}

void DataSet::timeRangeOfInstrument(std::string_view instrument, double &first, double &last) const {
    for (const auto &fragment : fragments_) {
        if (fragment->header().instrument == instrument) {
            first = std::min(first, fragment->firstTime());
            last = std::max(last, fragment->lastTime());
        }
    }
}

std::vector<std::string> DataSet::valueNamesOfInstrumentAndTag(std::string_view instrument,
                                                               std::string_view tag) const {
    const DataFragment *const fragment = firstOf(instrument, tag);
    return fragment != nullptr ? fragment->valueNames() : std::vector<std::string>();
}

std::vector<std::string> DataSet::unitsOfInstrumentAndTag(std::string_view instrument,
                                                          std::string_view tag) const {
    const DataFragment *const fragment = firstOf(instrument, tag);
    return fragment != nullptr ? fragment->valueUnits() : std::vector<std::string>();
}

std::vector<std::string> DataSet::diagnosticNamesOfInstrumentAndTag(std::string_view instrument,
                                                                    std::string_view tag) const {
    const DataFragment *const fragment = firstOf(instrument, tag);
    return fragment != nullptr ? fragment->diagnosticNames() : std::vector<std::string>();
}

std::vector<std::shared_ptr<const DataFragment>> DataSet::fragmentsOf(std::string_view instrument,
                                                                      std::string_view tag) const {
    std::vector<std::shared_ptr<const DataFragment>> matching;
    std::copy_if(fragments_.begin(), fragments_.end(), std::back_inserter(matching),
                 [&](const auto &fragment) { return fragment->isOf(instrument, tag); });
    return matching;
}

const DataFragment *DataSet::firstOf(std::string_view instrument) const {
    const auto found = std::find_if(fragments_.begin(), fragments_.end(), [&](const auto &fragment) {
        return fragment->header().instrument == instrument;
    });
    return found == fragments_.end() ? nullptr : found->get();
}

const DataFragment *DataSet::firstOf(std::string_view instrument, std::string_view tag) const {
    const auto found = std::find_if(fragments_.begin(), fragments_.end(),
                                    [&](const auto &fragment) { return fragment->isOf(instrument, tag); });
    return found == fragments_.end() ? nullptr : found->get();
}

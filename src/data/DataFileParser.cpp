#include "data/DataFileParser.h"

#include "data/MemoryAllowance.h"

#include <algorithm>
#include <exception>
#include <new>
#include <stdexcept>
#include <utility>

namespace {

struct TagPrefixes {
    std::string_view tag;
    std::string_view record;
    std::string_view header;
};

constexpr std::size_t dataTag = 0;
constexpr std::size_t statusTag = 1;
constexpr std::array<TagPrefixes, 3> tagPrefixes{{
    {"DATA", "DATA\t", "DATAH\t"},
    {"DATASTAT", "DATASTAT\t", "DATASTATH\t"},
    {"DATABIO", "DATABIO\t", "DATABIOH\t"},
}};
constexpr std::string_view diagnosticNamesPrefix = "DATADIAGH\t";

struct KeyPrefix {
    std::string_view prefix;
    std::string SourceHeader::*value;
};

constexpr std::array<KeyPrefix, 7> keyPrefixes{{
    {"DATAEVENT\tNAME\t", &SourceHeader::instrument},
    {"Instrument:\t", &SourceHeader::instrument},
    {"DATAEVENT\tSN\t", &SourceHeader::serialNumber},
    {"Serial Number:\t", &SourceHeader::serialNumber},
    {"SN:\t", &SourceHeader::serialNumber},
    {"Software Version:\t", &SourceHeader::softwareVersion},
    {"Timezone:\t", &SourceHeader::timezone},
}};

// Message text grows no further beyond this many characters.
constexpr std::size_t messageTextLimit = 9999;
constexpr std::size_t roomForErrors = 128;

// Splits at every tab; a tab at the very end adds no empty field.
std::vector<std::string> splitFields(std::string_view text) {
    std::vector<std::string> fields;
    fields.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\t')) + 1);
    while (!text.empty()) {
        const auto tab = text.find('\t');
        fields.emplace_back(text.substr(0, tab));
        text.remove_prefix(tab == std::string_view::npos ? text.size() : tab + 1);
    }
    return fields;
}

} // namespace

DataFileParser::DataFileParser(std::string fileName, std::string fileNameTag)
    : header_{std::move(fileName), "", std::move(fileNameTag), "Unknown", "Unknown", "Unknown"} {
    // So that a line that is lost because there is no memory can be told of.
    messageText_.reserve(roomForErrors);
}

void DataFileParser::setSubFileName(std::string name) {
    header_.subFileName = std::move(name);
    ++header_.memberNumber;
    isOfEarlierMember_.fill(true);
}

std::shared_ptr<DataFragment> DataFileParser::parseLine(std::uint64_t offset, std::string_view line,
                                                        std::uint64_t shortfall) {
    std::shared_ptr<DataFragment> started;
    handleSafely(offset + shortfall, line.size(), [&] { started = handleLine(offset, line, shortfall); });
    return started;
}

// Handles a line of so many bytes at this true offset, whatever goes wrong with it.
template <typename Handling>
void DataFileParser::handleSafely(std::uint64_t position, std::size_t length, const Handling &handle) {
    if (hasGivenUp_) {
        return;
    }
    allowance_->noteRead(length + 1);
    try {
        handle();
    } catch (const MemoryAllowance::Exceeded &error) {
        giveUp(error.what(), position);
    } catch (const std::length_error &error) {
        noteRefusal(error.what());
    } catch (const std::bad_alloc &error) {
        noteShortage(error);
    } catch (const std::exception &error) {
        appendError(error.what());
    }
}

// Of a header line that asks for too much: one says it for all.
void DataFileParser::noteRefusal(const char *reason) {
    try {
        problem_ = problem_.empty() ? reason : problem_;
    } catch (const std::bad_alloc &error) {
        noteShortage(error);
    }
}

void DataFileParser::noteShortage(const std::bad_alloc &error) {
    wasShortOfMemory_ = true;
    appendError(error.what());
}

DataFragment *DataFileParser::blockReadyFor(std::string_view line) const {
    for (std::size_t tag = 0; tag < recordTags; ++tag) {
        if (line.starts_with(tagPrefixes[tag].record)) {
            const bool isReady = current_[tag] && !isOfEarlierMember_[tag] && current_[tag]->takesFields();
            return isReady ? current_[tag].get() : nullptr;
        }
    }
    return nullptr;
}

void DataFileParser::takeRead(ReadLine &line, std::uint64_t shortfall) {
    handleSafely(line.offset + shortfall, line.text.size(), [&line] {
        line.block->acceptFields(line.offset, line.text.size(), line.result, line.stamp, line.values);
    });
}

void DataFileParser::giveUp(std::string_view reason, std::uint64_t position) {
    hasGivenUp_ = true;
    try {
        std::string problem = problem_;
        problem.append(problem.empty() ? "" : "; ").append(reason);
        problem.append(". Reading ends at byte ").append(std::to_string(position)).append(" of ");
        problem.append(header_.subFileName.empty() ? "the file" : "the member ").append(header_.subFileName);
        problem_ = std::move(problem);
    } catch (const std::bad_alloc &error) {
        noteShortage(error);
    }
}

void DataFileParser::appendError(std::string_view what) {
    const std::size_t size = messageText_.size();
    if (size > messageTextLimit) {
        return;
    }
    try {
        messageText_.append("ERROR: ").append(what);
    } catch (const std::bad_alloc &) { // the first one has had room
        messageText_.resize(size);
    }
}

std::shared_ptr<DataFragment> DataFileParser::handleLine(std::uint64_t offset, std::string_view line,
                                                         std::uint64_t shortfall) {
    for (std::size_t tag = 0; tag < recordTags; ++tag) {
        if (line.starts_with(tagPrefixes[tag].record)) {
            handleRecord(tag, offset, line);
            return nullptr;
        }
    }
    for (std::size_t tag = 0; tag < recordTags; ++tag) {
        const std::string_view prefix = tagPrefixes[tag].header;
        if (line.starts_with(prefix) && line.size() > prefix.size()) {
            return startFragment(tag, line.substr(prefix.size()), offset + shortfall);
        }
    }
    if (line.starts_with(diagnosticNamesPrefix) && line.size() > diagnosticNamesPrefix.size()) {
        takeDiagnosticNames(line.substr(diagnosticNamesPrefix.size()));
    } else {
        handleKeyLine(line);
    }
    return nullptr;
}

void DataFileParser::handleRecord(std::size_t tag, std::uint64_t offset, std::string_view line) {
    if (!current_[tag]) {
        return;
    }
    if (isOfEarlierMember_[tag]) {
        current_[tag]->continueIn({header_.subFileName, header_.memberNumber});
        isOfEarlierMember_[tag] = false;
    }
    current_[tag]->acceptRecord(offset, line);
}

std::shared_ptr<DataFragment> DataFileParser::startFragment(std::size_t tag, std::string_view columnNames,
                                                            std::uint64_t position) {
    foundHeader_ = true;
    // Not given back when the zone fails: the texts are copied before, and a zone's name may have a megabyte.
    allowance_->take(memoryOfBlock(header_, columnNames), "header lines");
    auto fragment = std::make_shared<DataFragment>(header_, zone(), std::string(tagPrefixes[tag].tag),
                                                   splitFields(columnNames), diagnosticNames_);
    fragment->setAllowance(allowance_);
    fragment->setBlockBegin(position);
    keepStarted();
    replaced_ = {tag, std::exchange(current_[tag], fragment), isOfEarlierMember_[tag]};
    if (replaced_.block && !replaced_.isOfEarlierMember) {
        replaced_.block->setBlockEnd(position);
    }
    isOfEarlierMember_[tag] = false;
    return fragment;
}

void DataFileParser::keepStarted() {
    if (const auto block = std::exchange(replaced_.block, nullptr)) {
        block->finishLoading();
    }
}

void DataFileParser::takeStartedBack() {
    if (replaced_.block && !replaced_.isOfEarlierMember) {
        replaced_.block->setBlockEnd(DataFragment::openEnd);
    }
    isOfEarlierMember_[replaced_.tag] = replaced_.isOfEarlierMember;
    current_[replaced_.tag] = std::exchange(replaced_.block, nullptr);
}

void DataFileParser::takeDiagnosticNames(std::string_view names) {
    const std::uint64_t memory = memoryOfNames(names);
    allowance_->take(memory, "names of bits");
    auto split = std::make_shared<const std::vector<std::string>>(splitFields(names));
    if (diagnosticNames_.use_count() == 1) {
        allowance_->giveBack(diagnosticNamesMemory_);
    }
    diagnosticNamesMemory_ = memory;
    diagnosticNames_ = std::move(split);
    for (const std::size_t tag : {dataTag, statusTag}) {
        if (current_[tag] && !current_[tag]->columnsAreSetUp()) {
            current_[tag]->setDiagnosticNames(diagnosticNames_);
        }
    }
}

void DataFileParser::handleKeyLine(std::string_view line) {
    for (const KeyPrefix &key : keyPrefixes) {
        if (line.starts_with(key.prefix) && line.size() > key.prefix.size()) {
            header_.*key.value = line.substr(key.prefix.size());
            if (key.value == &SourceHeader::timezone) {
                zone_.reset();
            }
            return;
        }
    }
}

// Loaded once for all header lines behind one key line.
const Timezone &DataFileParser::zone() {
    constexpr std::uint64_t rulesOfAnyZone = 4096;
    if (!zone_) {
        allowance_->take(rulesOfAnyZone, "time zones");
        zone_.emplace(header_.timezone);
    }
    return *zone_;
}

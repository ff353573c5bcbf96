#include "independent/IndependentReader.h"

#include "independent/IndependentBytes.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <set>
#include <stdexcept>
#include <utility>

namespace {

using Texts = std::vector<std::string>;

const Texts tags{"DATA", "DATASTAT", "DATABIO"};

const std::map<std::string, std::string> unitsWithoutParentheses{
    {"MSEC", "msec"},        {"CH4D", "mmol/m^3"},   {"CH4", "umol/mol"},        {"TEMP", "C"},
    {"PRESSURE", "kPa"},     {"RSSI", "%"},          {"DROPRATE", "%"},          {"DIAG", "DIAG"},
    {"REFRSSI", "%"},        {"LCTSETPT", "C"},      {"LCTACTUAL", "C"},         {"BCTSETPT", "C"},
    {"BCTACTUAL", "C"},      {"CHASSISTEMP", "C"},   {"CHASSISTCCOLDTEMP", "C"}, {"OPTICSTEMP", "C"},
    {"OPTICSRH", "RH"},      {"SUPPLYVOLTAGE", "V"}, {"CALIBRATING", "BOOL"},    {"BOX", "BOOL"},
    {"SAMPLESIG", "%"},      {"HEATER", "BOOL"},     {"MOTORRPM", "rpm"},        {"MOTORDESIRED", "count"},
    {"MOTORACTUAL", "count"}};

const std::set<std::string> columnsWithoutValue{"SECONDS", "NANOSECONDS", "DATE",   "TIME",
                                                "CHK",     "FILENAME",    "REMARK", ""};

std::string unitOf(const std::string &column) {
    const std::size_t open = column.find('(');
    if (open != std::string::npos) {
        return column.substr(open + 1, column.find(')', open + 1) - open - 1);
    }
    const auto entry = unitsWithoutParentheses.find(column);
    return entry == unitsWithoutParentheses.end() ? "" : entry->second;
}

// What is between tabs; a tab at the end adds nothing.
Texts fieldsOf(const std::string &text) {
    Texts fields;
    std::size_t begin = 0;
    while (begin < text.size()) {
        const std::size_t tab = std::min(text.find('\t', begin), text.size());
        fields.push_back(text.substr(begin, tab - begin));
        begin = tab + 1;
    }
    return fields;
}

// Base name up to its second "-".
std::string tagOfFileName(const std::string &path) {
    const std::size_t slash = path.rfind('/');
    const std::size_t separator = slash == std::string::npos ? path.rfind('\\') : slash;
    const std::string base = separator == std::string::npos ? path : path.substr(separator + 1);
    const std::size_t first = base.find('-');
    const std::size_t second = first == std::string::npos ? first : base.find('-', first + 1);
    return second == std::string::npos ? "Unknown" : base.substr(0, second);
}

bool isArchive(std::string path) {
    for (char &c : path) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return path.ends_with(".ghg") || path.ends_with(".zip");
}

} // namespace

double IndependentBlock::firstTime() const {
    for (const IndependentRecord &record : records) {
        if (record.time() != 0) {
            return record.time();
        }
    }
    return 0;
}

IndependentReader::IndependentReader(const std::string &path, std::string zoneDirectory)
    : zoneDirectory_(std::move(zoneDirectory)), instrument_(tagOfFileName(path)) {}

void IndependentReader::read(const std::string &line) {
    for (const std::string &tag : tags) {
        if (!line.starts_with(tag + '\t')) {
            continue;
        }
        if (const auto block = current_.find(tag); block != current_.end()) {
            setUp(*block->second);
            if (auto record = readIndependentRecord(*block->second, line.substr(tag.size() + 1))) {
                block->second->records.push_back(*record);
            }
        }
        return;
    }
    if (!readHeader(line) && !readDiagnosticNames(line)) {
        readKey(line);
    }
}

bool IndependentReader::readHeader(const std::string &line) {
    for (const std::string &tag : tags) {
        const std::string prefix = tag + "H\t";
        if (!line.starts_with(prefix) || line.size() == prefix.size()) {
            continue;
        }
        auto block = std::make_shared<IndependentBlock>();
        try {
            block->zone = std::make_shared<IndependentZone>(zoneDirectory_, timezone_);
        } catch (const std::runtime_error &) {
            return true; // the records behind go to the block before
        }
        block->tag = tag;
        block->instrument = instrument_;
        block->softwareVersion = softwareVersion_;
        block->columns = fieldsOf(line.substr(prefix.size()));
        block->diagnosticNames = diagnosticNames_;
        blocks_.push_back(block);
        current_[tag] = block;
        return true;
    }
    return false;
}

bool IndependentReader::readDiagnosticNames(const std::string &line) {
    const std::string prefix = "DATADIAGH\t";
    if (!line.starts_with(prefix) || line.size() == prefix.size()) {
        return false;
    }
    diagnosticNames_ = fieldsOf(line.substr(prefix.size()));
    for (const char *tag : {"DATA", "DATASTAT"}) {
        const auto block = current_.find(tag);
        if (block != current_.end() && !block->second->hasColumnsSetUp) {
            block->second->diagnosticNames = diagnosticNames_;
        }
    }
    return true;
}

void IndependentReader::readKey(const std::string &line) {
    const std::array<std::pair<std::string, std::string *>, 4> keys{
        {{"DATAEVENT\tNAME\t", &instrument_},
         {"Instrument:\t", &instrument_},
         {"Software Version:\t", &softwareVersion_},
         {"Timezone:\t", &timezone_}}};
    for (const auto &[prefix, value] : keys) {
        if (line.starts_with(prefix) && line.size() > prefix.size()) {
            *value = line.substr(prefix.size());
            return;
        }
    }
}

void IndependentReader::setUp(IndependentBlock &block) const {
    if (std::exchange(block.hasColumnsSetUp, true)) {
        return;
    }
    for (const std::string &column : block.columns) {
        if (columnsWithoutValue.contains(column)) {
            continue;
        }
        block.valueNames.push_back(column);
        block.units.push_back(unitOf(column));
        for (std::size_t i = 0; column == "DIAG" && i < block.diagnosticNames.size(); ++i) {
            block.valueNames.push_back("DIAG:" + block.diagnosticNames[i]);
            block.units.emplace_back("BOOL");
        }
    }
}

IndependentBlocks readIndependently(const std::vector<std::string> &paths, const std::string &zoneDirectory) {
    IndependentBlocks blocks;
    for (const std::string &path : paths) {
        IndependentReader reader(path, zoneDirectory);
        const std::string bytes = bytesOfFile(path);
        for (const std::string &member : isArchive(path) ? membersOf(bytes) : Texts{bytes}) {
            for (const std::string &line : linesOf(member)) {
                reader.read(line);
            }
        }
        for (const auto &block : reader.blocks()) {
            if (!block->records.empty()) {
                blocks.push_back(block);
            }
        }
    }
    std::stable_sort(blocks.begin(), blocks.end(),
                     [](const auto &a, const auto &b) { return a->firstTime() < b->firstTime(); });
    return blocks;
}

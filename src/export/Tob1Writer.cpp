#include "export/Tob1Writer.h"

#include "export/ExportOutput.h"

#include <bit>
#include <cstring>
#include <limits>

namespace {

constexpr std::uint32_t secondsFrom1970To1990 = 631152000; // 1990-01-01 00:00 is the zero of TOB1
constexpr std::size_t timeFields = 3;                      // seconds, nanoseconds, record number
constexpr std::size_t fieldSize = 4;
constexpr std::size_t environmentSize = 8;
constexpr std::size_t longestName = 16;

static_assert(std::numeric_limits<float>::is_iec559);

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isNameCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || isDigit(c) || c == '_';
}

void appendNames(std::vector<std::string> &names, const std::vector<std::string> &texts) {
    for (const std::string &text : texts) {
        names.push_back(tob1Name(text));
    }
}

// Quoted as they are: nothing that could stand in them is escaped.
void appendLine(ExportOutput &output, const std::vector<std::string> &entries) {
    std::string line;
    for (const std::string &entry : entries) {
        line.append(line.empty() ? "\"" : ",\"").append(entry) += '"';
    }
    output.append(line += "\r\n");
}

char *writeField(char *out, std::uint32_t number) {
    for (unsigned shift = 0; shift < 32; shift += 8) {
        *out++ = static_cast<char>(number >> shift);
    }
    return out;
}

// Beyond its range a float becomes an infinity.
char *writeSingles(char *out, const std::vector<double> &values) {
    if constexpr (std::endian::native == std::endian::little) {
        for (const double value : values) { // simple enough to be done many at a time
            const auto single = static_cast<float>(value);
            std::memcpy(out, &single, fieldSize);
            out += fieldSize;
        }
    } else {
        for (const double value : values) {
            out = writeField(out, std::bit_cast<std::uint32_t>(static_cast<float>(value)));
        }
    }
    return out;
}

} // namespace

std::string tob1Name(std::string_view text) {
    std::string name;
    for (const char c : text) {
        if (name.size() == longestName) {
            break;
        }
        if (isNameCharacter(c)) {
            if (name.empty() && isDigit(c)) {
                name += 'n';
            }
            name += c;
        }
    }
    return name;
}

void Tob1Writer::setEnvironment(const std::vector<std::string> &texts) {
    environment_ = {"TOB1"};
    environment_.insert(environment_.end(), texts.begin(), texts.end());
    environment_.resize(environmentSize);
}

void Tob1Writer::setFieldNames(const std::vector<std::string> &valueNames) {
    fieldNames_ = {"SECONDS", "NANOSECONDS", "RECORD"};
    appendNames(fieldNames_, valueNames);
}

void Tob1Writer::setUnits(const std::vector<std::string> &valueUnits) {
    units_ = {"SECONDS", "NANOSECONDS", "RN"};
    appendNames(units_, valueUnits);
}

void Tob1Writer::setProcessing(const std::vector<std::string> &processing) {
    processing_.assign(timeFields, std::string());
    appendNames(processing_, processing);
}

void Tob1Writer::write(const Record &record) {
    if (!headerIsWritten_) {
        writeHeader(record);
        headerIsWritten_ = true;
    }
    char *out = output_.room((timeFields + record.values.size()) * fieldSize);
    out = writeField(out, record.seconds + timeOffset_);
    out = writeField(out, record.nanoseconds);
    out = writeField(out, recordNumber_++);
    out = writeSingles(out, record.values);
    output_.take(out);
    output_.endRecord();
}

// The first record's offset from UTC holds for the whole file, also across a change of daylight saving, so
// that seconds never jump within a file.
void Tob1Writer::writeHeader(const Record &first) {
    const std::size_t fields = first.values.size() + timeFields;
    fieldNames_.resize(fields);
    units_.resize(fields);
    processing_.resize(fields, "Smp");
    std::vector<std::string> types(fields, "IEEE4");
    std::fill_n(types.begin(), timeFields, "UINT4");
    for (const auto *const entries : {&environment_, &fieldNames_, &units_, &processing_}) {
        appendLine(output_, *entries);
    }
    appendLine(output_, types);
    timeOffset_ = static_cast<std::uint32_t>(first.utcOffset) - secondsFrom1970To1990;
}

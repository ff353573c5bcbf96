#include "export/TextWriter.h"

#include "export/DecimalText.h"
#include "export/ExportOutput.h"
#include "export/GeneralNumber.h"

#include <array>
#include <string_view>
#include <utility>

namespace {

// More than all time columns take, whatever numbers a damaged record holds.
constexpr std::size_t timeRoom = 128;

constexpr std::array<std::pair<std::uint32_t, std::string_view>, 5> timeNames{{
    {TimeColumns::seconds, "SECONDS"},
    {TimeColumns::nanoseconds, "NANOSECONDS"},
    {TimeColumns::date, "DATE"},
    {TimeColumns::time, "TIME"},
    {TimeColumns::timestamp, "TIMESTAMP"},
}};

char *writeDate(char *out, const RecordStamp &stamp) {
    out = writeDecimal(out, stamp.year, 4);
    *out++ = '-';
    out = writeDecimal(out, stamp.month, 2);
    *out++ = '-';
    return writeDecimal(out, stamp.day, 2);
}

char *writeTimeOfDay(char *out, const RecordStamp &stamp) {
    out = writeDecimal(out, stamp.hour, 2);
    *out++ = ':';
    out = writeDecimal(out, stamp.minute, 2);
    *out++ = ':';
    return writeDecimal(out, stamp.second, 2);
}

char *writeOffset(char *out, std::int32_t offset) {
    *out = '+';
    return std::to_chars(out + (offset >= 0 ? 1 : 0), out + 12, offset).ptr;
}

} // namespace

void TextWriter::setColumns(const std::vector<std::string> &valueNames, std::uint32_t timeColumns) {
    timeColumns_ = timeColumns;
    names_.clear();
    for (const auto &[column, name] : timeNames) {
        if ((timeColumns & column) != 0) {
            names_.emplace_back(name);
        }
    }
    names_.insert(names_.end(), valueNames.begin(), valueNames.end());
}

void TextWriter::write(const Record &record) {
    if (!headerIsWritten_) {
        writeHeader(record.values.size());
        headerIsWritten_ = true;
    }
    char *const begin = output_.room(timeRoom + record.values.size() * generalNumberRoom);
    char *out = writeGeneralFields(writeTime(begin, record), record.values);
    // Every field left a tab behind it; the last one's place is the line feed's.
    out -= out != begin ? 1 : 0;
    *out++ = '\n';
    output_.take(out);
    output_.endRecord();
}

// Two names more than values, whatever time columns there are: programs that read these files count on it.
void TextWriter::writeHeader(std::size_t valueCount) {
    names_.resize(valueCount + 2);
    std::string line;
    for (const std::string &name : names_) {
        const std::string_view quote = name.find(' ') != std::string::npos ? "\"" : "";
        line.append(quote).append(name).append(quote) += '\t';
    }
    line.back() = '\n';
    output_.append(line);
}

char *TextWriter::writeTime(char *out, const Record &record) const {
    if ((timeColumns_ & TimeColumns::seconds) != 0) {
        out = writeDecimal(out, record.seconds);
        *out++ = '\t';
    }
    if ((timeColumns_ & TimeColumns::nanoseconds) != 0) {
        out = writeDecimal(out, record.nanoseconds);
        *out++ = '\t';
    }
    if ((timeColumns_ & TimeColumns::date) != 0) {
        out = writeDate(out, record);
        *out++ = '\t';
    }
    if ((timeColumns_ & TimeColumns::time) != 0) {
        out = writeTimeOfDay(out, record);
        *out++ = '\t';
    }
    if ((timeColumns_ & TimeColumns::timestamp) != 0) {
        out = writeDate(out, record);
        *out++ = 'T';
        out = writeTimeOfDay(out, record);
        if ((timeColumns_ & TimeColumns::offset) != 0) {
            out = writeOffset(out, record.utcOffset);
        }
        *out++ = '\t';
    }
    return out;
}

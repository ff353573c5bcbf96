#include "export/DiagnosticsWriter.h"

#include "export/DecimalText.h"
#include "export/ExportOutput.h"
#include "time/CalendarTime.h"
#include "time/TimeValue.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <string_view>

namespace {

constexpr std::string_view header =
    "TIMESTAMP\tSECONDS\tDIAG\tNOSIGNAL\tMOTOR\tPUMP\tTOPHEATER\tBOTTOMHEATER\r\n";
constexpr std::array<std::string_view, 5> bitsOfColumns{"NOSIGNAL", "MOTORSPINNING", "PUMPON", "TOPHEATERON",
                                                        "BOTTOMHEATERON"};
constexpr std::size_t lineRoom = 128;
constexpr std::uint32_t usedBits = 0xffff; // the upper half of the word is ignored
constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
constexpr std::uint32_t nanosecondsPerTenth = 100'000'000;

// A name that is missing leaves its column at bit 0: readers of these logs know it so.
std::uint32_t maskOf(std::string_view name, const std::vector<std::string> &bitNames) {
    const auto found = std::find(bitNames.begin(), bitNames.end(), name);
    const auto position = found == bitNames.end() ? 0 : found - bitNames.begin();
    return position < 32 ? (1U << position) & usedBits : 0;
}

// UTC, to the tenth of a second that has begun.
char *writeTimestamp(char *out, const RecordStamp &stamp) {
    std::tm utc{};
    breakDownUtc(stamp.seconds, utc);
    const auto part = [&out](int number, int digits, char behind) {
        out = writeDecimal(out, static_cast<std::uint32_t>(number), digits);
        *out++ = behind;
    };
    part(utc.tm_year + 1900, 4, '-');
    part(utc.tm_mon + 1, 2, '-');
    part(utc.tm_mday, 2, ' ');
    part(utc.tm_hour, 2, ':');
    part(utc.tm_min, 2, ':');
    part(utc.tm_sec, 2, '.');
    return writeDecimal(out, stamp.nanoseconds / nanosecondsPerTenth);
}

// Both parts have the sign of the whole.
TimeValue elapsed(const RecordStamp &start, const RecordStamp &stamp) {
    const auto nanosecondsOf = [](const RecordStamp &time) {
        return std::int64_t{time.seconds} * nanosecondsPerSecond + std::int64_t{time.nanoseconds};
    };
    const std::int64_t nanoseconds = nanosecondsOf(stamp) - nanosecondsOf(start);
    return {nanoseconds / nanosecondsPerSecond,
            static_cast<std::int32_t>(nanoseconds % nanosecondsPerSecond)};
}

} // namespace

DiagnosticsWriter::DiagnosticsWriter(ExportOutput &output, const std::vector<std::string> &bitNames)
    : output_(output) {
    std::transform(bitsOfColumns.begin(), bitsOfColumns.end(), masks_.begin(),
                   [&bitNames](std::string_view name) { return maskOf(name, bitNames); });
    states_.fill('0');
    output_.append(header);
}

void DiagnosticsWriter::write(const Record &record) {
    if (!start_) {
        start_ = record;
    }
    const States states = statesIn(record.diagnosticWord);
    if (states != states_) {
        states_ = states;
        writeLine(record);
    }
}

DiagnosticsWriter::States DiagnosticsWriter::statesIn(std::uint32_t word) const {
    States states{};
    std::transform(masks_.begin(), masks_.end(), states.begin(),
                   [word](std::uint32_t mask) { return (word & mask) != 0 ? '1' : '0'; });
    return states;
}

// Changes are rare, and whoever follows the log sees each at once.
void DiagnosticsWriter::writeLine(const Record &record) {
    char *out = writeTimestamp(output_.room(lineRoom), record);
    *out++ = '\t';
    const std::string seconds = formatSecondsNanos(elapsed(*start_, record));
    out = std::copy(seconds.begin(), seconds.end(), out);
    *out++ = '\t';
    out = writeDecimal(out, record.diagnosticWord);
    for (const char state : states_) {
        *out++ = '\t';
        *out++ = state;
    }
    *out++ = '\r';
    *out++ = '\n';
    output_.take(out);
    output_.flush();
}

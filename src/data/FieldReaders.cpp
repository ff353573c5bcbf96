#include "data/FieldReaders.h"

#include "data/ClockFields.h"
#include "data/NumberReading.h"
#include "data/PlainFields.h"
#include "data/RecordKernels.h"
#include "data/ValueRun.h"

#include <cmath>

namespace {

// Takes an integer cut to the field's width.
template <typename Field>
bool readInto(TextCursor &cursor, Field &field) {
    std::int64_t value = 0;
    if (!readInteger(cursor, value)) {
        return false;
    }
    field = static_cast<Field>(value);
    return true;
}

// Takes three integers with one character of any kind between each two.
template <typename First>
bool readTriple(TextCursor &cursor, First &first, std::uint8_t &second, std::uint8_t &third) {
    const auto stepOverSeparator = [&cursor] { cursor.at += cursor.at != cursor.end ? 1 : 0; };
    if (!readInto(cursor, first)) {
        return false;
    }
    stepOverSeparator();
    if (!readInto(cursor, second)) {
        return false;
    }
    stepOverSeparator();
    return readInto(cursor, third);
}

// Nanoseconds of a fraction of a second that was read in single precision; of what does not fit, the low 32
// bits. Both are kept so that times read the same as ever.
std::uint32_t nanosecondsOf(float fraction) {
    const double nanoseconds = static_cast<double>(fraction) * 1e9;
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (!(std::abs(nanoseconds) < limit)) {
        return 0;
    }
    return static_cast<std::uint32_t>(static_cast<std::int64_t>(nanoseconds));
}

// The part behind the seconds: ":" and milliseconds, or a decimal fraction.
bool readFraction(TextCursor &cursor, RecordStamp &stamp) {
    if (cursor.at == cursor.end) {
        return true;
    }
    if (*cursor.at == ':') {
        ++cursor.at;
        std::int64_t milliseconds = 0;
        if (!readInteger(cursor, milliseconds)) {
            return false;
        }
        stamp.nanoseconds = static_cast<std::uint32_t>(milliseconds) * 1000000U;
    } else if (*cursor.at == '.') {
        float fraction = 0;
        if (!readFloat(cursor, fraction)) {
            return false;
        }
        stamp.nanoseconds = nanosecondsOf(fraction);
    }
    return true;
}

bool readTimeOfDay(TextCursor &cursor, RecordStamp &stamp) {
    if (readPlainTimeOfDay(cursor, stamp)) {
        stamp.flags |= RecordStamp::hasTimeOfDay;
        return true;
    }
    if (!readTriple(cursor, stamp.hour, stamp.minute, stamp.second)) {
        return false;
    }
    stamp.flags |= RecordStamp::hasTimeOfDay;
    return readFraction(cursor, stamp);
}

bool readDate(TextCursor &cursor, RecordStamp &stamp) {
    if (!readPlainDate(cursor, stamp) && !readTriple(cursor, stamp.year, stamp.month, stamp.day)) {
        return false;
    }
    stamp.flags |= RecordStamp::hasDate;
    return true;
}

bool readDiagnosticWord(TextCursor &cursor, const FieldReader &reader, RecordStamp &stamp, double *values) {
    std::int64_t word = 0;
    if (!readInteger(cursor, word)) {
        return false;
    }
    stamp.diagnosticWord = static_cast<std::uint32_t>(word);
    values[reader.firstValue] = static_cast<double>(word);
    // A set flag reads as its position, not as 1: each one then plots on a level of its own.
    constexpr std::uint32_t wordBits = 32;
    for (std::uint32_t position = 1; position <= reader.flagCount; ++position) {
        const bool isSet = position <= wordBits && (stamp.diagnosticWord >> (position - 1) & 1U) != 0;
        values[reader.firstValue + position] = isSet ? position : 0;
    }
    return true;
}

// Sum of a line's bytes up to a place that only moves on, so that many checksum columns cost no more than
// one.
class RunningSum {
public:
    RunningSum(std::uint8_t seed, const char *begin) : at_(begin), sum_(seed) {}

    std::uint8_t upTo(const char *end) {
        if (at_ < end) {
            sum_ = static_cast<std::uint8_t>(sum_ + recordKernels().sumBytes(at_, end));
            at_ = end;
        }
        return sum_;
    }

private:
    const char *at_;
    std::uint8_t sum_;
};

FieldResult checkSum(TextCursor &cursor, RunningSum &running, const char *fields) {
    if (cursor.at != cursor.end && *cursor.at == '\t') {
        ++cursor.at;
    }
    TextCursor digits = cursor;
    skipWhiteSpace(digits);
    if (digits.at != digits.end && (*digits.at == '+' || *digits.at == '-')) {
        ++digits.at;
    }
    std::uint8_t expected = 0;
    if (!readInto(cursor, expected)) {
        return FieldResult::bad;
    }
    const auto sum = running.upTo(digits.at);
    if (sum == expected) {
        return FieldResult::good;
    }
    // Some firmware leaves the tab before the check sum out of it.
    const auto last = digits.at > fields ? static_cast<std::uint8_t>(digits.at[-1]) : std::uint8_t{0};
    return static_cast<std::uint8_t>(sum - last) == expected ? FieldResult::good
                                                             : FieldResult::checksumFailure;
}

void skipField(TextCursor &cursor) {
    skipWhiteSpace(cursor);
    while (cursor.at != cursor.end && *cursor.at != '\t') {
        ++cursor.at;
    }
}

} // namespace

void noteRuns(std::vector<FieldReader> &readers) {
    std::uint32_t run = 0;
    // NOLINTNEXTLINE(modernize-loop-convert): backwards
    for (auto reader = readers.rbegin(); reader != readers.rend(); ++reader) {
        run = reader->kind == FieldReader::Kind::value ? run + 1 : 0;
        if (run > 0) {
            reader->fieldCount = run;
        }
    }
}

FieldResult readFields(std::span<const FieldReader> readers, std::uint8_t checksumSeed,
                       std::string_view fields, RecordStamp &stamp, double *values) {
    stamp = RecordStamp();
    TextCursor cursor{fields.data(), fields.data() + fields.size()};
    RunningSum running(checksumSeed, fields.data());
    PlainFields plain(cursor);
    for (std::size_t i = 0; i < readers.size(); ++i) {
        const FieldReader &reader = readers[i];
        bool good = true;
        switch (reader.kind) {
        case FieldReader::Kind::value:
            good = readFloats(cursor, fields.data(), reader.fieldCount, values + reader.firstValue);
            i += reader.fieldCount - 1;
            break;
        case FieldReader::Kind::seconds:
            good = readInto(cursor, stamp.seconds);
            break;
        case FieldReader::Kind::nanoseconds:
            good = readInto(cursor, stamp.nanoseconds);
            break;
        case FieldReader::Kind::date:
            good = readDate(cursor, stamp);
            break;
        case FieldReader::Kind::timeOfDay:
            good = readTimeOfDay(cursor, stamp);
            break;
        case FieldReader::Kind::diagnosticWord:
            good = readDiagnosticWord(cursor, reader, stamp, values);
            break;
        case FieldReader::Kind::checksum: {
            const FieldResult result = checkSum(cursor, running, fields.data());
            if (result != FieldResult::good) {
                return result;
            }
            break;
        }
        case FieldReader::Kind::checkedWord: {
            std::int64_t word = 0;
            good = readInteger(cursor, word);
            break;
        }
        case FieldReader::Kind::checkedValues:
            good = passFloats(cursor, reader.fieldCount, plain);
            break;
        case FieldReader::Kind::skip:
            // A reader that needs a field follows. Without this, a header of very many skipped columns would
            // cost as much for each line, be it empty.
            if (cursor.at == cursor.end) {
                return FieldResult::bad;
            }
            skipField(cursor);
            break;
        }
        if (!good) {
            return FieldResult::bad;
        }
    }
    return FieldResult::good;
}

#include "independent/IndependentReader.h"

#include <cmath>
#include <cstdlib>
#include <limits>
#include <locale.h>
#include <string_view>

namespace {

// Numbers are read as in the C locale, whatever the program's.
locale_t plainLocale() {
    static locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

bool isWhite(char c) {
    return std::string_view(" \t\n\v\f\r").find(c) != std::string_view::npos;
}

unsigned sumOf(const std::string &text, std::size_t end) {
    unsigned sum = 0;
    for (std::size_t i = 0; i < end; ++i) {
        sum += static_cast<unsigned char>(text[i]);
    }
    return sum;
}

// Reads the fields of one line, from left to right.
class LineReading {
public:
    LineReading(IndependentBlock &block, const std::string &line)
        : block_(block), line_(line), zone_(*block.zone) {}

    std::optional<IndependentRecord> read() {
        for (const std::string &column : block_.columns) {
            readColumn(column);
            if (isBad_) {
                return std::nullopt;
            }
        }
        record_.values.resize(block_.valueNames.size());
        completeTime();
        return record_;
    }

private:
    void readColumn(const std::string &column) {
        if (column == "SECONDS") {
            record_.seconds = static_cast<std::uint32_t>(integer());
        } else if (column == "NANOSECONDS") {
            record_.nanoseconds = static_cast<std::uint32_t>(integer());
        } else if (column == "DATE") {
            readDate();
        } else if (column == "TIME") {
            readTime();
        } else if (column == "DIAG") {
            readDiagnostics();
        } else if (column == "CHK") {
            readChecksum();
        } else if (column.empty() || column == "FILENAME" || column == "REMARK") {
            skip();
        } else {
            record_.values.push_back(number());
        }
    }

    std::int64_t integer() {
        const char *begin = line_.c_str() + at_;
        char *end = nullptr;
        const std::int64_t value = strtoll_l(begin, &end, 10, plainLocale());
        moveTo(begin, end);
        return value;
    }

    float number() {
        const char *begin = line_.c_str() + at_;
        char *end = nullptr;
        const float value = strtof_l(begin, &end, plainLocale());
        moveTo(begin, end);
        // What stands in parentheses behind "nan" is read, but says nothing that C would define.
        return std::isnan(value) ? std::copysign(std::numeric_limits<float>::quiet_NaN(), value) : value;
    }

    void moveTo(const char *begin, const char *end) {
        isBad_ = isBad_ || begin == end;
        at_ += static_cast<std::size_t>(end - begin);
    }

    char next() const { return at_ < line_.size() ? line_[at_] : '\0'; }

    // Whatever byte stands between two parts of a date.
    void stepOverSeparator() { at_ += at_ < line_.size() ? 1U : 0U; }

    void readDate() {
        record_.year = static_cast<std::uint16_t>(integer());
        stepOverSeparator();
        record_.month = static_cast<std::uint8_t>(integer());
        stepOverSeparator();
        record_.day = static_cast<std::uint8_t>(integer());
        hasDate_ = true;
    }

    void readTime() {
        record_.hour = static_cast<std::uint8_t>(integer());
        stepOverSeparator();
        record_.minute = static_cast<std::uint8_t>(integer());
        stepOverSeparator();
        record_.second = static_cast<std::uint8_t>(integer());
        hasTime_ = true;
        if (isBad_) {
            return;
        }
        if (next() == ':') {
            ++at_;
            record_.nanoseconds = static_cast<std::uint32_t>(static_cast<std::uint64_t>(integer()) * 1000000);
        } else if (next() == '.') {
            const double nanoseconds = static_cast<double>(number()) * 1e9;
            record_.nanoseconds =
                nanoseconds < 9.2e18 ? static_cast<std::uint32_t>(static_cast<std::int64_t>(nanoseconds)) : 0;
        }
    }

    void readDiagnostics() {
        const std::int64_t word = integer();
        record_.diagnostics = static_cast<std::uint32_t>(word);
        record_.values.push_back(static_cast<double>(word));
        for (std::size_t i = 0; i < block_.diagnosticNames.size(); ++i) {
            const bool isSet = i < 32 && (record_.diagnostics >> i) % 2 == 1;
            record_.values.push_back(isSet ? static_cast<double>(i + 1) : 0);
        }
    }

    void readChecksum() {
        at_ += next() == '\t' ? 1U : 0U;
        std::size_t digits = at_;
        while (digits < line_.size() && isWhite(line_[digits])) {
            ++digits;
        }
        digits += digits < line_.size() && (line_[digits] == '+' || line_[digits] == '-') ? 1U : 0U;
        const std::int64_t wanted = integer();
        if (isBad_) {
            return;
        }
        const unsigned seed = sumOf(block_.tag, block_.tag.size()) + '\t';
        const unsigned whole = seed + sumOf(line_, digits);
        const unsigned withoutTab = seed + sumOf(line_, digits == 0 ? 0 : digits - 1);
        const auto low = static_cast<unsigned>(wanted & 255);
        if (low != whole % 256 && low != withoutTab % 256) {
            isBad_ = true;
            ++block_.wrongChecksums;
        }
    }

    void skip() {
        while (at_ < line_.size() && isWhite(line_[at_])) {
            ++at_;
        }
        while (at_ < line_.size() && line_[at_] != '\t') {
            ++at_;
        }
    }

    void completeTime() {
        if (hasDate_ && hasTime_ && (record_.seconds == 0 || zone_.isUnknown())) {
            const IndependentZone::Fields local{record_.year, record_.month,  record_.day,
                                                record_.hour, record_.minute, record_.second};
            record_.seconds = static_cast<std::uint32_t>(zone_.utcOf(local, record_.offset));
            return;
        }
        const IndependentZone::Local local = zone_.localTime(record_.seconds);
        record_.offset = local.offset;
        if (!hasDate_) {
            record_.year = static_cast<std::uint16_t>(local.fields[0]);
            record_.month = static_cast<std::uint8_t>(local.fields[1]);
            record_.day = static_cast<std::uint8_t>(local.fields[2]);
        }
        if (!hasTime_) {
            record_.hour = static_cast<std::uint8_t>(local.fields[3]);
            record_.minute = static_cast<std::uint8_t>(local.fields[4]);
            record_.second = static_cast<std::uint8_t>(local.fields[5]);
        }
    }

    IndependentBlock &block_;
    const std::string &line_;
    IndependentZone &zone_;
    IndependentRecord record_;
    std::size_t at_ = 0;
    bool isBad_ = false;
    bool hasDate_ = false;
    bool hasTime_ = false;
};

} // namespace

std::optional<IndependentRecord> readIndependentRecord(IndependentBlock &block, const std::string &fields) {
    return LineReading(block, fields).read();
}

#include "data/FieldReaders.h"

#include "data/ColumnLayout.h"
#include "support/HeapText.h"
#include "support/RecordComparison.h"

#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace std::string_view_literals;
using Names = std::vector<std::string>;

struct Reading {
    FieldResult result = FieldResult::bad;
    Record record;
};

Reading readLine(const Names &columns, std::string_view fields, const Names &flags = {},
                 std::string_view tag = "DATA") {
    const ColumnLayout layout = layOutColumns(tag, columns, flags);
    const HeapText text(fields);
    Reading reading;
    reading.record.values.resize(layout.valueNames.size());
    reading.result = readFields(layout.readers, layout.checksumSeed, text.view(), reading.record);
    return reading;
}

FieldResult resultOf(const Names &columns, std::string_view fields) {
    return readLine(columns, fields).result;
}

std::vector<double> valuesOf(const Names &columns, std::string_view fields, const Names &flags = {}) {
    const Reading reading = readLine(columns, fields, flags);
    EXPECT_EQ(reading.result, FieldResult::good) << fields;
    return reading.record.values;
}

unsigned byteSum(std::string_view text) {
    unsigned sum = 0;
    for (const char c : text) {
        sum += static_cast<unsigned char>(c);
    }
    return sum;
}

// What a check sum field says about `line`, the tag first and the field's own tab last.
std::string checksumOf(std::string_view line) {
    return std::to_string(byteSum(line) % 256);
}

} // namespace

TEST(FieldReaders, SecondsAreClampedTo64BitsAndCutTo32) {
    struct Row {
        const char *text;
        std::uint32_t seconds;
    };
    for (const Row &row : {Row{"0", 0}, Row{"+7", 7}, Row{"1559347200", 1559347200},
                           Row{"4294967295", 4294967295U}, Row{"4294967296", 0}, Row{"4294967297", 1},
                           Row{"-1", 4294967295U}, Row{"9223372036854775807", 4294967295U},
                           Row{"99999999999999999999", 4294967295U}, Row{"-99999999999999999999", 0}}) {
        for (const char *const name : {"SECONDS", "NANOSECONDS"}) {
            const Reading reading = readLine({name}, row.text);
            EXPECT_EQ(reading.result, FieldResult::good);
            const bool isSeconds = name == std::string_view("SECONDS");
            EXPECT_EQ(reading.record.seconds, isSeconds ? row.seconds : 0) << row.text;
            EXPECT_EQ(reading.record.nanoseconds, isSeconds ? 0 : row.seconds) << row.text;
        }
    }
}

TEST(FieldReaders, AFieldFromWhichNothingCanBeReadMakesTheRecordBad) {
    for (const char *const name : {"SECONDS", "NANOSECONDS", "DATE", "TIME", "DIAG", "CHK", "X"}) {
        for (const char *const text : {"", " ", "\t", "x", "+", "-", "+-5", "--5", ":5", "\xb2"}) {
            EXPECT_EQ(resultOf({name}, text), FieldResult::bad) << name << " " << text;
        }
    }
}

TEST(FieldReaders, AnEmptyNumericFieldRunsOnIntoTheNextField) {
    for (const char *const name : {"SECONDS", "NANOSECONDS", "DIAG", "X"}) {
        const Reading reading = readLine({name, "A", "B"}, "\t5\t6\t7");
        ASSERT_EQ(reading.result, FieldResult::good) << name;
        const std::size_t first = reading.record.values.size() - 2;
        EXPECT_EQ(reading.record.values[first], 6) << name;
        EXPECT_EQ(reading.record.values[first + 1], 7) << name;
        EXPECT_EQ(resultOf({name, "A", "B"}, "\t5\t6"), FieldResult::bad) << name;
    }
    EXPECT_EQ(readLine({"SECONDS", "A"}, "\t5\t6").record.seconds, 5U);
}

TEST(FieldReaders, ASkippedFieldMayHoldAnything) {
    for (const char *const name : {"FILENAME", "REMARK", ""}) {
        EXPECT_EQ(valuesOf({name, "A"}, "12 \xff\x01 x:/.-\t5"), (std::vector<double>{5})) << name;
        EXPECT_EQ(valuesOf({"A", name}, "5\twords"), (std::vector<double>{5})) << name;
        EXPECT_EQ(valuesOf({"A", name}, "5"), (std::vector<double>{5})) << name;
        EXPECT_EQ(valuesOf({"A", name}, "5\t"), (std::vector<double>{5})) << name;
    }
    EXPECT_EQ(valuesOf({"REMARK", "A"}, "a\0b\t5"sv), (std::vector<double>{5}));
}

TEST(FieldReaders, AnEmptySkippedFieldSwallowsItsTabAndTheNextField) {
    EXPECT_EQ(valuesOf({"REMARK", "A"}, "\t5\t6"), (std::vector<double>{6}));
    EXPECT_EQ(valuesOf({"A", "", "B"}, "1\t\t5\t6"), (std::vector<double>{1, 6}));
    EXPECT_EQ(resultOf({"REMARK", "A"}, "\t5"), FieldResult::bad);
}

TEST(FieldReaders, ADateTakesAnySingleCharacterBetweenItsNumbers) {
    struct Row {
        const char *text;
        unsigned year, month, day;
    };
    for (const Row &row :
         {Row{"2019-06-01", 2019, 6, 1}, Row{"2019/12/31", 2019, 12, 31}, Row{"2019x6y7", 2019, 6, 7},
          Row{"2019\t06\t01", 2019, 6, 1}, Row{"2019  6  7", 2019, 6, 7}, Row{"2019--6--7", 2019, 250, 249},
          Row{"65535-99-99", 65535, 99, 99}, Row{"65536-256-257", 0, 0, 1}}) {
        const Reading reading = readLine({"DATE"}, row.text);
        ASSERT_EQ(reading.result, FieldResult::good) << row.text;
        EXPECT_EQ(reading.record.year, row.year) << row.text;
        EXPECT_EQ(unsigned{reading.record.month}, row.month) << row.text;
        EXPECT_EQ(unsigned{reading.record.day}, row.day) << row.text;
        EXPECT_EQ(reading.record.flags, RecordStamp::hasDate) << row.text;
    }
    for (const char *const text : {"2019", "2019-", "2019-06", "2019-06-", "2019--", "2019-06x"}) {
        EXPECT_EQ(resultOf({"DATE"}, text), FieldResult::bad) << text;
    }
}

TEST(FieldReaders, ATimeOfDayTakesMillisecondsOrASinglePrecisionFraction) {
    struct Row {
        const char *text;
        std::uint32_t nanoseconds;
    };
    for (const Row &row :
         {Row{"12:30:05", 0}, Row{"12:30:05.5", 500000000}, Row{"12:30:05:250", 250000000},
          Row{"12:30:05.123", 123000003}, Row{"12-30-05.25", 250000000}, Row{"12:30:05: 7", 7000000},
          Row{"12:30:05.1e-60", 0}, Row{"12 30 05 7", 0}, Row{"12:30:05x.5", 0}, Row{"12:30:05\t.5", 0}}) {
        const Reading reading = readLine({"TIME"}, row.text);
        ASSERT_EQ(reading.result, FieldResult::good) << row.text;
        EXPECT_EQ(int{reading.record.hour}, 12) << row.text;
        EXPECT_EQ(int{reading.record.minute}, 30) << row.text;
        EXPECT_EQ(int{reading.record.second}, 5) << row.text;
        EXPECT_EQ(reading.record.nanoseconds, row.nanoseconds) << row.text;
        EXPECT_EQ(reading.record.flags, RecordStamp::hasTimeOfDay) << row.text;
    }
}

TEST(FieldReaders, AFractionThatDoesNotFitGoesToItsLow32Bits) {
    struct Row {
        const char *text;
        std::uint32_t nanoseconds;
    };
    for (const Row &row : {Row{"1:2:3.5e1", 705032704},     // 5e9 - 2^32
                           Row{"1:2:3.5e3", 1783793664},    // 5e11 modulo 2^32
                           Row{"1:2:3.5e30", 0},            // beyond 64 bits
                           Row{"1:2:3.5e99", 0},            // an infinity
                           Row{"1:2:3:4295", 32704},        // 4295000000 - 2^32
                           Row{"1:2:3:-1", 4293967296U}}) { // 2^32 - 1000000
        const Reading reading = readLine({"TIME"}, row.text);
        ASSERT_EQ(reading.result, FieldResult::good) << row.text;
        EXPECT_EQ(reading.record.nanoseconds, row.nanoseconds) << row.text;
    }
}

TEST(FieldReaders, AnIncompleteTimeOfDayMakesTheRecordBad) {
    for (const char *const text : {"12", "12:", "12:30", "12:30:", "12:30:x", "12:30:05.", "12:30:05.x",
                                   "12:30:05:", "12:30:05:x", "12::30:05"}) {
        EXPECT_EQ(resultOf({"TIME"}, text), FieldResult::bad) << text;
    }
}

TEST(FieldReaders, TheLaterOfTwoColumnsForTheNanosecondsCounts) {
    EXPECT_EQ(readLine({"TIME", "NANOSECONDS"}, "1:2:3.5\t7").record.nanoseconds, 7U);
    EXPECT_EQ(readLine({"NANOSECONDS", "TIME"}, "7\t1:2:3.5").record.nanoseconds, 500000000U);
    EXPECT_EQ(readLine({"NANOSECONDS", "TIME"}, "7\t1:2:3").record.nanoseconds, 7U);
}

TEST(FieldReaders, ASetDiagnosticFlagReadsAsItsPositionAndNotAsOne) {
    const Reading reading = readLine({"DIAG"}, "5", {"A", "B", "C"});
    ASSERT_EQ(reading.result, FieldResult::good);
    EXPECT_EQ(reading.record.values, (std::vector<double>{5, 1, 0, 3}));
    EXPECT_EQ(reading.record.diagnosticWord, 5U);
}

TEST(FieldReaders, TheDiagnosticValueIsTheIntegerAsReadAndTheWordItsLow32Bits) {
    struct Row {
        const char *text;
        double value;
        std::uint32_t word;
    };
    for (const Row &row :
         {Row{"0", 0, 0}, Row{"4294967295", 4294967295.0, 4294967295U}, Row{"4294967296", 4294967296.0, 0},
          Row{"1099511627777", 1099511627777.0, 1}, Row{"-1", -1, 4294967295U}, Row{"-2", -2, 4294967294U},
          Row{"99999999999999999999", 9223372036854775807.0, 4294967295U}}) {
        const Reading reading = readLine({"DIAG"}, row.text, {"A"});
        ASSERT_EQ(reading.result, FieldResult::good) << row.text;
        EXPECT_EQ(reading.record.values[0], row.value) << row.text;
        EXPECT_EQ(reading.record.diagnosticWord, row.word) << row.text;
        EXPECT_EQ(reading.record.values[1], row.word % 2) << row.text;
    }
}

TEST(FieldReaders, DiagnosticFlagsBeyondTheWordsBitsAreClear) {
    const Names flags(40, "F");
    const std::vector<double> values = valuesOf({"DIAG"}, "-1", flags);
    ASSERT_EQ(values.size(), 41U);
    for (std::size_t position = 1; position < values.size(); ++position) {
        EXPECT_EQ(values[position], position <= 32 ? static_cast<double>(position) : 0) << position;
    }
}

TEST(FieldReaders, TheLastOfTwoDiagnosticColumnsGivesTheWordAndEachItsOwnValues) {
    const Reading reading = readLine({"DIAG", "DIAG"}, "1\t2", {"A", "B"});
    ASSERT_EQ(reading.result, FieldResult::good);
    EXPECT_EQ(reading.record.values, (std::vector<double>{1, 1, 0, 2, 0, 2}));
    EXPECT_EQ(reading.record.diagnosticWord, 2U);
}

TEST(FieldReaders, ValuesAreReadInSinglePrecision) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(valuesOf({"X", "Y"}, "0.1\t412.345"), (std::vector<double>{0.1F, 412.345F}));
    EXPECT_EQ(valuesOf({"X", "Y", "Z"}, "1e39\t-inf\t0x1p3"), (std::vector<double>{infinity, -infinity, 8}));
    EXPECT_TRUE(sameNumbers(valuesOf({"X", "Y"}, "-0\tnan"), std::vector{-0.0, std::nan("")}));
}

TEST(FieldReaders, BytesBehindTheLastColumnAreIgnored) {
    EXPECT_EQ(valuesOf({"X"}, "5\t6\t7"), (std::vector<double>{5}));
    EXPECT_EQ(valuesOf({"X"}, "5abc"), (std::vector<double>{5}));
    EXPECT_EQ(valuesOf({}, "5\t6"), (std::vector<double>{}));
}

TEST(FieldReaders, ANumberEndsWhereItEndsAndTheNextFieldStartsThere) {
    EXPECT_EQ(valuesOf({"X", "Y"}, "5-6"), (std::vector<double>{5, -6}));
    EXPECT_EQ(resultOf({"X", "Y"}, "5x\t6"), FieldResult::bad);
}

TEST(FieldReaders, NothingOfTheRecordBeforeIsLeft) {
    const ColumnLayout layout = layOutColumns("DATA", {"X"}, {});
    Record record;
    record.seconds = record.nanoseconds = record.diagnosticWord = 7;
    record.utcOffset = 7;
    record.year = 7;
    record.flags = RecordStamp::hasDate;
    record.values = {7};
    ASSERT_EQ(readFields(layout.readers, 0, "5", record), FieldResult::good);
    EXPECT_TRUE(sameStamps(record, RecordStamp()));
    EXPECT_EQ(record.values, (std::vector<double>{5}));
}

TEST(FieldReaders, AChecksumCoversTheTagAndAllBytesBeforeItsDigits) {
    for (const std::string tag : {"DATA", "DATASTAT", "DATABIO"}) {
        const std::string prefix = tag + '\t';
        for (const std::string fields : {"1.5\t", "-2e3\t", "7\t\t", "7\t \t  "}) {
            const std::string sum = checksumOf(prefix + fields);
            EXPECT_EQ(readLine({"X", "CHK"}, fields + sum, {}, tag).result, FieldResult::good)
                << tag << " " << fields;
        }
    }
}

TEST(FieldReaders, BytesAbove127CountInAChecksumAsUnsignedOnes) {
    const std::string fields = "\xff\xfe\x80\t";
    EXPECT_EQ(
        resultOf({"REMARK", "CHK"}, fields + std::to_string((byteSum("DATA\t") + 255 + 254 + 128 + 9) % 256)),
        FieldResult::good);
}

TEST(FieldReaders, AChecksumMayLeaveOutTheTabBeforeIt) {
    for (const std::string tag : {"DATA", "DATASTAT", "DATABIO"}) {
        const std::string sum = checksumOf(tag + "\t1.5");
        EXPECT_EQ(readLine({"X", "CHK"}, "1.5\t" + sum, {}, tag).result, FieldResult::good) << tag;
        // Only the very last byte may be left out.
        EXPECT_EQ(readLine({"X", "CHK"}, "1.5\t\t" + sum, {}, tag).result, FieldResult::checksumFailure);
    }
}

TEST(FieldReaders, AWrongChecksumIsAChecksumFailure) {
    const unsigned sum = byteSum("DATA\t1.5\t");
    for (unsigned value = sum; value < sum + 256; ++value) {
        const FieldResult expected = value == sum || value % 256 == (sum - '\t') % 256
                                         ? FieldResult::good
                                         : FieldResult::checksumFailure;
        EXPECT_EQ(resultOf({"X", "CHK"}, "1.5\t" + std::to_string(value)), expected) << value - sum;
    }
}

TEST(FieldReaders, TheChecksumOfAnotherTagIsWrong) {
    EXPECT_EQ(readLine({"X", "CHK"}, "1.5\t" + checksumOf("DATA\t1.5\t"), {}, "DATASTAT").result,
              FieldResult::checksumFailure);
}

TEST(FieldReaders, ASignBeforeTheChecksumBelongsToTheBytesSummed) {
    for (const std::string sign : {"+", "-"}) {
        const unsigned sum = byteSum("DATA\t1.5\t" + sign) % 256;
        const unsigned shown = sign == "-" ? 256 - sum : sum;
        EXPECT_EQ(resultOf({"X", "CHK"}, "1.5\t" + sign + std::to_string(shown)), FieldResult::good) << sign;
        EXPECT_EQ(resultOf({"X", "CHK"}, "1.5\t" + sign + std::to_string(shown + 1)),
                  FieldResult::checksumFailure)
            << sign;
    }
}

TEST(FieldReaders, OnlyTheLowByteOfAChecksumCounts) {
    const unsigned sum = byteSum("DATA\t1.5\t");
    EXPECT_EQ(resultOf({"X", "CHK"}, "1.5\t" + std::to_string(sum + 25600)), FieldResult::good);
    EXPECT_EQ(resultOf({"X", "CHK"}, "1.5\t000" + std::to_string(sum % 256)), FieldResult::good);
}

TEST(FieldReaders, AChecksumInTheMiddleCoversWhatStandsBeforeIt) {
    const Reading reading =
        readLine({"X", "CHK", "Y"}, "1.5\t" + checksumOf("DATA\t1.5\t") + "\t2.5\tanything");
    EXPECT_EQ(reading.result, FieldResult::good);
    EXPECT_EQ(reading.record.values, (std::vector<double>{1.5, 2.5}));
    EXPECT_EQ(resultOf({"X", "CHK", "Y"}, "1.5\t" + checksumOf("DATA\t1.5\t")), FieldResult::bad);
}

TEST(FieldReaders, AChecksumAtTheVeryStartCoversOnlyTheTag) {
    for (const std::string tag : {"DATA", "DATASTAT", "DATABIO"}) {
        const std::string sum = checksumOf(tag + '\t');
        EXPECT_EQ(readLine({"CHK", "X"}, sum + "\t5", {}, tag).result, FieldResult::good) << tag;
        EXPECT_EQ(readLine({"CHK"}, sum, {}, tag).result, FieldResult::good) << tag;
        EXPECT_EQ(readLine({"CHK"}, checksumOf(tag), {}, tag).result, FieldResult::checksumFailure) << tag;
    }
}

TEST(FieldReaders, AMissingChecksumIsABadRecordAndNoChecksumFailure) {
    for (const char *const fields : {"1.5", "1.5\t", "1.5\tx", "1.5\t+", "1.5\t-x"}) {
        EXPECT_EQ(resultOf({"X", "CHK"}, fields), FieldResult::bad) << fields;
    }
}

TEST(FieldReaders, NoReaderRunsOnceTheRecordIsBad) {
    EXPECT_EQ(resultOf({"X", "CHK"}, "x\t0"), FieldResult::bad);
    EXPECT_EQ(resultOf({"X", "CHK", "Y"}, "1.5\t0\tx"), FieldResult::checksumFailure);
}

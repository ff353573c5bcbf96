#include "export/TextWriter.h"

#include "export/MadeRecord.h"
#include "export/MemorySink.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

// What a writer makes of `records`, and what it would have to.
std::string textOf(const std::vector<Record> &records, const std::vector<std::string> &names,
                   std::uint32_t timeColumns) {
    MemoryOutput output;
    TextWriter writer(*output);
    writer.setColumns(names, timeColumns);
    for (const Record &record : records) {
        writer.write(record);
    }
    return output.bytes();
}

std::string headerOf(std::size_t values, const std::vector<std::string> &names, std::uint32_t timeColumns) {
    Record record = recordAtHalfPastOne({});
    record.values.assign(values, 1);
    const std::string text = textOf({record}, names, timeColumns);
    return text.substr(0, text.find('\n') + 1);
}

std::string lineOf(const Record &record, std::uint32_t timeColumns) {
    const std::string text = textOf({record}, {"A", "B"}, timeColumns);
    return text.substr(text.find('\n') + 1);
}

TEST(TextWriter, SecondsNanosecondsDateAndTimeStandInThisOrder) {
    EXPECT_EQ(lineOf(recordAtHalfPastOne({1.25, -0.0031}), 1 | 2 | 4 | 8),
              "1625059800\t500000000\t2021-06-30\t13:30:00\t1.25\t-0.0031\n");
}

TEST(TextWriter, ATimestampIsLocalAndMayCarryItsOffset) {
    EXPECT_EQ(lineOf(recordAtHalfPastOne({1.25, -0.0031}, 7200), 16 | 32),
              "2021-06-30T15:30:00+7200\t1.25\t-0.0031\n");
    EXPECT_EQ(lineOf(recordAtHalfPastOne({1}, 7200), 16), "2021-06-30T15:30:00\t1\n");
}

TEST(TextWriter, ANegativeOffsetPrintsWithItsSign) {
    Record record = recordAtHalfPastOne({7}, -18000);
    record.month = 1;
    record.day = 1;
    record.hour = 0;
    record.minute = 0;
    EXPECT_EQ(lineOf(record, 16 | 32), "2021-01-01T00:00:00-18000\t7\n");
}

TEST(TextWriter, AnOffsetOfZeroHasAPlus) {
    EXPECT_EQ(lineOf(recordAtHalfPastOne({7}), 16 | 32), "2021-06-30T13:30:00+0\t7\n");
}

TEST(TextWriter, AnOffsetWithoutATimestampAddsNothing) {
    EXPECT_EQ(lineOf(recordAtHalfPastOne({7}, 7200), 32), "7\n");
    EXPECT_EQ(lineOf(recordAtHalfPastOne({7}, 7200), 1 | 32), "1625059800\t7\n");
    EXPECT_EQ(headerOf(1, {"A"}, 32), "A\t\t\n");
}

TEST(TextWriter, EachTimeColumnStandsWhenItsFlagIsSetAndOnlyThen) {
    const std::vector<std::string> names{"SECONDS", "NANOSECONDS", "DATE", "TIME", "TIMESTAMP"};
    const std::vector<std::string> fields{"1625059800", "500000000", "2021-06-30", "13:30:00",
                                          "2021-06-30T13:30:00"};
    for (std::uint32_t flags = 0; flags < 64; ++flags) {
        std::string header;
        std::string line;
        for (std::size_t i = 0; i < names.size(); ++i) {
            if ((flags >> i & 1) != 0) {
                header += names[i] + '\t';
                line += fields[i] + (i == 4 && flags >= 32 ? "+0" : "") + '\t';
            }
        }
        // So many values that no name is lost: the rest of the header is empty names.
        const Record record = recordAtHalfPastOne({1, 2, 3, 4});
        const std::string text = textOf({record}, {"A"}, flags);
        EXPECT_TRUE(text.starts_with(header)) << text;
        EXPECT_TRUE(text.ends_with('\n' + line + "1\t2\t3\t4\n")) << text;
    }
}

TEST(TextWriter, AnUnsetMaskMeansSecondsAndNanoseconds) {
    MemoryOutput output;
    TextWriter writer(*output);
    writer.setColumns({"A"});
    writer.write(recordAtHalfPastOne({5}));
    EXPECT_EQ(output.bytes(), "SECONDS\tNANOSECONDS\tA\n1625059800\t500000000\t5\n");
}

TEST(TextWriter, NumbersOfTimesAreNotPadded) {
    Record record = recordAtHalfPastOne({5});
    record.seconds = 7;
    record.nanoseconds = 50;
    EXPECT_EQ(lineOf(record, 3), "7\t50\t5\n");
}

TEST(TextWriter, DatesAndTimesArePadded) {
    Record record = recordAtHalfPastOne({5});
    record.year = 33;
    record.month = 2;
    record.day = 3;
    record.hour = 4;
    record.minute = 5;
    record.second = 6;
    EXPECT_EQ(lineOf(record, 4 | 8 | 16), "0033-02-03\t04:05:06\t0033-02-03T04:05:06\t5\n");
}

// The fields of a damaged date are printed whole.
TEST(TextWriter, TheLargestNumbersOfEveryTimeFieldFit) {
    Record record = recordAtHalfPastOne({5});
    record.seconds = record.nanoseconds = 4294967295;
    record.year = 65535;
    record.month = record.day = record.hour = record.minute = record.second = 255;
    record.utcOffset = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(lineOf(record, 63), "4294967295\t4294967295\t65535-255-255\t255:255:255\t"
                                  "65535-255-255T255:255:255-2147483648\t5\n");
}

TEST(TextWriter, WithoutTimeColumnsLinesHoldValuesOnlyAndTheHeaderEndsInTwoEmptyNames) {
    EXPECT_EQ(textOf({recordAtHalfPastOne({1, 2, 3})}, {"A", "B", "C"}, 0), "A\tB\tC\t\t\n1\t2\t3\n");
}

TEST(TextWriter, TheHeaderHasTwoNamesMoreThanValuesWhateverTheTimeColumns) {
    const std::vector<std::string> names{"A", "B", "C"};
    EXPECT_EQ(headerOf(3, names, 0), "A\tB\tC\t\t\n");
    EXPECT_EQ(headerOf(3, names, 1), "SECONDS\tA\tB\tC\t\n");
    EXPECT_EQ(headerOf(3, names, 3), "SECONDS\tNANOSECONDS\tA\tB\tC\n");
    EXPECT_EQ(headerOf(3, names, 4 | 8 | 16), "DATE\tTIME\tTIMESTAMP\tA\tB\n");
    EXPECT_EQ(headerOf(3, names, 31), "SECONDS\tNANOSECONDS\tDATE\tTIME\tTIMESTAMP\n");
    EXPECT_EQ(headerOf(1, names, 31), "SECONDS\tNANOSECONDS\tDATE\n");
    EXPECT_EQ(headerOf(1, names, 3), "SECONDS\tNANOSECONDS\tA\n");
    EXPECT_EQ(headerOf(4, names, 3), "SECONDS\tNANOSECONDS\tA\tB\tC\t\n");
}

TEST(TextWriter, ANameWithASpaceStandsInQuotes) {
    EXPECT_EQ(headerOf(2, {"CO2 dry", "H2O"}, 3), "SECONDS\tNANOSECONDS\t\"CO2 dry\"\tH2O\n");
}

TEST(TextWriter, ANameWithATabButNoSpaceStandsBare) {
    EXPECT_EQ(headerOf(2, {"A\tB", "C"}, 3), "SECONDS\tNANOSECONDS\tA\tB\tC\n");
}

TEST(TextWriter, QuotesWithinANameAreLeftAsTheyAre) {
    EXPECT_EQ(headerOf(2, {"a\"b", "a\" b"}, 3), "SECONDS\tNANOSECONDS\ta\"b\t\"a\" b\"\n");
}

TEST(TextWriter, TheHeaderComesOnceWithTheFirstRecord) {
    MemoryOutput output;
    TextWriter writer(*output);
    writer.setColumns({"A"}, 1);
    output->flush();
    EXPECT_EQ(output.log().bytes, "");
    writer.write(recordAtHalfPastOne({1}));
    writer.write(recordAtHalfPastOne({2}));
    EXPECT_EQ(output.bytes(), "SECONDS\tA\t\n1625059800\t1\n1625059800\t2\n");
}

TEST(TextWriter, SettingColumnsAgainForgetsTheFormerNames) {
    MemoryOutput output;
    TextWriter writer(*output);
    writer.setColumns({"OLD", "OLDER"}, 31);
    writer.setColumns({"A"}, 1);
    writer.write(recordAtHalfPastOne({1}));
    EXPECT_EQ(output.bytes(), "SECONDS\tA\t\n1625059800\t1\n");
}

TEST(TextWriter, MissingValuesPrintNan) {
    const double missing = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(lineOf(recordAtHalfPastOne({missing, -missing}), 0), "nan\tnan\n");
}

TEST(TextWriter, InfinitiesPrintWithTheirSigns) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(lineOf(recordAtHalfPastOne({infinity, -infinity}), 0), "inf\t-inf\n");
}

// The first line's names hold for all of them.
TEST(TextWriter, ALaterRecordWithMoreOrFewerValuesIsWrittenWhole) {
    EXPECT_EQ(textOf({recordAtHalfPastOne({1, 2}), recordAtHalfPastOne({1, 2, 3}), recordAtHalfPastOne({1})},
                     {"A", "B"}, 0),
              "A\tB\t\t\n1\t2\n1\t2\t3\n1\n");
}

TEST(TextWriter, ManyRecordsLeaveInLargeBlocksOfWholeLines) {
    MemoryOutput output;
    TextWriter writer(*output);
    writer.setColumns({"A"}, 1);
    const std::string line = "1625059800\t1\n";
    const std::size_t records = 100'000;
    for (std::size_t i = 0; i < records; ++i) {
        writer.write(recordAtHalfPastOne({1}));
    }
    EXPECT_EQ(output.bytes().size(), std::string("SECONDS\tA\t\n").size() + records * line.size());
    std::size_t end = 0;
    for (std::size_t i = 0; i + 1 < output.log().blocks.size(); ++i) {
        EXPECT_GE(output.log().blocks[i], ExportOutput::blockSize);
        end += output.log().blocks[i];
        EXPECT_EQ(output.log().bytes[end - 1], '\n');
    }
}

} // namespace

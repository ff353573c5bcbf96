#include "export/DiagnosticsWriter.h"

#include "export/MadeRecord.h"
#include "export/MemorySink.h"

#include <gtest/gtest.h>

namespace {

const std::string header = "TIMESTAMP\tSECONDS\tDIAG\tNOSIGNAL\tMOTOR\tPUMP\tTOPHEATER\tBOTTOMHEATER\r\n";

// Bits 0 to 4 are the five conditions, in another order than their columns.
const std::vector<std::string> fiveNames{"PUMPON", "NOSIGNAL", "BOTTOMHEATERON", "MOTORSPINNING",
                                         "TOPHEATERON"};

// A record `nanoseconds` after 2021-06-30 13:30:00 UTC.
Record recordWith(std::uint32_t word, std::int64_t nanoseconds = 0) {
    Record record = recordAtHalfPastOne({1});
    const std::int64_t time = std::int64_t{1625059800} * 1'000'000'000 + nanoseconds;
    record.seconds = static_cast<std::uint32_t>(time / 1'000'000'000);
    record.nanoseconds = static_cast<std::uint32_t>(time % 1'000'000'000);
    record.diagnosticWord = word;
    return record;
}

// What is written behind the header.
std::string logOf(const std::vector<std::string> &bitNames, const std::vector<Record> &records) {
    MemoryOutput output;
    DiagnosticsWriter writer(*output, bitNames);
    for (const Record &record : records) {
        writer.write(record);
    }
    const std::string bytes = output.bytes();
    EXPECT_TRUE(bytes.starts_with(header)) << bytes;
    return bytes.substr(header.size());
}

// The columns from DIAG on, for one word after another.
std::vector<std::string> statesOf(const std::vector<std::string> &bitNames,
                                  const std::vector<std::uint32_t> &words) {
    std::vector<Record> records;
    records.reserve(words.size());
    for (const std::uint32_t word : words) {
        records.push_back(recordWith(word));
    }
    const std::string text = logOf(bitNames, records);
    const std::string before = "2021-06-30 13:30:00.0\t0.000000000\t";
    std::vector<std::string> states;
    for (std::size_t begin = 0; begin < text.size();) {
        const auto end = text.find("\r\n", begin);
        const std::string line = text.substr(begin, end - begin);
        EXPECT_TRUE(line.starts_with(before)) << line;
        states.push_back(line.substr(before.size()));
        begin = end + 2;
    }
    return states;
}

TEST(DiagnosticsWriter, TheHeaderStandsEvenWithoutRecords) {
    EXPECT_EQ(logOf(fiveNames, {}), "");
}

TEST(DiagnosticsWriter, EveryConditionHasItsColumn) {
    EXPECT_EQ(statesOf(fiveNames, {1, 2, 4, 8, 16, 31}),
              (std::vector<std::string>{"1\t0\t0\t1\t0\t0", "2\t1\t0\t0\t0\t0", "4\t0\t0\t0\t0\t1",
                                        "8\t0\t1\t0\t0\t0", "16\t0\t0\t0\t1\t0", "31\t1\t1\t1\t1\t1"}));
}

TEST(DiagnosticsWriter, FlagsThatNeverChangeAfterAnAllZeroStartGiveTheHeaderOnly) {
    EXPECT_EQ(logOf(fiveNames, {recordWith(0), recordWith(0, 100), recordWith(0, 200)}), "");
}

TEST(DiagnosticsWriter, AFirstRecordWithAFlagSetGivesALine) {
    EXPECT_EQ(logOf(fiveNames, {recordWith(1)}), "2021-06-30 13:30:00.0\t0.000000000\t1\t0\t0\t1\t0\t0\r\n");
}

TEST(DiagnosticsWriter, ABitThatIsNotOneOfTheFiveWritesNoLine) {
    EXPECT_EQ(statesOf(fiveNames, {0, 32, 64 + 32, 1, 33, 1, 0}),
              (std::vector<std::string>{"1\t0\t0\t1\t0\t0", "0\t0\t0\t0\t0\t0"}));
}

TEST(DiagnosticsWriter, TheWholeWordIsPrinted) {
    EXPECT_EQ(statesOf(fiveNames, {0xffff0002, 0xffffffff}),
              (std::vector<std::string>{"4294901762\t1\t0\t0\t0\t0", "4294967295\t1\t1\t1\t1\t1"}));
}

TEST(DiagnosticsWriter, RecordsOfTheSameTenthOfASecondDifferInTheirSecondsOnly) {
    EXPECT_EQ(logOf(fiveNames, {recordWith(1, 10'000'000), recordWith(0, 60'000'000)}),
              "2021-06-30 13:30:00.0\t0.000000000\t1\t0\t0\t1\t0\t0\r\n"
              "2021-06-30 13:30:00.0\t0.050000000\t0\t0\t0\t0\t0\t0\r\n");
}

TEST(DiagnosticsWriter, TenthsAreCutNotRounded) {
    EXPECT_EQ(logOf(fiveNames, {recordWith(0), recordWith(1, 999'999'999)}),
              "2021-06-30 13:30:00.9\t0.999999999\t1\t0\t0\t1\t0\t0\r\n");
}

TEST(DiagnosticsWriter, SecondsCountFromTheFirstRecordNotFromTheFirstLine) {
    EXPECT_EQ(logOf(fiveNames, {recordWith(0, 900'000'000), recordWith(0, 1'000'000'000),
                                recordWith(1, 61'100'000'000)}),
              "2021-06-30 13:31:01.1\t60.200000000\t1\t0\t0\t1\t0\t0\r\n");
}

TEST(DiagnosticsWriter, TimesBeforeTheFirstRecordAreNegative) {
    EXPECT_EQ(logOf(fiveNames, {recordWith(0), recordWith(1, -250'000'000), recordWith(0, -1'250'000'000)}),
              "2021-06-30 13:29:59.7\t-0.250000000\t1\t0\t0\t1\t0\t0\r\n"
              "2021-06-30 13:29:58.7\t-1.250000000\t0\t0\t0\t0\t0\t0\r\n");
}

TEST(DiagnosticsWriter, ABrokenClocksLifetimeIsCountedInFull) {
    Record first = recordWith(0);
    first.seconds = 100;
    Record last = recordWith(1);
    last.seconds = 4294967295;
    last.nanoseconds = 500000000;
    EXPECT_EQ(logOf(fiveNames, {first, last}),
              "2106-02-07 06:28:15.5\t4294967195.500000000\t1\t0\t0\t1\t0\t0\r\n");
    EXPECT_TRUE(logOf(fiveNames, {last, first})
                    .ends_with("1970-01-01 00:01:40.0\t-4294967195.500000000\t0\t0\t0\t0\t0\t0\r\n"));
}

TEST(DiagnosticsWriter, TimestampsAreUtcWhateverTheZone) {
    Record record = recordAtHalfPastOne({1}, 7200);
    record.diagnosticWord = 1;
    EXPECT_EQ(logOf(fiveNames, {record}), "2021-06-30 13:30:00.5\t0.000000000\t1\t0\t0\t1\t0\t0\r\n");
}

TEST(DiagnosticsWriter, WithoutPumponThePumpColumnFollowsBitZero) {
    const std::vector<std::string> names{"SETTLING", "NOSIGNAL", "MOTORSPINNING", "TOPHEATERON",
                                         "BOTTOMHEATERON"};
    EXPECT_EQ(statesOf(names, {1, 3, 2}),
              (std::vector<std::string>{"1\t0\t0\t1\t0\t0", "3\t1\t0\t1\t0\t0", "2\t1\t0\t0\t0\t0"}));
}

TEST(DiagnosticsWriter, WithoutAnyNameAllColumnsFollowBitZero) {
    EXPECT_EQ(statesOf({}, {2, 1, 0}), (std::vector<std::string>{"1\t1\t1\t1\t1\t1", "0\t0\t0\t0\t0\t0"}));
}

TEST(DiagnosticsWriter, NamesAreComparedWholeAndByLetterCase) {
    EXPECT_EQ(statesOf({"X", "Nosignal", "NOSIGNAL ", "PUMPON2"}, {2 + 4 + 8}), std::vector<std::string>());
}

TEST(DiagnosticsWriter, ANameThatStandsTwiceCountsAtItsFirstPosition) {
    EXPECT_EQ(statesOf({"X", "NOSIGNAL", "NOSIGNAL"}, {4, 2}), std::vector<std::string>{"2\t1\t0\t0\t0\t0"});
}

TEST(DiagnosticsWriter, PositionsAboveFifteenRead0) {
    std::vector<std::string> names(70, "X");
    names[15] = "NOSIGNAL";
    names[16] = "PUMPON";
    names[33] = "MOTORSPINNING";
    names[64] = "TOPHEATERON";
    EXPECT_EQ(statesOf(names, {0xffff0000, 0x8000}), std::vector<std::string>{"32768\t1\t0\t0\t0\t0"});
}

TEST(DiagnosticsWriter, ALineLeavesAtOnce) {
    MemoryOutput output;
    DiagnosticsWriter writer(*output, fiveNames);
    writer.write(recordWith(0));
    EXPECT_EQ(output.log().bytes, "");
    writer.write(recordWith(1));
    EXPECT_TRUE(output.log().bytes.ends_with("\t1\t0\t0\t1\t0\t0\r\n"));
}

} // namespace

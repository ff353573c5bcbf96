#include "data/RecordCursor.h"

#include "SourceReadingTest.h"
#include "support/CapturedStandardError.h"
#include "support/RecordComparison.h"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr std::uint32_t halfHour = 1800;

// The line with its check sum behind it.
std::string withChecksum(const std::string &line) {
    unsigned sum = 0;
    for (const char c : line) {
        sum += static_cast<unsigned char>(c);
    }
    return line + std::to_string(sum % 256) + '\n';
}

} // namespace

using RecordCursor = SourceReadingTest;

TEST_F(RecordCursor, AWholeRangeGivesEveryRecordOfTheFragment) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 9000, 10));
    const std::vector<Record> records = readAgain(fragmentAt(source, 0));
    EXPECT_EQ(timesOf(records), numbers(begin, begin + 9000, 10));
}

TEST_F(RecordCursor, AStartBeforeTheFirstHalfHourKeyReadsFromTheFirstRecordLine) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 9000, 10));
    const DataFragment &fragment = fragmentAt(source, 0);
    const std::uint32_t firstKey = fragment.halfHourIndex().entries().front().first;
    EXPECT_EQ(firstKey, begin / halfHour * halfHour);
    for (const double start : {1.0, -5.0, -infinity, firstKey - 0.5, firstKey - 1.0}) {
        EXPECT_EQ(startOffsetFor(fragment, start), fragment.firstOffset()) << start;
        EXPECT_EQ(readAgain(fragment, start, wholeRangeEnd).size(), 901U) << start;
    }
}

TEST_F(RecordCursor, AStartWithinAHalfHourReadsFromTheIndexEntryBeforeItAndSkipsTheRecordsBeforeTheStart) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 9000, 10));
    const DataFragment &fragment = fragmentAt(source, 0);
    const auto &entry = fragment.halfHourIndex().entries().at(2);
    EXPECT_EQ(startOffsetFor(fragment, entry.first), entry.second);
    EXPECT_EQ(startOffsetFor(fragment, entry.first + 700.7), entry.second);
    EXPECT_EQ(startOffsetFor(fragment, entry.first - 0.1), fragment.halfHourIndex().entries().at(1).second);
    const std::uint32_t start = begin + (entry.first + 700 - begin) / 10 * 10;
    EXPECT_EQ(timesOf(readAgain(fragment, start, start + 55)), numbers(start, start + 50, 10));
    EXPECT_EQ(timesOf(readAgain(fragment, start + 0.5, start + 60)), numbers(start + 10, start + 60, 10));
}

TEST_F(RecordCursor, TheStartOffsetIsAtMostTheEndOffset) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 9000, 10));
    const DataFragment &fragment = fragmentAt(source, 0);
    for (const double start : {wholeRangeStart, 1.0, begin + 4000.0, 4294967295.0, 1e300, infinity}) {
        EXPECT_LE(startOffsetFor(fragment, start), fragment.endOffset()) << start;
        EXPECT_GE(startOffsetFor(fragment, start), fragment.firstOffset()) << start;
    }
    EXPECT_EQ(startOffsetFor(fragment, 1e300), fragment.halfHourIndex().entries().back().second);
    const DataSet empty = load("DATAH\tSECONDS\tA\n", "empty.data");
    EXPECT_EQ(startOffsetFor(fragmentAt(empty, 0), 5), 0U);
}

TEST_F(RecordCursor, TheEndOffsetIsTheFirstIndexEntryAtOrAfterTheEnd) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 9000, 10));
    const DataFragment &fragment = fragmentAt(source, 0);
    const auto &entry = fragment.halfHourIndex().entries().at(2);
    EXPECT_EQ(endOffsetFor(fragment, wholeRangeEnd), fragment.endOffset());
    EXPECT_EQ(endOffsetFor(fragment, entry.first), entry.second);
    EXPECT_EQ(endOffsetFor(fragment, entry.first - 0.5), entry.second);
    EXPECT_EQ(endOffsetFor(fragment, entry.first - 1799.0), entry.second);
    EXPECT_EQ(endOffsetFor(fragment, 5), fragment.firstOffset());
    EXPECT_EQ(endOffsetFor(fragment, 4e9), fragment.endOffset());
}

TEST_F(RecordCursor, ABoundThatIsNotANumberHasAnOffsetWithinTheFragment) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 9000, 10));
    const DataFragment &fragment = fragmentAt(source, 0);
    for (const std::uint64_t offset :
         {startOffsetFor(fragment, notANumber), endOffsetFor(fragment, notANumber)}) {
        EXPECT_GE(offset, fragment.firstOffset());
        EXPECT_LE(offset, fragment.endOffset());
    }
}

TEST_F(RecordCursor, AnEndBeforeTheFirstRecordGivesNoRecord) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 100, 10));
    EXPECT_TRUE(readAgain(fragmentAt(source, 0), wholeRangeStart, begin - 0.5).empty());
    EXPECT_TRUE(readAgain(fragmentAt(source, 0), 1, 2).empty());
    EXPECT_EQ(readAgain(fragmentAt(source, 0), 1, begin).size(), 1U);
    EXPECT_TRUE(readAgain(source, "Q", "DATA", 1, 2).empty());
}

TEST_F(RecordCursor, AStartBehindTheLatestRecordGivesNoRecord) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 100, 10));
    EXPECT_TRUE(readAgain(fragmentAt(source, 0), begin + 100.5, wholeRangeEnd).empty());
    EXPECT_EQ(readAgain(fragmentAt(source, 0), begin + 100, wholeRangeEnd).size(), 1U);
}

TEST_F(RecordCursor, BoundsThatAreNotNumbersOrTheWrongWayRoundGiveNoRecord) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 100, 10));
    for (const auto &[start, end] :
         {std::pair{notANumber, wholeRangeEnd}, std::pair{wholeRangeStart, notANumber},
          std::pair{notANumber, notANumber}, std::pair{begin + 50.0, begin + 40.0}}) {
        EXPECT_TRUE(readAgain(fragmentAt(source, 0), start, end).empty()) << start << " " << end;
    }
}

TEST_F(RecordCursor, FractionsOfASecondCountInTheBounds) {
    const DataSet source = load("DATAH\tSECONDS\tNANOSECONDS\tA\nDATA\t1000\t0\t1\nDATA\t1000\t500000000\t2\n"
                                "DATA\t1001\t0\t3\n");
    const DataFragment &fragment = fragmentAt(source, 0);
    EXPECT_EQ(firstValuesOf(readAgain(fragment, 1000.25, 1000.75)), std::vector<double>{2});
    EXPECT_EQ(firstValuesOf(readAgain(fragment, 1000.5, 1001)), (std::vector<double>{2, 3}));
}

TEST_F(RecordCursor, AFragmentWithoutValueColumnsGivesNothing) {
    const DataSet source = load("DATAH\tSECONDS\tREMARK\nDATA\t1000\tx\n");
    EXPECT_EQ(fragmentAt(source, 0).recordCount(), 1U);
    EXPECT_TRUE(readAgain(fragmentAt(source, 0)).empty());
}

TEST_F(RecordCursor, LinesThatGiveNoRecordAreSkippedWithoutAMessage) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\tx\nDATA\t1000\t1\n\nDATA\nDATA\t\nDATAX\t1\njunk\n"
                                "DATA\t1001\t2\nDATA\t1002\n");
    const CapturedStandardError errors;
    EXPECT_EQ(firstValuesOf(readAgain(fragmentAt(source, 0))), (std::vector<double>{1, 2}));
    EXPECT_EQ(errors.text(), "");
}

TEST_F(RecordCursor, ReadingEndsAtTheFirstRecordBehindTheEnd) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t1000\t1\nDATA\t3000\t2\nDATA\t1500\t3\n");
    EXPECT_EQ(firstValuesOf(readAgain(fragmentAt(source, 0), 1000, 2000)), std::vector<double>{1});
}

TEST_F(RecordCursor, AClockThatStepsBackLosesNothingOnTheWholeRange) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t100000\t1\nDATA\t300000\t2\nDATA\t90000\t3\n"
                                "DATA\t100\t4\nDATA\t200000\t5\n");
    EXPECT_EQ(firstValuesOf(readAgain(fragmentAt(source, 0))), (std::vector<double>{1, 2, 3, 4, 5}));
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATA")), (std::vector<double>{1, 2, 3, 4, 5}));
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATA", -1, 1e10)), (std::vector<double>{1, 2, 3, 4, 5}));
}

TEST_F(RecordCursor, NanosecondsOfMoreThanASecondLoseNothingOnTheWholeRange) {
    // The first record is the latest one, although the second one has the larger seconds.
    const std::string lines = "DATA\t1000\t4200000000\t1\nDATA\t1002\t0\t2\nDATA\t1003\t0\t3\n";
    const DataSet source = load("DATAH\tSECONDS\tNANOSECONDS\tA\n" + lines);
    EXPECT_EQ(fragmentAt(source, 0).latestTime(), 1004.2);
    EXPECT_EQ(readAgain(fragmentAt(source, 0)).size(), 3U);
    EXPECT_EQ(readAgain(fragmentAt(source, 0), 1.0, 1005.0).size(), 3U);
}

TEST_F(RecordCursor, TheEndMarkerStandsForTheLatestRecordAlsoBeyondIt) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t2147483000\t1\nDATA\t2147483648\t2\n"
                                "DATA\t4294967295\t3\nDATA\t2147483649\t4\n");
    EXPECT_EQ(firstValuesOf(readAgain(fragmentAt(source, 0))), (std::vector<double>{1, 2, 3, 4}));
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATA", 2147483648.0, wholeRangeEnd)),
              (std::vector<double>{2, 3, 4}));
}

TEST_F(RecordCursor, TheStartMarkerStandsForTheFirstRecordAlsoAtTimeZero) {
    // The instrument's clock was not set yet when the first record came.
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t0\t1\nDATA\t1500000000\t2\nDATA\t1500009000\t3\n");
    EXPECT_EQ(firstValuesOf(readAgain(fragmentAt(source, 0))), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATA")), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATA", -1, 1600000000)), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATA", 1, 1600000000)), (std::vector<double>{2, 3}));
}

TEST_F(RecordCursor, RecordsAtTimeZeroOnlyAreReadAgain) {
    const DataSet source = load("DATAH\tA\nDATA\t1\nDATA\t2\n");
    EXPECT_EQ(firstValuesOf(readAgain(fragmentAt(source, 0))), (std::vector<double>{1, 2}));
}

TEST_F(RecordCursor, ReadingAgainCountsBadChecksumsOnceMore) {
    const DataSet source = load("DATAH\tSECONDS\tA\tCHK\n" + withChecksum("DATA\t1000\t1\t") +
                                "DATA\t1000\t2\t0\nDATA\tbad\t2\t0\n" + withChecksum("DATA\t1001\t3\t"));
    const DataFragment &fragment = fragmentAt(source, 0);
    ASSERT_EQ(fragment.recordCount(), 2U);
    ASSERT_EQ(fragment.checksumFailures(), 1U);
    for (std::uint32_t readings = 2; readings < 5; ++readings) {
        EXPECT_EQ(readAgain(fragment).size(), 2U);
        EXPECT_EQ(fragment.checksumFailures(), readings);
    }
    EXPECT_EQ(source.checksumFailures(), 4U);
    EXPECT_EQ(fragment.recordCount(), 2U);
}

TEST_F(RecordCursor, ManyThreadsMayReadOneFragmentAtTheSameTime) {
    const DataSet source =
        load("Timezone:\tEurope/Berlin\nDATAH\tDATE\tTIME\tA\tCHK\n" +
             withChecksum("DATA\t2019-10-27\t02:30:00\t1\t") + "DATA\t2019-10-27\t02:35:00\t2\t0\n" +
             withChecksum("DATA\t2019-10-27\t02:40:00\t3\t"));
    const DataFragment &fragment = fragmentAt(source, 0);
    const std::vector<Record> expected = readAgain(fragment);
    ASSERT_EQ(expected.size(), 2U);
    std::vector<std::vector<Record>> found(4);
    std::vector<std::thread> threads;
    threads.reserve(found.size());
    for (std::vector<Record> &records : found) {
        threads.emplace_back([&records, &fragment] { records = readAgain(fragment); });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    for (const std::vector<Record> &records : found) {
        EXPECT_TRUE(sameRecords(records, expected));
    }
    EXPECT_EQ(fragment.checksumFailures(), 6U);
}

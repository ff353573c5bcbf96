#include "data/DataFragment.h"

#include "FragmentBlock.h"
#include "ReferenceFragment.h"
#include "support/RandomNumbers.h"
#include "support/RecordComparison.h"
#include "support/SanitizerBuild.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Names = std::vector<std::string>;
using Entries = std::vector<HalfHourIndex::Entry>;

std::vector<std::uint32_t> endsOf(const AveragedSeries &series) {
    std::vector<std::uint32_t> ends;
    for (const RecordStamp &stamp : series.stamps()) {
        ends.push_back(stamp.seconds);
    }
    return ends;
}

std::array<std::size_t, 4> sizesOf(const DataFragment &fragment) {
    return {fragment.series(0).size(), fragment.series(1).size(), fragment.series(2).size(),
            fragment.series(3).size()};
}

constexpr std::array<std::size_t, 4> noPeriods{};

} // namespace

TEST(DataFragment, BeforeItsFirstRecordEverythingIsEmpty) {
    FragmentBlock block({"SECONDS", "A"});
    EXPECT_EQ(block->recordCount(), 0U);
    EXPECT_EQ(block->firstTime(), 0);
    EXPECT_EQ(block->lastTime(), 0);
    EXPECT_EQ(block->latestTime(), 0);
    EXPECT_EQ(block->firstOffset(), 0U);
    EXPECT_EQ(block->endOffset(), 0U);
    EXPECT_TRUE(block->halfHourIndex().entries().empty());
    EXPECT_EQ(sizesOf(*block), noPeriods);
    EXPECT_FALSE(block->columnsAreSetUp());
    EXPECT_EQ(block->valueCount(), 0U);
    EXPECT_EQ(block->checksumFailures(), 0U);
}

TEST(DataFragment, RecordsWithinOneMinuteGiveNoPeriodAtAnyLevel) {
    FragmentBlock block({"SECONDS", "A"});
    for (int second = 61; second <= 119; ++second) {
        block.take(std::to_string(second) + "\t1");
    }
    EXPECT_EQ(block->recordCount(), 59U);
    EXPECT_EQ(sizesOf(*block), noPeriods);
}

TEST(DataFragment, ARecordExactlyOnAPeriodsEndStillBelongsToIt) {
    FragmentBlock block({"SECONDS", "NANOSECONDS", "A"});
    block.take("10\t0\t1");
    EXPECT_EQ(sizesOf(*block), noPeriods);
    block.take("60\t0\t3");
    EXPECT_EQ(sizesOf(*block), noPeriods);
    block.take("60\t100000000\t100");
    ASSERT_EQ(block->series(0).size(), 1U);
    EXPECT_EQ(block->series(0).stamps()[0].seconds, 60U);
    EXPECT_EQ(block->series(0).value(Statistic::average, 0, 0), 2);
}

TEST(DataFragment, OneNanosecondAfterAPeriodsEndClosesIt) {
    FragmentBlock block({"SECONDS", "NANOSECONDS", "A"});
    block.take("10\t0\t1");
    block.take("60\t1\t3");
    EXPECT_EQ(block->series(0).size(), 1U);
}

TEST(DataFragment, AGapOfThreeHoursAddsOneIndexEntryKeyedByTheBoundaryPendingBeforeIt) {
    FragmentBlock block({"SECONDS", "A"});
    const std::uint64_t first = block.take("3700\t1");
    block.take("3800\t1");
    const std::uint64_t behindTheGap = block.take("14700\t1");
    block.take("14800\t1");
    EXPECT_EQ(block->halfHourIndex().entries(), (Entries{{3600, first}, {5400, behindTheGap}}));
}

TEST(DataFragment, AHeaderWithoutValueColumnsStillCountsRecordsAndKeepsTheirTimes) {
    FragmentBlock block({"SECONDS", "NANOSECONDS", "REMARK"});
    const std::uint64_t first = block.take("100\t500000000\tx");
    block.take("9000\t250000000\ty");
    EXPECT_EQ(block->valueCount(), 0U);
    EXPECT_EQ(block->recordCount(), 2U);
    EXPECT_EQ(block->firstTime(), 100.5);
    EXPECT_EQ(block->lastTime(), 9000.25);
    EXPECT_EQ(block->firstOffset(), first);
    EXPECT_EQ(block->endOffset(), first + 2 * std::string_view("DATA\t100\t500000000\tx").size() + 2);
    EXPECT_EQ(endsOf(block->series(0)), (std::vector<std::uint32_t>{120}));
}

TEST(DataFragment, APeriodsEndIsItsStampHoweverFarTheNextRecordIs) {
    FragmentBlock block({"SECONDS", "A"});
    for (const char *const fields : {"70\t1", "100000\t2", "100100\t3", "300000\t4"}) {
        block.take(fields);
    }
    // The first pending ends lie at or before the first record; nothing is open there yet.
    EXPECT_EQ(endsOf(block->series(0)), (std::vector<std::uint32_t>{120, 100020, 100140}));
    EXPECT_EQ(endsOf(block->series(1)), (std::vector<std::uint32_t>{300, 100200}));
    EXPECT_EQ(endsOf(block->series(2)), (std::vector<std::uint32_t>{1800, 100800}));
    EXPECT_EQ(endsOf(block->series(3)), (std::vector<std::uint32_t>{7200, 100800}));
}

TEST(DataFragment, UpperPeriodsAverageAllRecordsOfTheirLowerOnes) {
    FragmentBlock block({"SECONDS", "DIAG", "A"}, {"F", "G"});
    for (const char *const fields : {"10\t1\t1", "20\t0\t2", "30\t0\t3", "130\t2\t10", "301\t0\t0"}) {
        block.take(fields);
    }
    ASSERT_EQ(sizesOf(*block), (std::array<std::size_t, 4>{2, 1, 0, 0}));
    const AveragedSeries &series = block->series(1);
    EXPECT_EQ(series.value(Statistic::average, 0, 3), 4);
    EXPECT_EQ(series.value(Statistic::minimum, 0, 3), 1);
    EXPECT_EQ(series.value(Statistic::maximum, 0, 3), 10);
    EXPECT_EQ(series.stamps()[0].diagnosticWord, 3U);
}

TEST(DataFragment, AnOpenPeriodIsNotGivenWhenTheSourceEnds) {
    FragmentBlock block({"SECONDS", "A"});
    block.take("10\t1");
    block.take("70\t2");
    block->finishLoading();
    EXPECT_EQ(endsOf(block->series(0)), (std::vector<std::uint32_t>{60}));
    EXPECT_EQ(block->series(1).size(), 0U);
}

TEST(DataFragment, TheFirstTimeIsTakenAgainWhileItIsZero) {
    FragmentBlock block({"SECONDS", "A"});
    block.take("0\t1");
    EXPECT_EQ(block->firstTime(), 0);
    block.take("500\t1");
    block.take("900\t1");
    EXPECT_EQ(block->firstTime(), 500);
    EXPECT_EQ(block->lastTime(), 900);
}

TEST(DataFragment, TheLastTimeIsThatOfTheLastRecordAndTheLatestTimeThatOfAll) {
    FragmentBlock block({"SECONDS", "A"});
    for (const char *const fields : {"500\t1", "900\t1", "700\t1"}) {
        block.take(fields);
    }
    EXPECT_EQ(block->firstTime(), 500);
    EXPECT_EQ(block->lastTime(), 700);
    EXPECT_EQ(block->latestTime(), 900);
}

TEST(DataFragment, TheEndOffsetLiesBehindTheLastGoodLineWithoutItsLineEnd) {
    FragmentBlock block({"SECONDS", "A"});
    block.take("500\tbad");
    const std::uint64_t first = block.take("500\t1");
    const std::uint64_t last = block.take("501\t22");
    block.take("bad");
    EXPECT_EQ(block->firstOffset(), first);
    EXPECT_EQ(block->endOffset(), last + std::string_view("DATA\t501\t22").size());
    EXPECT_EQ(block->recordCount(), 2U);
}

TEST(DataFragment, TheWholeBlocksRecordsHoldTheExtremeTimesValuesAndWords) {
    FragmentBlock block({"SECONDS", "NANOSECONDS", "DIAG", "A"}, {}, "DATA", "Europe/Berlin");
    for (const char *const fields :
         {"1559347200\t5\t6\t1", "1559347200\t4\t5\t-3", "1559347201\t0\t9\t2", "1559347201\t0\t2\tnan"}) {
        block.take(fields);
    }
    const Record &minimum = block->minimumRecord();
    EXPECT_EQ(minimum.seconds, 1559347200U);
    EXPECT_EQ(minimum.nanoseconds, 4U);
    EXPECT_EQ(minimum.diagnosticWord, 2U);
    EXPECT_EQ(minimum.utcOffset, 7200);
    EXPECT_EQ(int{minimum.second}, 0);
    EXPECT_EQ(minimum.values, (std::vector<double>{2, -3}));
    const Record &maximum = block->maximumRecord();
    EXPECT_EQ(maximum.seconds, 1559347201U);
    EXPECT_EQ(maximum.diagnosticWord, 9U);
    EXPECT_EQ(int{maximum.hour}, 2);
    EXPECT_EQ(int{maximum.second}, 1);
    EXPECT_EQ(maximum.values, (std::vector<double>{9, 2}));
}

TEST(DataFragment, TheFirstOfRecordsAtOneTimeGivesTheWholeBlocksLocalTime) {
    FragmentBlock block({"SECONDS", "TIME", "A"});
    for (const char *const fields :
         {"100\t1:00:00\t1", "100\t2:00:00\t1", "200\t3:00:00\t1", "200\t4:00:00\t1"}) {
        block.take(fields);
    }
    EXPECT_EQ(int{block->minimumRecord().hour}, 1);
    EXPECT_EQ(int{block->maximumRecord().hour}, 3);
}

TEST(DataFragment, BadChecksumsAreCountedAndOtherBadRecordsAreNot) {
    FragmentBlock block({"A", "CHK"});
    block.take("1\t0");
    block.take("1\t0");
    block.take("x\t0");
    block.take("1");
    EXPECT_EQ(block->checksumFailures(), 2U);
    EXPECT_EQ(block->recordCount(), 0U);
}

TEST(DataFragment, ColumnsAreSetUpAtTheFirstRecordLineAndNotBefore) {
    FragmentBlock block({"DIAG"}, {"A"});
    EXPECT_FALSE(block->columnsAreSetUp());
    block.take("bad");
    EXPECT_TRUE(block->columnsAreSetUp());
    EXPECT_EQ(block->valueNames(), (Names{"DIAG", "DIAG:A"}));
    EXPECT_EQ(block->minimumRecord().values, std::vector<double>(2, emptyMinimum));
    EXPECT_EQ(block->maximumRecord().values, std::vector<double>(2, emptyMaximum));
}

TEST(DataFragment, ItsVariableKeysNameInstrumentTagAndColumn) {
    FragmentBlock block({"SECONDS", "A", "DIAG", "A"}, {"F"}, "DATASTAT");
    block.take("1\t2\t3\t4");
    std::set<std::string> keys{"other"};
    block->addVariableKeys(keys);
    EXPECT_EQ(keys, (std::set<std::string>{"QA330:DATASTAT:A", "QA330:DATASTAT:DIAG", "QA330:DATASTAT:DIAG:F",
                                           "other"}));
}

TEST(DataFragment, TheFirstOfColumnsOfOneNameIsFound) {
    FragmentBlock block({"B", "A", "B", "A"});
    block.take("1\t2\t3\t4");
    EXPECT_EQ(block->valueIndex("A"), 1);
    EXPECT_EQ(block->valueIndex("B"), 0);
    EXPECT_EQ(block->valueIndex("a"), -1);
    EXPECT_EQ(block->valueIndex(""), -1);
}

TEST(DataFragment, AZoneThatCannotBeLoadedThrows) {
    EXPECT_THROW(FragmentBlock({"A"}, {}, "DATA", "No/Such"), Timezone::Error);
}

TEST(DataFragment, TooManyColumnsThrowOnceAndLaterRecordsAreDropped) {
    FragmentBlock block(Names(maximumValueColumns + 1, "A"));
    EXPECT_THROW(block.take("1"), std::length_error);
    EXPECT_NO_THROW(block.take("1"));
    EXPECT_EQ(block->recordCount(), 0U);
    EXPECT_EQ(block->valueCount(), 0U);
    EXPECT_TRUE(block->columnsAreSetUp());
}

TEST(DataFragment, RecordsAfterTheEndOfLoadingAreDropped) {
    FragmentBlock block({"SECONDS", "A"});
    block.take("10\t1");
    block->finishLoading();
    block.take("20\t2");
    EXPECT_EQ(block->recordCount(), 1U);
    EXPECT_EQ(block->lastTime(), 10);
    EXPECT_EQ(block->valueNames(), Names{"A"});
}

TEST(DataFragment, ExtremesOfSecondsNeitherHangNorMisplacePeriods) {
    FragmentBlock block({"SECONDS", "A"});
    ReferenceFragment reference(1);
    Timezone zone("UTC");
    RecordClock clock(zone);
    for (const char *const seconds :
         {"0", "4294967295", "-1", "4294967296", "99999999999999999999999", "-99999999999999999999999",
          "4294967294", "1", "2147483648", "-2147483648", "4294967295", "4294967235", "4294967280"}) {
        const std::string fields = std::string(seconds) + "\t1";
        const std::uint64_t offset = block.take(fields);
        Record record;
        record.values.resize(1);
        ASSERT_TRUE(block->readRecord("DATA\t" + fields, clock, record));
        reference.take(record, offset, fields.size() + 5);
    }
    EXPECT_EQ(block->recordCount(), 13U);
    EXPECT_TRUE(reference.isMatchedBy(*block));
    EXPECT_EQ(block->latestTime(), 4294967295.0);
}

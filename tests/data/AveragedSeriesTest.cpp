#include "data/AveragedSeries.h"

#include "support/RecordComparison.h"

#include <array>
#include <gtest/gtest.h>
#include <vector>

namespace {

Accumulator periodOf(const std::vector<std::vector<double>> &rows) {
    Accumulator period;
    period.resize(rows.front().size());
    for (const std::vector<double> &row : rows) {
        Record record;
        record.seconds = 77;
        record.nanoseconds = 5;
        record.utcOffset = 3600;
        record.diagnosticWord = 6;
        record.hour = 3;
        record.values = row;
        period.add(record);
    }
    return period;
}

} // namespace

TEST(AveragedSeries, KeepsAverageMinimumAndMaximumOfEveryColumnOfAPeriod) {
    AveragedSeries series;
    series.setColumns(2);
    series.append(60, periodOf({{1, -10}, {2, 30}}));
    series.append(120, periodOf({{5, 6}}));
    ASSERT_EQ(series.size(), 2U);
    EXPECT_TRUE(sameNumbers(series.values(Statistic::average, 0), std::array{1.5, 10.0}));
    EXPECT_TRUE(sameNumbers(series.values(Statistic::minimum, 0), std::array{1.0, -10.0}));
    EXPECT_TRUE(sameNumbers(series.values(Statistic::maximum, 0), std::array{2.0, 30.0}));
    for (const Statistic statistic : {Statistic::average, Statistic::minimum, Statistic::maximum}) {
        EXPECT_EQ(series.value(statistic, 1, 0), 5);
        EXPECT_EQ(series.value(statistic, 1, 1), 6);
    }
}

TEST(AveragedSeries, StampsAPeriodWithItsEndAndItsLastRecordsLocalTime) {
    AveragedSeries series;
    series.setColumns(1);
    series.append(60, periodOf({{1}, {2}}));
    RecordStamp expected;
    expected.seconds = 60;
    expected.utcOffset = 3600;
    expected.diagnosticWord = 6;
    expected.hour = 3;
    EXPECT_TRUE(sameStamps(series.stamps()[0], expected));
}

TEST(AveragedSeries, FindsTheFirstPeriodThatDoesNotEndBeforeATime) {
    AveragedSeries series;
    series.setColumns(0);
    for (const std::uint32_t end : {60U, 120U, 300U}) {
        series.append(end, periodOf({{}}));
    }
    EXPECT_EQ(series.firstFrom(-1), 0U);
    EXPECT_EQ(series.firstFrom(60), 0U);
    EXPECT_EQ(series.firstFrom(60.5), 1U);
    EXPECT_EQ(series.firstFrom(121), 2U);
    EXPECT_EQ(series.firstFrom(301), 3U);
}

TEST(AveragedSeries, GivingSpareMemoryBackKeepsEverything) {
    AveragedSeries series;
    series.setColumns(1);
    series.append(60, periodOf({{1}}));
    series.releaseSpareMemory();
    ASSERT_EQ(series.size(), 1U);
    EXPECT_EQ(series.value(Statistic::average, 0, 0), 1);
}

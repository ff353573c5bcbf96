#include "data/AveragedSeries.h"

#include "support/RecordComparison.h"

#include <array>
#include <gtest/gtest.h>
#include <limits>
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
    EXPECT_TRUE(sameNumbers(periodOf(series, Statistic::average, 0, 2), std::array{1.5, 10.0}));
    EXPECT_TRUE(sameNumbers(periodOf(series, Statistic::minimum, 0, 2), std::array{1.0, -10.0}));
    EXPECT_TRUE(sameNumbers(periodOf(series, Statistic::maximum, 0, 2), std::array{2.0, 30.0}));
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

namespace {

// What the accumulator has, is what the series gives.
void expectKept(const std::vector<std::vector<std::vector<double>>> &periods) {
    AveragedSeries series;
    const std::size_t columns = periods.front().front().size();
    series.setColumns(columns);
    for (const auto &rows : periods) {
        series.append(60, periodOf(rows));
    }
    series.releaseSpareMemory();
    for (std::size_t i = 0; i < periods.size(); ++i) {
        const Accumulator period = periodOf(periods[i]);
        EXPECT_TRUE(sameNumbers(periodOf(series, Statistic::maximum, i, columns), period.maxima())) << i;
        EXPECT_TRUE(sameNumbers(periodOf(series, Statistic::minimum, i, columns), period.minima())) << i;
    }
}

} // namespace

TEST(AveragedSeries, ExtremesOfSinglePrecisionValuesAreExact) {
    const double third = 1.0F / 3.0F;
    const double tiny = std::numeric_limits<float>::denorm_min();
    const double infinity = std::numeric_limits<double>::infinity();
    expectKept(
        {{{third, -0.0, tiny}, {-third, 0.0, 3.4028234663852886e38}}, {{infinity, -infinity, 1e-30F}}});
}

TEST(AveragedSeries, AColumnWithoutANumberKeepsTheStartsOfItsExtremes) {
    const double missing = std::numeric_limits<double>::quiet_NaN();
    expectKept({{{1, missing}}, {{missing, 2}, {3, missing}}});
}

TEST(AveragedSeries, DiagnosticWordsBeyondSinglePrecisionAreExact) {
    const double word = 4294967295.0;
    const double missing = std::numeric_limits<double>::quiet_NaN();
    expectKept({{{1, missing}, {2, missing}}, {{16777217, 5}, {word, 6}}, {{7, 8}}});
    expectKept({{{word, 1}}, {{1, word}}});
    // Only the minimum does not fit.
    expectKept({{{16777217, 1}, {16777218, 1}}, {{1, 1}}});
}

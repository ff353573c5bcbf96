#include "data/Accumulator.h"

#include "support/RandomNumbers.h"
#include "support/RecordComparison.h"

#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <span>
#include <vector>

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

Record recordOf(std::vector<double> values, std::uint32_t seconds = 0, std::uint32_t word = 0) {
    Record record;
    record.seconds = seconds;
    record.diagnosticWord = word;
    record.values = std::move(values);
    return record;
}

Accumulator accumulatorOf(std::size_t columns) {
    Accumulator accumulator;
    accumulator.resize(columns);
    return accumulator;
}

std::vector<double> valuesOf(std::span<const double> values) {
    return {values.begin(), values.end()};
}

} // namespace

TEST(Accumulator, StartsEmpty) {
    const Accumulator accumulator = accumulatorOf(2);
    EXPECT_EQ(accumulator.count(), 0U);
    EXPECT_EQ(valuesOf(accumulator.sums()), (std::vector<double>{0, 0}));
    EXPECT_EQ(valuesOf(accumulator.minima()), std::vector<double>(2, std::numeric_limits<double>::max()));
    EXPECT_EQ(valuesOf(accumulator.maxima()), std::vector<double>(2, -std::numeric_limits<double>::max()));
    EXPECT_EQ(accumulator.stamp().diagnosticWord, 0U);
}

TEST(Accumulator, SumsCountsAndWidensColumnByColumn) {
    Accumulator accumulator = accumulatorOf(2);
    accumulator.add(recordOf({1, -2}, 10, 1));
    accumulator.add(recordOf({3, -5}, 20, 4));
    EXPECT_EQ(accumulator.count(), 2U);
    EXPECT_EQ(valuesOf(accumulator.sums()), (std::vector<double>{4, -7}));
    EXPECT_EQ(valuesOf(accumulator.minima()), (std::vector<double>{1, -5}));
    EXPECT_EQ(valuesOf(accumulator.maxima()), (std::vector<double>{3, -2}));
}

TEST(Accumulator, KeepsTheTimeOfTheLastRecordAndAllBitsOfTheWords) {
    Accumulator accumulator = accumulatorOf(0);
    Record first = recordOf({}, 20, 5);
    first.utcOffset = 3600;
    accumulator.add(first);
    Record second = recordOf({}, 10, 8);
    second.utcOffset = 7200;
    second.nanoseconds = 3;
    second.hour = 4;
    accumulator.add(second);
    second.diagnosticWord = 13;
    EXPECT_TRUE(sameStamps(accumulator.stamp(), second));
}

TEST(Accumulator, SmallValuesBehindALargeOneAreNotLost) {
    Accumulator accumulator = accumulatorOf(1);
    accumulator.add(recordOf({1e16}));
    for (int i = 0; i < 10; ++i) {
        accumulator.add(recordOf({1}));
    }
    EXPECT_EQ(accumulator.sums()[0], 1e16 + 10);
}

TEST(Accumulator, SumsStayNextToTheExactSumHoweverManyRecordsThereAre) {
    RandomNumbers random(3);
    Accumulator accumulator = accumulatorOf(1);
    double plain = 0;
    std::int64_t exact = 0; // in units of 2^-40, which hold every value and the sum
    const double unit = std::ldexp(1.0, -40);
    for (int i = 0; i < 200000; ++i) {
        const std::int64_t units = random.between(0, std::int64_t{1} << 40);
        const double value = static_cast<double>(units) * unit;
        exact += units;
        plain += value;
        accumulator.add(recordOf({value}));
    }
    const double nearest = static_cast<double>(exact) * unit;
    EXPECT_EQ(accumulator.sums()[0], nearest);
    EXPECT_NE(plain, nearest) << "these values do not tell a compensated sum from a plain one";
}

TEST(Accumulator, AveragesOfAMonthAt10HzKeepTheirPrecision) {
    // 7200 s periods are sums of sums of sums: the error must not grow from level to level.
    RandomNumbers random(4);
    Accumulator upper = accumulatorOf(1);
    Accumulator lower = accumulatorOf(1);
    long double exact = 0;
    for (int minute = 0; minute < 2000; ++minute) {
        lower.reset();
        for (int i = 0; i < 100; ++i) {
            const double value = static_cast<float>(random.between(1, 1 << 20)) * 0.1F;
            exact += static_cast<long double>(value);
            lower.add(recordOf({value}));
        }
        upper.merge(lower);
    }
    const double nearest = static_cast<double>(exact);
    EXPECT_EQ(upper.count(), 200000U);
    EXPECT_LE(std::abs(upper.sums()[0] - nearest), std::nextafter(nearest, infinity) - nearest);
}

TEST(Accumulator, TakesInALowerPeriodsSumInOneCompensatedStep) {
    Accumulator upper = accumulatorOf(1);
    upper.add(recordOf({1e16}));
    Accumulator lower = accumulatorOf(1);
    lower.add(recordOf({1}));
    for (int i = 0; i < 10; ++i) {
        upper.merge(lower);
    }
    EXPECT_EQ(upper.sums()[0], 1e16 + 10);
    EXPECT_EQ(upper.count(), 11U);
}

TEST(Accumulator, TakesInALowerPeriodsExtremesTimeAndWords) {
    Accumulator upper = accumulatorOf(2);
    upper.add(recordOf({1, 5}, 10, 1));
    Accumulator lower = accumulatorOf(2);
    lower.add(recordOf({-1, 3}, 20, 2));
    lower.add(recordOf({4, 2}, 30, 4));
    upper.merge(lower);
    EXPECT_EQ(valuesOf(upper.sums()), (std::vector<double>{4, 10}));
    EXPECT_EQ(valuesOf(upper.minima()), (std::vector<double>{-1, 2}));
    EXPECT_EQ(valuesOf(upper.maxima()), (std::vector<double>{4, 5}));
    EXPECT_TRUE(sameStamps(upper.stamp(), recordOf({}, 30, 7)));
    EXPECT_EQ(upper.count(), 3U);
}

TEST(Accumulator, AfterAResetNothingOfThePeriodBeforeIsLeft) {
    Accumulator accumulator = accumulatorOf(1);
    accumulator.add(recordOf({1e16}, 10, 3));
    accumulator.add(recordOf({1}, 10, 3)); // leaves a compensation behind
    accumulator.reset();
    EXPECT_EQ(accumulator.count(), 0U);
    EXPECT_EQ(accumulator.stamp().diagnosticWord, 0U);
    accumulator.add(recordOf({0.25}, 20, 4));
    EXPECT_EQ(valuesOf(accumulator.sums()), std::vector<double>{0.25});
    EXPECT_EQ(valuesOf(accumulator.minima()), std::vector<double>{0.25});
    EXPECT_EQ(valuesOf(accumulator.maxima()), std::vector<double>{0.25});
    EXPECT_EQ(accumulator.stamp().diagnosticWord, 4U);
}

TEST(Accumulator, AValueThatIsNotANumberChangesNoExtremeButTheSum) {
    Accumulator accumulator = accumulatorOf(2);
    accumulator.add(recordOf({notANumber, notANumber}));
    EXPECT_EQ(accumulator.minima()[0], emptyMinimum);
    EXPECT_EQ(accumulator.maxima()[0], emptyMaximum);
    accumulator.add(recordOf({2, notANumber}));
    accumulator.add(recordOf({notANumber, notANumber}));
    EXPECT_EQ(valuesOf(accumulator.minima()), (std::vector<double>{2, emptyMinimum}));
    EXPECT_EQ(valuesOf(accumulator.maxima()), (std::vector<double>{2, emptyMaximum}));
    EXPECT_TRUE(std::isnan(accumulator.sums()[0]));
}

TEST(Accumulator, AnInfinityIsAnExtremeButNoneBeyondTheLargestNumbers) {
    Accumulator accumulator = accumulatorOf(2);
    accumulator.add(recordOf({infinity, -infinity}));
    EXPECT_EQ(valuesOf(accumulator.minima()), (std::vector<double>{emptyMinimum, -infinity}));
    EXPECT_EQ(valuesOf(accumulator.maxima()), (std::vector<double>{infinity, emptyMaximum}));
}

#include "plot/TimeSteps.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

std::ptrdiff_t row(const TimeStep &step) {
    return &step - timeSteps.data();
}

} // namespace

TEST(TimeSteps, AreThoseOfTheTable) {
    struct Row {
        double seconds;
        int unit;
        int count;
        double minorSeconds;
    };
    const Row table[] = {{1, 0, 1, 0.25},          {60, 1, 1, 15},          {300, 1, 5, 60},
                         {900, 1, 15, 300},        {1800, 1, 30, 600},      {3600, 2, 1, 900},
                         {7200, 2, 2, 1800},       {21600, 2, 6, 3600},     {86400, 3, 1, 21600},
                         {172800, 3, 2, 43200},    {345600, 3, 4, 86400},   {604800, 3, 7, 86400},
                         {1205600, 3, 14, 172800}, {2592000, 4, 1, 648000}, {7776000, 4, 3, 2592000},
                         {31536000, 5, 1, 7884000}};
    ASSERT_EQ(std::size(table), timeSteps.size());
    for (std::size_t i = 0; i < timeSteps.size(); ++i) {
        EXPECT_EQ(timeSteps[i].seconds, table[i].seconds) << i;
        EXPECT_EQ(static_cast<int>(timeSteps[i].unit), table[i].unit) << i;
        EXPECT_EQ(timeSteps[i].count, table[i].count) << i;
        EXPECT_EQ(timeSteps[i].minorSeconds, table[i].minorSeconds) << i;
    }
}

TEST(TimeSteps, TenSecondsWithABudgetOfFiveTakeTheMinuteBecauseTenSecondStepsAreTooMany) {
    EXPECT_EQ(timeStepForWidth(10, 5).seconds, 60);
    EXPECT_EQ(timeStepForWidth(10, 9).seconds, 60);
    EXPECT_EQ(timeStepForWidth(10, 10).seconds, 1);
}

TEST(TimeSteps, ASpanTooLongForQuartersTakesYearsWithMinorStepsOfAQuarter) {
    EXPECT_EQ(timeStepForWidth(7776000.0 * 8, 8).seconds, 7776000);
    const TimeStep &year = timeStepForWidth(7776000.0 * 8 + 1, 8);
    EXPECT_EQ(year.seconds, 31536000);
    EXPECT_EQ(year.unit, TimeUnit::years);
    EXPECT_EQ(year.minorSeconds, 7884000);
}

TEST(TimeSteps, EveryStepIsTakenUpToExactlyItsBudget) {
    for (std::size_t i = 0; i + 1 < timeSteps.size(); ++i) {
        for (const int budget : {2, 8}) {
            const double width = timeSteps[i].seconds * budget;
            EXPECT_EQ(row(timeStepForWidth(width, budget)), static_cast<std::ptrdiff_t>(i));
            const double wider = std::nextafter(width, infinity);
            EXPECT_EQ(row(timeStepForWidth(wider, budget)), static_cast<std::ptrdiff_t>(i) + 1);
        }
    }
}

TEST(TimeSteps, APartOfAStepCountsAgainstTheBudget) {
    EXPECT_EQ(timeStepForWidth(5.5, 5).seconds, 60);
    EXPECT_EQ(timeStepForWidth(5.0, 5).seconds, 1);
}

TEST(TimeSteps, NoWidthTakesTheFinestAndNoNumberTheCoarsest) {
    EXPECT_EQ(row(timeStepForWidth(0, 8)), 0);
    EXPECT_EQ(row(timeStepForWidth(0, 0)), 0);
    EXPECT_EQ(row(timeStepForWidth(1, 0)), 15);
    EXPECT_EQ(row(timeStepForWidth(1, -1)), 15);
    EXPECT_EQ(row(timeStepForWidth(noNumber, 8)), 15);
    EXPECT_EQ(row(timeStepForWidth(infinity, 8)), 15);
    EXPECT_EQ(row(timeStepForWidth(1e300, 8)), 15);
}

TEST(TimeSteps, AGivenLengthTakesItsOwnRowOrTheNextLonger) {
    for (std::size_t i = 0; i < timeSteps.size(); ++i) {
        EXPECT_EQ(row(timeStepForSeconds(timeSteps[i].seconds)), static_cast<std::ptrdiff_t>(i));
        EXPECT_EQ(row(timeStepForSeconds(-timeSteps[i].seconds)), static_cast<std::ptrdiff_t>(i));
    }
    EXPECT_EQ(timeStepForSeconds(0.1).seconds, 1);
    EXPECT_EQ(timeStepForSeconds(61).seconds, 300);
    EXPECT_EQ(timeStepForSeconds(1209600).seconds, 2592000);
    EXPECT_EQ(timeStepForSeconds(1e9).seconds, 31536000);
    EXPECT_EQ(timeStepForSeconds(infinity).seconds, 31536000);
    EXPECT_EQ(timeStepForSeconds(noNumber).seconds, 31536000);
}

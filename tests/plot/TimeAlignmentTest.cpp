#include "plot/TimeAlignment.h"

#include "plot/AxisTimes.h"
#include "plot/LocalDays.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

struct Alignment {
    const char *what;
    const char *zone;
    double step;
    double x1;
    double x2;
    std::int64_t first;
    std::int64_t last;
};

class AlignedTimes : public testing::TestWithParam<Alignment> {};

std::string nameOf(const testing::TestParamInfo<Alignment> &info) {
    return info.param.what;
}

constexpr double at(std::int64_t second, double fraction = 0) {
    return static_cast<double>(second) + fraction;
}

} // namespace

TEST_P(AlignedTimes, AreWholeForTheStep) {
    const Alignment &row = GetParam();
    Timezone zone = zoneNamed(row.zone);
    const auto span = alignTimes(row.x1, row.x2, timeStepForSeconds(row.step), zone);
    ASSERT_TRUE(span.has_value());
    EXPECT_EQ(span->first, row.first) << localText(span->first, zone);
    EXPECT_EQ(span->last, row.last) << localText(span->last, zone);
}

INSTANTIATE_TEST_SUITE_P(
    OfSeconds, AlignedTimes,
    testing::Values(Alignment{"FractionsAreRoundedOutwards", "UTC", 1, at(utc(2021, 3, 4, 13, 5, 7), 0.25),
                              at(utc(2021, 3, 4, 13, 5, 12), 0.25), utc(2021, 3, 4, 13, 5, 7),
                              utc(2021, 3, 4, 13, 5, 13)},
                    Alignment{"WholeSecondsStay", "UTC", 1, at(utc(2021, 3, 4, 13, 5, 7)),
                              at(utc(2021, 3, 4, 13, 5, 12)), utc(2021, 3, 4, 13, 5, 7),
                              utc(2021, 3, 4, 13, 5, 12)},
                    Alignment{"LessThanAMillisecondIsNoSecondMore", "UTC", 1, at(utc(2021, 3, 4, 13, 5, 7)),
                              at(utc(2021, 3, 4, 13, 5, 12), 0.0005), utc(2021, 3, 4, 13, 5, 7),
                              utc(2021, 3, 4, 13, 5, 12)},
                    Alignment{"Before1970FractionsAreCutTowardsIt", "UTC", 1, -10.5, -2.5, -10, -1},
                    Alignment{"Beyond2106", "UTC", 1, at(utc(2300, 1, 1), 0.5), at(utc(2300, 1, 1, 0, 0, 9)),
                              utc(2300, 1, 1), utc(2300, 1, 1, 0, 0, 9)},
                    Alignment{"ASpanBeyond136YearsWrapsAt32Bits", "UTC", 1, 0, 4294967296.0 + 100, 0, 100}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    OfMinutes, AlignedTimes,
    testing::Values(
        Alignment{"AWholeMinuteStays", "UTC", 60, at(utc(2021, 3, 4, 13, 5, 7)), at(utc(2021, 3, 4, 13, 8)),
                  utc(2021, 3, 4, 13, 5), utc(2021, 3, 4, 13, 8)},
        Alignment{"ASecondMoreIsAMinuteMore", "UTC", 60, at(utc(2021, 3, 4, 13, 5, 7)),
                  at(utc(2021, 3, 4, 13, 8, 1)), utc(2021, 3, 4, 13, 5), utc(2021, 3, 4, 13, 9)},
        Alignment{"AnEndOnAWholeMinuteIsRoundedDownToFive", "UTC", 300, at(utc(2021, 3, 4, 13, 7)),
                  at(utc(2021, 3, 4, 13, 12)), utc(2021, 3, 4, 13, 5), utc(2021, 3, 4, 13, 10)},
        Alignment{"AnEndBehindAWholeMinuteIsRoundedUpToFive", "UTC", 300, at(utc(2021, 3, 4, 13, 7)),
                  at(utc(2021, 3, 4, 13, 12, 30)), utc(2021, 3, 4, 13, 5), utc(2021, 3, 4, 13, 15)},
        Alignment{"QuartersOfAnHourInKathmandu", "Asia/Kathmandu", 900, at(utc(2021, 3, 4, 4, 35, 30)),
                  at(utc(2021, 3, 4, 5, 15)), utc(2021, 3, 4, 4, 30), utc(2021, 3, 4, 5, 15)},
        Alignment{"HalfHoursInKolkata", "Asia/Kolkata", 1800, at(utc(2021, 3, 4, 5, 20)),
                  at(utc(2021, 3, 4, 6, 40, 5)), utc(2021, 3, 4, 5), utc(2021, 3, 4, 7)},
        Alignment{"Before1970", "UTC", 60, -90, -10, -120, 0}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    OfHours, AlignedTimes,
    testing::Values(Alignment{"AWholeHourStaysInKathmandu", "Asia/Kathmandu", 3600,
                              at(utc(2021, 3, 4, 4, 35)), at(utc(2021, 3, 4, 6, 15)), utc(2021, 3, 4, 4, 15),
                              utc(2021, 3, 4, 6, 15)},
                    Alignment{"EvenHoursInNewYork", "America/New_York", 7200, at(utc(2021, 1, 15, 12, 30)),
                              at(utc(2021, 1, 15, 17)), utc(2021, 1, 15, 11), utc(2021, 1, 15, 17)},
                    Alignment{"AnEndOnAWholeHourIsRoundedDownToTwo", "America/New_York", 7200,
                              at(utc(2021, 1, 15, 12, 30)), at(utc(2021, 1, 15, 18)), utc(2021, 1, 15, 11),
                              utc(2021, 1, 15, 17)},
                    Alignment{"SixHoursInLosAngeles", "America/Los_Angeles", 21600,
                              at(utc(2021, 1, 15, 21, 45)), at(utc(2021, 1, 16, 7, 10)), utc(2021, 1, 15, 20),
                              utc(2021, 1, 16, 8)},
                    Alignment{"FromBeforeSpringsChange", "America/New_York", 21600, at(utc(2021, 3, 14, 6)),
                              at(utc(2021, 3, 14, 16)), utc(2021, 3, 14, 5), utc(2021, 3, 14, 11)},
                    Alignment{"FromBehindSpringsChange", "America/New_York", 21600, at(utc(2021, 3, 14, 9)),
                              at(utc(2021, 3, 14, 16, 30)), utc(2021, 3, 14, 4), utc(2021, 3, 14, 22)},
                    Alignment{"FromBehindAutumnsChange", "Europe/Berlin", 21600, at(utc(2021, 10, 31, 4)),
                              at(utc(2021, 10, 31, 10, 30)), utc(2021, 10, 30, 23), utc(2021, 10, 31, 11)}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    OfDays, AlignedTimes,
    testing::Values(Alignment{"AnEndOnMidnightGetsADayMore", "UTC", 86400, at(utc(2021, 3, 4, 13, 5)),
                              at(utc(2021, 3, 6)), utc(2021, 3, 4), utc(2021, 3, 7)},
                    Alignment{"AnEndOnTheFirstOfAMonthStays", "UTC", 86400, at(utc(2021, 3, 30, 13, 5)),
                              at(utc(2021, 4, 1)), utc(2021, 3, 30), utc(2021, 4, 1)},
                    Alignment{"TwoDaysAreEvenDaysOfTheMonth", "UTC", 172800, at(utc(2021, 3, 5, 12)),
                              at(utc(2021, 3, 8, 6)), utc(2021, 3, 4), utc(2021, 3, 10)},
                    Alignment{"FourDaysMayBeginInTheMonthBefore", "UTC", 345600, at(utc(2021, 3, 3)),
                              at(utc(2021, 3, 9)), utc(2021, 2, 28), utc(2021, 3, 12)},
                    Alignment{"WeeksAreCountedInTheMonth", "UTC", 604800, at(utc(2021, 3, 20, 10)),
                              at(utc(2021, 4, 20, 10)), utc(2021, 3, 14), utc(2021, 4, 25)},
                    Alignment{"FourteenDaysAreWholeDays", "UTC", 1205600, at(utc(2021, 3, 20, 10)),
                              at(utc(2021, 6, 20, 10)), utc(2021, 3, 14), utc(2021, 7, 4)},
                    Alignment{"InKolkata", "Asia/Kolkata", 86400, at(utc(2021, 3, 4, 18, 29)),
                              at(utc(2021, 3, 5, 18, 31)), utc(2021, 3, 3, 18, 30), utc(2021, 3, 6, 18, 30)},
                    Alignment{"AcrossAutumnsChangeTheEndIsAnHourOff", "Europe/Berlin", 86400,
                              at(utc(2021, 10, 30, 10)), at(utc(2021, 11, 2, 11)), utc(2021, 10, 29, 22),
                              utc(2021, 11, 2, 22)},
                    Alignment{"OnTheDayOfSpringsChangeTheStartIsAnHourOff", "America/New_York", 86400,
                              at(utc(2021, 3, 14, 16)), at(utc(2021, 3, 15, 16)), utc(2021, 3, 14, 4),
                              utc(2021, 3, 16, 4)}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    OfMonthsAndYears, AlignedTimes,
    testing::Values(
        Alignment{"AnEndOnTheFirstStays", "Asia/Kolkata", 2592000, at(utc(2021, 2, 10)),
                  at(utc(2021, 4, 30, 18, 30)), utc(2021, 1, 31, 18, 30), utc(2021, 4, 30, 18, 30)},
        Alignment{"ASecondMoreIsAMonthMore", "Asia/Kolkata", 2592000, at(utc(2021, 2, 10)),
                  at(utc(2021, 4, 30, 18, 30, 1)), utc(2021, 1, 31, 18, 30), utc(2021, 5, 31, 18, 30)},
        Alignment{"QuartersCarryIntoTheNextYear", "Europe/Berlin", 7776000, at(utc(2021, 2, 10)),
                  at(utc(2021, 11, 20)), utc(2020, 12, 31, 23), utc(2021, 12, 31, 23)},
        Alignment{"AnEndOnAFirstIsRoundedDownToTheQuarter", "Europe/Berlin", 7776000, at(utc(2021, 2, 10)),
                  at(utc(2021, 4, 30, 22)), utc(2020, 12, 31, 23), utc(2021, 3, 31, 22)},
        Alignment{"AcrossBothChangesMonthsKeepLocalMidnight", "America/New_York", 2592000,
                  at(utc(2021, 3, 10)), at(utc(2021, 7, 10)), utc(2021, 3, 1, 5), utc(2021, 8, 1, 4)},
        Alignment{"AnEndOnNewYearStays", "America/New_York", 31536000, at(utc(2019, 7, 1)),
                  at(utc(2021, 1, 1, 5)), utc(2019, 1, 1, 5), utc(2021, 1, 1, 5)},
        Alignment{"ASecondMoreIsAYearMore", "America/New_York", 31536000, at(utc(2019, 7, 1)),
                  at(utc(2021, 1, 1, 5, 0, 1)), utc(2019, 1, 1, 5), utc(2022, 1, 1, 5)},
        Alignment{"YearsBefore1900", "UTC", 31536000, at(utc(1890, 7, 1)), at(utc(1895, 7, 1)),
                  utc(1890, 1, 1), utc(1896, 1, 1)},
        Alignment{"MonthsBefore1900", "UTC", 7776000, at(utc(1890, 12, 5)), at(utc(1891, 12, 5)),
                  utc(1890, 10, 1), utc(1892, 1, 1)},
        Alignment{"CenturiesLater", "UTC", 31536000, at(utc(2500, 7, 1)), at(utc(3000, 7, 1)),
                  utc(2500, 1, 1), utc(3001, 1, 1)}),
    nameOf);

TEST(TimeAlignment, WantsNumbersOnACalendar) {
    Timezone zone = zoneNamed("UTC");
    for (const TimeStep &step : timeSteps) {
        EXPECT_FALSE(alignTimes(noNumber, 1, step, zone));
        EXPECT_FALSE(alignTimes(1, noNumber, step, zone));
        EXPECT_FALSE(alignTimes(-infinity, 1, step, zone));
        EXPECT_FALSE(alignTimes(1, infinity, step, zone));
        EXPECT_FALSE(alignTimes(-1e300, 1e300, step, zone));
        EXPECT_FALSE(alignTimes(2, 1, step, zone));
        EXPECT_TRUE(alignTimes(-9e15, 9e15, step, zone));
    }
}

TEST(TimeAlignment, WholeSecondsAreCutNotRounded) {
    EXPECT_EQ(wholeSeconds(1.999), 1);
    EXPECT_EQ(wholeSeconds(-1.999), -1);
    EXPECT_EQ(wholeSeconds(4294967296.5), 4294967296);
    EXPECT_EQ(wholeSeconds(noNumber), 0);
    EXPECT_EQ(wholeSeconds(infinity), wholeSeconds(1e300));
    EXPECT_EQ(wholeSeconds(-infinity), -wholeSeconds(infinity));
}

TEST(LocalDays, ADayWithoutMidnightBeginsWithItsFirstSecond) {
    // Clocks went from 24:00 to 01:00.
    Timezone zone = zoneNamed("America/Sao_Paulo");
    const std::int64_t begin = utc(2018, 11, 4, 3);
    ASSERT_EQ(localText(begin - 1, zone), "2018-11-03 23:59:59");
    ASSERT_EQ(localText(begin, zone), "2018-11-04 01:00:00");
    for (const std::int64_t hours : {-11, -1, 0, 1, 10}) {
        EXPECT_EQ(nearestMidnight(begin + hours * 3600, zone), begin) << hours;
    }
}

TEST(LocalDays, AnHourRepeatedBeforeMidnightDoesNotHoldTheDate) {
    // Clocks went from 24:00 back to 23:00.
    Timezone zone = zoneNamed("America/Sao_Paulo");
    const std::int64_t evening = utc(2018, 2, 17, 22);
    ASSERT_EQ(localText(evening, zone), "2018-02-17 20:00:00");
    ASSERT_EQ(localText(evening + 14400, zone), "2018-02-17 23:00:00");
    EXPECT_EQ(nearestMidnight(evening, zone), evening + 18000);
}

TEST(LocalDays, AMidnightThatComesTwiceStaysWhereItIs) {
    // Clocks went from 01:00 back to 00:00.
    Timezone zone = zoneNamed("America/Havana");
    const std::int64_t once = utc(2021, 11, 7, 4);
    const std::int64_t again = utc(2021, 11, 7, 5);
    ASSERT_EQ(localText(once, zone), "2021-11-07 00:00:00");
    ASSERT_EQ(localText(again, zone), "2021-11-07 00:00:00");
    EXPECT_EQ(nearestMidnight(once, zone), once);
    EXPECT_EQ(nearestMidnight(again, zone), again);
}

TEST(LocalDays, TheNearerMidnightWins) {
    Timezone zone = zoneNamed("Europe/Berlin");
    const std::int64_t midnight = utc(2021, 12, 31, 23);
    EXPECT_EQ(nearestMidnight(midnight - 43200, zone), midnight);
    EXPECT_EQ(nearestMidnight(midnight - 43201, zone), midnight - 86400);
    EXPECT_EQ(nearestMidnight(midnight + 43199, zone), midnight);
    EXPECT_EQ(nearestMidnight(midnight, zone), midnight);
}

TEST(LocalDays, ADateThatWasSkippedIsNotFound) {
    // Samoa went from the 29th to the 31st of December 2011.
    Timezone zone = zoneNamed("Pacific/Apia");
    const std::int64_t begin = utc(2011, 12, 30, 10);
    ASSERT_EQ(localText(begin, zone), "2011-12-31 00:00:00");
    EXPECT_EQ(nearestMidnight(begin - 3600, zone), begin);
    EXPECT_EQ(nearestMidnight(begin + 3600, zone), begin);
}

#include "plot/TimeTicks.h"

#include "plot/AxisTimes.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

Texts localTexts(const QList<double> &ticks, Timezone &zone) {
    Texts texts;
    for (const double tick : ticks) {
        texts.push_back(localText(wholeSeconds(tick), zone));
    }
    return texts;
}

QList<double> ticksBetween(std::int64_t begin, std::int64_t end, double step, Timezone &zone) {
    const TimeStep &row = timeStepForSeconds(step);
    return majorTicks(*alignTimes(static_cast<double>(begin), static_cast<double>(end), row, zone), row,
                      zone);
}

bool beginsDay(std::int64_t time, Timezone &zone) {
    const std::string text = localText(time, zone);
    return text.substr(11) == "00:00:00" || text.substr(0, 10) != localText(time - 1, zone).substr(0, 10);
}

} // namespace

TEST(MajorTicks, LeaveOutTheAlignedEnd) {
    Timezone zone = zoneNamed("UTC");
    EXPECT_EQ(majorTicks({100, 103}, timeStepForSeconds(1), zone), (QList<double>{100, 101, 102}));
    EXPECT_EQ(majorTicks({0, 600}, timeStepForSeconds(300), zone), (QList<double>{0, 300}));
    EXPECT_EQ(majorTicks({100, 100}, timeStepForSeconds(1), zone), QList<double>());
}

TEST(MajorTicks, AreTheirStepApart) {
    Timezone zone = zoneNamed("UTC");
    for (const TimeStep &step : timeSteps) {
        if (step.unit >= TimeUnit::months) {
            break;
        }
        const double distance = step.unit == TimeUnit::days ? 86400.0 * step.count : step.seconds;
        const auto begin = static_cast<double>(utc(2021, 3, 4, 13, 5, 7));
        const auto span = alignTimes(begin, begin + 7.5 * distance, step, zone);
        const QList<double> ticks = majorTicks(*span, step, zone);
        ASSERT_GE(ticks.size(), 7) << distance;
        for (int i = 1; i < ticks.size(); ++i) {
            EXPECT_EQ(ticks[i] - ticks[i - 1], distance);
        }
    }
}

TEST(MajorTicks, OfDaysMonthsAndYearsStayOnLocalMidnightAcrossADaylightSavingChange) {
    Timezone newYork = zoneNamed("America/New_York");
    EXPECT_EQ(localTexts(ticksBetween(utc(2021, 3, 13, 12), utc(2021, 3, 15, 12), 86400, newYork), newYork),
              (Texts{"2021-03-13 00:00:00", "2021-03-14 00:00:00", "2021-03-15 00:00:00"}));
    EXPECT_EQ(localTexts(ticksBetween(utc(2021, 11, 6, 12), utc(2021, 11, 8, 12), 86400, newYork), newYork),
              (Texts{"2021-11-06 00:00:00", "2021-11-07 00:00:00", "2021-11-08 00:00:00"}));
    EXPECT_EQ(
        localTexts(ticksBetween(utc(2021, 2, 10), utc(2021, 5, 10), 2592000, newYork), newYork),
        (Texts{"2021-02-01 00:00:00", "2021-03-01 00:00:00", "2021-04-01 00:00:00", "2021-05-01 00:00:00"}));
    Timezone berlin = zoneNamed("Europe/Berlin");
    EXPECT_EQ(localTexts(ticksBetween(utc(2021, 3, 20, 12), utc(2021, 4, 15), 604800, berlin), berlin),
              (Texts{"2021-03-14 00:00:00", "2021-03-21 00:00:00", "2021-03-28 00:00:00",
                     "2021-04-04 00:00:00", "2021-04-11 00:00:00"}));
    EXPECT_EQ(localTexts(ticksBetween(utc(2021, 2, 10), utc(2022, 1, 10), 7776000, berlin), berlin),
              (Texts{"2021-01-01 00:00:00", "2021-04-01 00:00:00", "2021-07-01 00:00:00",
                     "2021-10-01 00:00:00", "2022-01-01 00:00:00"}));
    Timezone sydney = zoneNamed("Australia/Sydney");
    EXPECT_EQ(localTexts(ticksBetween(utc(2019, 5, 1), utc(2021, 5, 1), 31536000, sydney), sydney),
              (Texts{"2019-01-01 00:00:00", "2020-01-01 00:00:00", "2021-01-01 00:00:00"}));
}

TEST(MajorTicks, OfADayThatBeganBehindAChangeStartAtItsOwnMidnight) {
    // Counted back in seconds the day would begin at 23:00.
    Timezone zone = zoneNamed("America/New_York");
    EXPECT_EQ(ticksBetween(utc(2021, 3, 14, 16), utc(2021, 3, 14, 20), 86400, zone).first(),
              static_cast<double>(utc(2021, 3, 14, 5)));
}

TEST(MajorTicks, OfHoursKeepTheirDistanceAcrossAChange) {
    Timezone zone = zoneNamed("America/New_York");
    EXPECT_EQ(
        localTexts(ticksBetween(utc(2021, 3, 14, 0), utc(2021, 3, 14, 22, 30), 21600, zone), zone),
        (Texts{"2021-03-13 18:00:00", "2021-03-14 00:00:00", "2021-03-14 07:00:00", "2021-03-14 13:00:00"}));
}

TEST(MajorTicks, OfAMonthWhoseFirstMidnightWasSkippedDoNotMoveThoseBehindIt) {
    // Syria set its clocks forward at midnight to the first of April.
    Timezone zone = zoneNamed("Asia/Damascus");
    EXPECT_EQ(
        localTexts(ticksBetween(utc(2005, 3, 15), utc(2005, 6, 15), 2592000, zone), zone),
        (Texts{"2005-03-01 00:00:00", "2005-04-01 01:00:00", "2005-05-01 00:00:00", "2005-06-01 00:00:00"}));
    EXPECT_EQ(localTexts(ticksBetween(utc(2005, 4, 15), utc(2005, 6, 15), 2592000, zone), zone),
              (Texts{"2005-04-01 01:00:00", "2005-05-01 00:00:00", "2005-06-01 00:00:00"}));
}

TEST(MajorTicks, OfDaysAndMonthsBeginADayInEveryZone) {
    std::mt19937 random(5);
    const auto below = [&](std::uint_fast32_t bound) { return static_cast<std::int64_t>(random() % bound); };
    int zones = 0;
    const std::filesystem::path folder(FVQA_ZONEINFO_DIR);
    for (const auto &entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file()) {
            continue;
        }
        ++zones;
        Timezone zone = zoneNamed(std::filesystem::relative(entry.path(), folder).string());
        for (int i = 0; i < 12; ++i) {
            const TimeStep &step = timeSteps[8 + random() % 8];
            const std::int64_t begin = utc(2000, 1, 1) + below(788400000); // 25 years
            const std::int64_t width = static_cast<std::int64_t>(step.seconds) * (1 + below(8));
            double previous = 0;
            for (const double tick : ticksBetween(begin, begin + width, step.seconds, zone)) {
                const std::int64_t time = wholeSeconds(tick);
                ASSERT_TRUE(beginsDay(time, zone)) << zone.name() << " " << localText(time, zone);
                ASSERT_TRUE(step.unit == TimeUnit::days || localText(time, zone).substr(8, 2) == "01")
                    << zone.name() << " " << localText(time, zone);
                ASSERT_GT(tick, previous) << zone.name();
                previous = tick;
            }
            ASSERT_GT(previous, 0);
        }
    }
    EXPECT_GT(zones, 400);
}

TEST(MajorTicks, NeverExceedTheirBound) {
    Timezone zone = zoneNamed("Europe/Berlin");
    const std::int64_t begin = utc(2000, 1, 1);
    for (const TimeStep &step : timeSteps) {
        const QList<double> ticks =
            majorTicks({begin, begin + std::int64_t{86400} * 365 * 100000}, step, zone);
        EXPECT_EQ(ticks.size(), maxTicks) << step.seconds;
    }
}

TEST(SmallTicks, FillEveryStepOfTheTable) {
    struct Row {
        int minor;
        int medium;
    };
    // A medium tick stands where the step has a middle.
    const Row rows[] = {{2, 1}, {2, 1}, {4, 0}, {2, 0}, {2, 0}, {2, 1}, {2, 1}, {4, 1},
                        {2, 1}, {2, 1}, {2, 1}, {6, 0}, {0, 1}, {2, 1}, {2, 0}, {2, 1}};
    for (std::size_t i = 0; i < timeSteps.size(); ++i) {
        const TimeStep &step = timeSteps[i];
        const SmallTicks ticks = smallTicks({1e9}, step.seconds, step.minorSeconds);
        EXPECT_EQ(ticks.minor.size(), rows[i].minor) << i;
        EXPECT_EQ(ticks.medium.size(), rows[i].medium) << i;
        if (!ticks.medium.empty()) {
            EXPECT_EQ(ticks.medium.first(), 1e9 + step.seconds / 2) << i;
        }
        if (!ticks.minor.empty()) {
            EXPECT_EQ(ticks.minor.first(), 1e9 + step.minorSeconds) << i;
            EXPECT_EQ(ticks.minor.last(), 1e9 + step.seconds - step.minorSeconds) << i;
        }
    }
}

TEST(SmallTicks, ComeBehindEachMajorTick) {
    const SmallTicks ticks = smallTicks({0, 3600}, 3600, 900);
    EXPECT_EQ(ticks.minor, (QList<double>{900, 2700, 4500, 6300}));
    EXPECT_EQ(ticks.medium, (QList<double>{1800, 5400}));
}

TEST(SmallTicks, AreASingleMediumOneWhenTheMinorStepsDoNotFit) {
    const SmallTicks ticks = smallTicks({0, 1209600}, 1205600, 172800);
    EXPECT_EQ(ticks.minor, QList<double>());
    EXPECT_EQ(ticks.medium, (QList<double>{602800, 1209600 + 602800}));
}

TEST(SmallTicks, MayFallShortOfTheStep) {
    // 3 x 30 = 90: rounded, not cut, and not beyond the step.
    EXPECT_EQ(smallTicks({0}, 100, 30).minor, (QList<double>{30, 60}));
    // 4 x 25.00001 is within a millionth of the step, 4 x 25.001 is not.
    EXPECT_EQ(smallTicks({0}, 100, 25.00001).minor.size(), 2);
    EXPECT_EQ(smallTicks({0}, 100, 25.001).minor.size(), 0);
}

TEST(SmallTicks, AreNoneForAMinorStepOfNothing) {
    EXPECT_TRUE(smallTicks({0, 60}, 60, 0).minor.empty());
    EXPECT_TRUE(smallTicks({0, 60}, 60, 0).medium.empty());
}

TEST(SmallTicks, NextToZeroAreZero) {
    const SmallTicks ticks = smallTicks({-30.00001}, 60, 15);
    EXPECT_EQ(ticks.medium.first(), 0);
    EXPECT_NE(smallTicks({-30.001}, 60, 15).medium.first(), 0);
}

TEST(SmallTicks, NeverExceedTheirBound) {
    QList<double> major;
    for (int i = 0; i < maxTicks; ++i) {
        major.append(i * 21600.0);
    }
    const SmallTicks ticks = smallTicks(major, 21600, 3600);
    EXPECT_EQ(ticks.minor.size(), maxTicks);
    EXPECT_EQ(ticks.medium.size(), maxTicks);
    EXPECT_EQ(smallTicks({0}, 1e9, 1e-9).minor.size(), maxTicks);
}

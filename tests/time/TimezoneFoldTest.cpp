#include "time/CalendarFields.h"
#include "time/Timezone.h"
#include "time/ZoneFolder.h"

#include <gtest/gtest.h>
#include <limits>

using namespace std::string_literals;

namespace {

constexpr std::int64_t earliest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t latest = std::numeric_limits<std::int64_t>::max();

TimezoneInfo infoAt(Timezone &zone, std::int64_t instant) {
    std::tm local{};
    TimezoneInfo info;
    zone.localTime(instant, &local, &info);
    return info;
}

// Three kinds of time, "AAA" to "CCC", at offsets of 1, 2 and 3 hours; only the second is daylight saving.
ZoneFileBuilder threeTypes() {
    return ZoneFileBuilder()
        .type(3600, false, 0)
        .type(7200, true, 4)
        .type(10800, false, 8)
        .abbreviations("AAA\0BBB\0CCC\0"s);
}

} // namespace

TEST(Fold, LeadsToTheOtherInstantOfARepeatedHour) {
    Timezone zone = zoneOf(easternClock());
    for (std::int64_t second = 0; second < 3600; ++second) {
        const std::int64_t firstPass = easternSummerEnds - 3600 + second;
        const std::int64_t secondPass = easternSummerEnds + second;
        ASSERT_EQ(infoAt(zone, firstPass).fold, 3600) << second;
        ASSERT_EQ(infoAt(zone, secondPass).fold, -3600) << second;
        std::tm before{};
        std::tm after{};
        ASSERT_EQ(written(*zone.localTime(firstPass, &before)), written(*zone.localTime(secondPass, &after)));
    }
    EXPECT_EQ(infoAt(zone, easternSummerEnds - 3601).fold, 0);
    EXPECT_EQ(infoAt(zone, easternSummerEnds + 3601).fold, 0);
}

TEST(Fold, StillCountsOneSecondBehindTheRepeatedHour) {
    // 03:00:00 comes once only. The bound is taken inclusive, as it always was.
    Timezone zone = zoneOf(easternClock());
    std::tm local{};
    TimezoneInfo info;
    EXPECT_EQ(written(*zone.localTime(easternSummerEnds + 3600, &local, &info)), "2020-10-25 3:0:0");
    EXPECT_EQ(info.fold, -3600);
}

TEST(Fold, OfTheNextTransitionWinsOverThatOfThePrevious) {
    // The clock is set back an hour twice within an hour.
    Timezone zone = zoneOf(threeTypes().transition(0, 2).transition(10000, 1).transition(12000, 0));
    EXPECT_EQ(infoAt(zone, 11000).fold, 3600);
    EXPECT_EQ(infoAt(zone, 13000).fold, -3600);
}

TEST(Fold, HasTheSizeOfTheStep) {
    Timezone halfHour = zoneOf(ZoneFileBuilder()
                                   .transition(0, 1)
                                   .transition(100000, 0)
                                   .type(37800, false, 0)
                                   .type(39600, true, 0)
                                   .abbreviations("X\0"s));
    EXPECT_EQ(infoAt(halfHour, 100000 - 1801).fold, 0);
    EXPECT_EQ(infoAt(halfHour, 100000 - 1800).fold, 1800);
    EXPECT_EQ(infoAt(halfHour, 100000 + 1799).fold, -1800);
    EXPECT_EQ(infoAt(halfHour, 100000 + 1801).fold, 0);
}

TEST(Fold, IsNoneWhereTheClockIsSetForward) {
    Timezone zone = zoneOf(easternClock());
    EXPECT_EQ(infoAt(zone, easternSummerBegins - 1).fold, 0);
    EXPECT_EQ(infoAt(zone, easternSummerBegins).fold, 0);
}

TEST(Fold, BesideAWesternOffsetSaysNothing) {
    // The neighbour's offset enters without its sign: 4294952896 for -14400, and so on.
    Timezone zone = zoneOf(westernClock());
    EXPECT_EQ(infoAt(zone, westernSummerEnds + 60).fold, -(4294967296 - 14400 + 18000));
    EXPECT_EQ(infoAt(zone, westernSummerEnds + std::int64_t{86400} * 30).fold, -(4294967296 - 14400 + 18000));
    EXPECT_EQ(infoAt(zone, westernSummerBegins + std::int64_t{86400} * 30).fold,
              -(4294967296 - 18000 + 14400));
}

TEST(Fold, IsDefinedAtTheEndsOfTime) {
    Timezone zone = zoneOf(threeTypes().transition(1000, 0).transition(-1, 2).transition(3000, 0));
    EXPECT_EQ(infoAt(zone, latest).fold, 0);
    EXPECT_EQ(infoAt(zone, earliest).fold, -7200) << "the last transition's, far behind it";
}

#include "time/AllocationWatch.h"
#include "time/CalendarFields.h"
#include "time/Timezone.h"
#include "time/ZoneFolder.h"

#include <gtest/gtest.h>
#include <random>

namespace {

constexpr std::int64_t summerDay = easternSummerBegins + 86400;
constexpr std::int64_t winterDay = easternSummerEnds + 86400;

void lookUp(Timezone &zone, std::int64_t instant) {
    std::tm local{};
    zone.localTime(instant, &local);
}

// Puts the search for the next local time on the first or the second pass of the repeated hour.
void convertTimeNear(Timezone &zone, std::int64_t instant) {
    std::tm local{};
    zone.localTime(instant, &local);
    zone.makeTime(local);
}

std::int64_t repeatedHalfPastTwo(Timezone &zone) {
    std::tm local = calendar(2020, 10, 25, 2, 30);
    return zone.makeTime(local);
}

} // namespace

TEST(TimezoneCopies, AreIndependent) {
    Timezone zone = zoneOf(easternClock());
    lookUp(zone, summerDay);
    Timezone copy = zone;
    EXPECT_EQ(copy.currentAbbreviation(), "CEST") << "a copy starts from the same state";
    lookUp(copy, winterDay);
    EXPECT_EQ(copy.currentAbbreviation(), "CET");
    EXPECT_EQ(zone.currentAbbreviation(), "CEST");
    lookUp(zone, easternLastTransition);
    EXPECT_EQ(copy.currentAbbreviation(), "CET");
}

TEST(TimezoneCopies, OutliveTheirOriginal) {
    auto zone = std::make_unique<Timezone>(zoneOf(easternClock()));
    Timezone copy = *zone;
    zone.reset();
    std::tm local{};
    TimezoneInfo info;
    EXPECT_EQ(written(*copy.localTime(easternSummerBegins, &local, &info)), "2020-3-29 3:0:0");
    EXPECT_STREQ(info.abbreviation, "CEST");
}

TEST(TimezoneCopies, KeepNameAndUnknownMark) {
    const ZoneFolder folder;
    folder.write("UTC", easternClock().bytes());
    const Timezone zone(folder.path(), "Unknown");
    for (const Timezone &copy : {Timezone(zone), zone.fresh()}) {
        EXPECT_EQ(copy.name(), "Unknown");
        EXPECT_TRUE(copy.isUnknown());
    }
}

TEST(FreshTimezone, LooksUpAsANewlyLoadedOne) {
    Timezone zone = zoneOf(easternClock());
    lookUp(zone, summerDay);
    ASSERT_EQ(zone.currentAbbreviation(), "CEST");
    EXPECT_EQ(zone.fresh().currentAbbreviation(), "CET");
    EXPECT_EQ(zone.currentAbbreviation(), "CEST") << "the original keeps its state";
}

TEST(FreshTimezone, ConvertsARepeatedHourAsANewlyLoadedOne) {
    Timezone loaded = zoneOf(easternClock());
    const std::int64_t expected = repeatedHalfPastTwo(loaded);
    for (const std::int64_t previous : {easternSummerEnds - 7200, easternSummerEnds + 7200}) {
        Timezone zone = zoneOf(easternClock());
        convertTimeNear(zone, previous);
        Timezone fresh = zone.fresh();
        EXPECT_EQ(repeatedHalfPastTwo(fresh), expected);
    }
}

TEST(MakeTimeState, RepeatedHourWithoutAFlagDependsOnThePreviousConversion) {
    Timezone zone = zoneOf(easternClock());
    convertTimeNear(zone, easternSummerEnds - 7200);
    EXPECT_EQ(repeatedHalfPastTwo(zone), easternSummerEnds - 1800);
    convertTimeNear(zone, easternSummerEnds + 7200);
    EXPECT_EQ(repeatedHalfPastTwo(zone), easternSummerEnds + 1800);
}

TEST(MakeTimeState, NeverChangesTheResultOfALocalTimeThatOccursOnce) {
    std::mt19937_64 random(7);
    const Timezone loaded = zoneOf(easternClock());
    Timezone used = loaded;
    for (int i = 0; i < 20000; ++i) {
        const auto span = static_cast<std::uint64_t>(easternLastTransition - easternSummerBegins);
        const std::int64_t instant = easternSummerBegins + static_cast<std::int64_t>(random() % span);
        if (std::abs(instant - easternSummerEnds) <= 3600) {
            continue;
        }
        Timezone fresh = loaded;
        std::tm local{};
        fresh.localTime(instant, &local);
        local.tm_isdst = -1;
        std::tm again = local;
        ASSERT_EQ(fresh.makeTime(local), instant);
        ASSERT_EQ(used.makeTime(again), instant);
    }
}

TEST(TimezoneConversions, AllocateNothing) {
    Timezone zone = zoneOf(easternClock());
    std::tm local{};
    TimezoneInfo info;
    const AllocationWatch watch;
    for (std::int64_t instant = 0; instant < 4000000000; instant += 1000003) {
        zone.localTime(instant, &local, &info);
        zone.makeTime(local, &info);
    }
    EXPECT_EQ(watch.count(), 0U);
}

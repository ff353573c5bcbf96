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

std::string abbreviationAt(Timezone &zone, std::int64_t instant) {
    return infoAt(zone, instant).abbreviation;
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

TEST(LocalTime, FillsTheOutputAndReturnsIt) {
    Timezone zone = zoneOf(easternClock());
    std::tm local{};
    EXPECT_EQ(zone.localTime(easternSummerBegins - 1, &local), &local);
    EXPECT_EQ(writtenInFull(local), "2020-3-29 1:59:59 w0 y88 d0");
    EXPECT_EQ(zone.localTime(easternSummerBegins, &local), &local);
    EXPECT_EQ(writtenInFull(local), "2020-3-29 3:0:0 w0 y88 d1");
}

TEST(LocalTime, NullOutputReturnsNullAndDoesNothing) {
    Timezone zone = zoneOf(easternClock());
    abbreviationAt(zone, easternSummerBegins);
    TimezoneInfo info;
    info.utcOffset = 17;
    EXPECT_EQ(zone.localTime(easternSummerEnds, nullptr, &info), nullptr);
    EXPECT_EQ(info.utcOffset, 17);
    EXPECT_EQ(zone.currentAbbreviation(), "CEST") << "the last lookup still counts";
}

TEST(LocalTime, ZoneWithoutTransitionsUsesItsFirstNonDstTypeForEveryInstant) {
    Timezone zone = zoneOf(ZoneFileBuilder()
                               .type(7200, true, 0)
                               .type(10800, true, 4)
                               .type(3600, false, 8)
                               .type(0, false, 0)
                               .abbreviations("AAA\0BBB\0CCC\0"s));
    for (const std::int64_t instant : {earliest, INT64_C(-1), INT64_C(0), INT64_C(1600000000), latest}) {
        const TimezoneInfo info = infoAt(zone, instant);
        EXPECT_STREQ(info.abbreviation, "CCC") << instant;
        EXPECT_EQ(info.utcOffset, 3600) << instant;
        EXPECT_EQ(info.isDst, 0U) << instant;
        EXPECT_EQ(info.fold, 0) << instant;
    }
}

TEST(LocalTime, ZoneWithoutTransitionsThatHasDstTypesOnlyUsesTheFirst) {
    Timezone zone =
        zoneOf(ZoneFileBuilder().type(7200, true, 4).type(3600, true, 0).abbreviations("AAA\0BBB\0"s));
    EXPECT_EQ(abbreviationAt(zone, 0), "BBB");
    EXPECT_EQ(infoAt(zone, 0).isDst, 1U);
}

TEST(LocalTime, ZoneWithoutTypesIsNamelessUtc) {
    for (const ZoneFileBuilder &file : {ZoneFileBuilder(), ZoneFileBuilder().transition(0, 0)}) {
        Timezone zone = zoneOf(ZoneFileBuilder(file).abbreviations("XXX\0"s));
        std::tm local{};
        TimezoneInfo info;
        EXPECT_EQ(written(*zone.localTime(1600000000, &local, &info)), "2020-9-13 12:26:40");
        EXPECT_EQ(local.tm_isdst, 0);
        EXPECT_EQ(info.utcOffset, 0);
        EXPECT_STREQ(info.abbreviation, "");
        EXPECT_EQ(zone.currentAbbreviation(), "");
    }
}

TEST(LocalTime, TypeIndexOutsideTheFilesTypesIsNamelessUtc) {
    // The indexes are signed bytes: the upper half lies before the first type.
    for (const int index : {3, 127, 128, 255}) {
        Timezone zone = zoneOf(threeTypes().transition(0, 2).transition(1000, index).transition(2000, 1));
        EXPECT_EQ(abbreviationAt(zone, 999), "CCC");
        const TimezoneInfo info = infoAt(zone, 1000);
        EXPECT_STREQ(info.abbreviation, "") << index;
        EXPECT_EQ(info.utcOffset, 0) << index;
        EXPECT_EQ(info.isDst, 0U) << index;
        EXPECT_EQ(zone.currentAbbreviation(), "") << index;
        EXPECT_EQ(abbreviationAt(zone, 2000), "BBB");
    }
}

TEST(LocalTime, TypeIndexesAreSignedBytes) {
    ZoneFileBuilder file = ZoneFileBuilder().transition(0, 127).transition(1000, 128).abbreviations("AAA\0"s);
    for (int i = 0; i < 256; ++i) {
        file.type(i, false, 0);
    }
    Timezone zone = zoneOf(file);
    EXPECT_EQ(infoAt(zone, 0).utcOffset, 127);
    EXPECT_STREQ(infoAt(zone, 1000).abbreviation, "") << "-128, not 128";
}

TEST(LocalTime, TransitionCountsFromItsOwnSecond) {
    Timezone zone = zoneOf(threeTypes().transition(0, 0).transition(1000, 1).transition(2000, 2));
    struct Row {
        std::int64_t instant;
        const char *abbreviation;
    };
    for (const Row &row :
         {Row{0, "AAA"}, {999, "AAA"}, {1000, "BBB"}, {1999, "BBB"}, {2000, "CCC"}, {latest, "CCC"}}) {
        EXPECT_EQ(abbreviationAt(zone, row.instant), row.abbreviation) << row.instant;
    }
}

TEST(LocalTime, LookupGivesTheSameForwardsBackwardsAndAtRandom) {
    ZoneFileBuilder file = threeTypes();
    for (int i = 0; i < 9; ++i) {
        file.transition(std::int64_t{1000} * i, i % 3);
    }
    Timezone zone = zoneOf(file);
    const auto expected = [](std::int64_t instant) {
        return "ABC"s.substr(static_cast<std::size_t>(instant / 1000 % 3), 1);
    };
    for (std::int64_t instant = 0; instant < 9000; instant += 250) {
        EXPECT_EQ(abbreviationAt(zone, instant).substr(0, 1), expected(instant)) << instant;
    }
    for (std::int64_t instant = 8999; instant >= 0; instant -= 250) {
        EXPECT_EQ(abbreviationAt(zone, instant).substr(0, 1), expected(instant)) << instant;
    }
    for (std::int64_t i = 0; i < 1000; ++i) {
        const std::int64_t instant = i * 7919 % 9000;
        EXPECT_EQ(abbreviationAt(zone, instant).substr(0, 1), expected(instant)) << instant;
    }
}

TEST(LocalTime, TimeBeforeTheFirstTransitionGetsTheLastTransitionsType) {
    Timezone zone = zoneOf(threeTypes().transition(1000, 0).transition(2000, 1).transition(3000, 2));
    for (const std::int64_t instant : {earliest, INT64_C(-1), INT64_C(999)}) {
        EXPECT_EQ(abbreviationAt(zone, instant), "CCC") << instant;
        EXPECT_EQ(zone.currentAbbreviation(), "CCC") << instant;
    }
    EXPECT_EQ(abbreviationAt(zone, 1000), "AAA");
}

TEST(LocalTime, TransitionBefore1970IsStoredAsALargePositiveNumber) {
    // -1 becomes 4294967295, in the year 2106.
    Timezone zone = zoneOf(threeTypes().transition(0, 0).transition(-1, 1));
    EXPECT_EQ(abbreviationAt(zone, 1600000000), "AAA");
    EXPECT_EQ(abbreviationAt(zone, 4294967294), "AAA");
    EXPECT_EQ(abbreviationAt(zone, 4294967295), "BBB");
}

TEST(LocalTime, ZoneWhoseTransitionsAllLieBefore1970KeepsTheLastOne) {
    Timezone zone =
        zoneOf(threeTypes().transition(-2000000000, 0).transition(-1000000000, 1).transition(-1000, 2));
    for (const std::int64_t instant : {-5000, 0, 1600000000}) {
        EXPECT_EQ(abbreviationAt(zone, instant), "CCC") << instant;
    }
}

TEST(LocalTime, BehindTheLargeNumbersTheTypeDependsOnThePreviousLookup) {
    // As real files begin: one transition at the 32-bit limit, one before 1970, then those that count.
    constexpr std::int64_t limit = 2147483648;
    Timezone zone = zoneOf(threeTypes().transition(-limit, 0).transition(-1000, 1).transition(1000, 2));
    Timezone fresh = zone;
    EXPECT_EQ(abbreviationAt(fresh, limit + 10), "AAA") << "found from the start";
    EXPECT_EQ(abbreviationAt(zone, 1600000000), "CCC");
    EXPECT_EQ(abbreviationAt(zone, limit + 10), "CCC") << "found from the last transition on";
}

TEST(LocalTime, LookupStaysAtItsTransitionFromThatTransitionsSecondOn) {
    constexpr std::int64_t limit = 2147483648;
    Timezone zone =
        zoneOf(threeTypes().transition(-limit, 0).transition(-1000, 1).transition(-limit + 100, 2));
    EXPECT_EQ(abbreviationAt(zone, 1600000000), "CCC");
    EXPECT_EQ(abbreviationAt(zone, limit + 100), "CCC");
    EXPECT_EQ(abbreviationAt(zone, limit + 99), "AAA") << "found from the start";
    EXPECT_EQ(abbreviationAt(zone, limit + 100), "AAA");
}

TEST(LocalTime, WesternOffsetIsTheSignedLowHalfOfItsField) {
    Timezone zone = zoneOf(westernClock());
    std::tm local{};
    TimezoneInfo info;
    EXPECT_EQ(writtenInFull(*zone.localTime(westernSummerBegins - 1, &local, &info)),
              "2020-3-8 1:59:59 w0 y67 d0");
    EXPECT_EQ(info.utcOffset, -18000);
    EXPECT_EQ(writtenInFull(*zone.localTime(westernSummerBegins, &local, &info)), "2020-3-8 3:0:0 w0 y67 d1");
    EXPECT_EQ(info.utcOffset, -14400);
}

TEST(LocalTime, TimeWhoseYearDoesNotFitComesBackZeroedButForTheDstFlag) {
    constexpr std::int64_t lastWithAYear = 67768036191676799;
    for (const std::int32_t offset : {7200, -7200, INT32_MAX, INT32_MIN}) {
        Timezone zone = zoneOf(ZoneFileBuilder().type(offset, true, 0).abbreviations("DST\0"s));
        for (const std::int64_t instant : {earliest, earliest + 7200, latest - 7200, latest}) {
            std::tm local = calendar(2020, 1, 2, 3, 4, 5);
            local.tm_wday = 6;
            local.tm_yday = 7;
            TimezoneInfo info;
            ASSERT_EQ(zone.localTime(instant, &local, &info), &local);
            EXPECT_EQ(writtenInFull(local), "1900-1-0 0:0:0 w0 y0 d1") << instant << " " << offset;
            EXPECT_EQ(info.utcOffset, offset);
        }
        // The limit is one of local years.
        std::tm local{};
        zone.localTime(lastWithAYear - offset, &local);
        EXPECT_EQ(written(local), "2147485547-12-31 23:59:59");
        zone.localTime(lastWithAYear - offset + 1, &local);
        EXPECT_EQ(written(local), "1900-1-0 0:0:0");
    }
}

TEST(LocalTime, InfoTellsDstOffsetAndAbbreviation) {
    Timezone zone = zoneOf(easternClock());
    const TimezoneInfo winter = infoAt(zone, easternSummerBegins - 86400);
    EXPECT_EQ(winter.isDst, 0U);
    EXPECT_EQ(winter.utcOffset, 3600);
    EXPECT_STREQ(winter.abbreviation, "CET");
    EXPECT_EQ(winter.fold, 0);
    const TimezoneInfo summer = infoAt(zone, easternSummerBegins + 86400);
    EXPECT_EQ(summer.isDst, 1U);
    EXPECT_EQ(summer.utcOffset, 7200);
    EXPECT_STREQ(summer.abbreviation, "CEST");
    EXPECT_EQ(summer.fold, 0);
    EXPECT_STREQ(winter.abbreviation, "CET") << "valid while the zone lives";
}

TEST(CurrentAbbreviation, WithoutTransitionsIsTheFirstTypesEvenIfDst) {
    Timezone zone =
        zoneOf(ZoneFileBuilder().type(7200, true, 4).type(3600, false, 0).abbreviations("CET\0CEST\0"s));
    EXPECT_EQ(zone.currentAbbreviation(), "CEST");
    EXPECT_EQ(abbreviationAt(zone, 0), "CET");
    EXPECT_EQ(zone.currentAbbreviation(), "CEST");
}

TEST(CurrentAbbreviation, WithoutTransitionsAndTypesIsEmpty) {
    EXPECT_EQ(zoneOf(ZoneFileBuilder().abbreviations("CET\0"s)).currentAbbreviation(), "");
}

TEST(CurrentAbbreviation, OfANewZoneIsThatOfTheFirstTransition) {
    EXPECT_EQ(zoneOf(threeTypes().transition(0, 1).transition(1000, 2)).currentAbbreviation(), "BBB");
}

TEST(CurrentAbbreviation, FollowsTheLookups) {
    Timezone zone = zoneOf(easternClock());
    abbreviationAt(zone, easternSummerBegins);
    EXPECT_EQ(zone.currentAbbreviation(), "CEST");
    abbreviationAt(zone, easternSummerEnds);
    EXPECT_EQ(zone.currentAbbreviation(), "CET");
    std::tm local = calendar(2020, 7, 1);
    zone.makeTime(local);
    EXPECT_EQ(zone.currentAbbreviation(), "CEST");
}

#include "time/CalendarFields.h"
#include "time/Timezone.h"
#include "time/ZoneFolder.h"

#include <climits>
#include <gtest/gtest.h>

using namespace std::string_literals;

namespace {

std::string localTimeAt(Timezone &zone, std::int64_t instant) {
    std::tm local{};
    return written(*zone.localTime(instant, &local));
}

// A conversion that leaves the zone's caches near `instant`.
void convertTimeNear(Timezone &zone, std::int64_t instant) {
    std::tm local{};
    zone.localTime(instant, &local);
    zone.makeTime(local);
}

// Zones in the states that conversions of very different times leave behind.
std::vector<Timezone> zonesOfManyStates(const ZoneFileBuilder &file) {
    std::vector<Timezone> zones(5, zoneOf(file));
    convertTimeNear(zones[1], easternSummerEnds - 7200);
    convertTimeNear(zones[2], easternSummerEnds + 7200);
    convertTimeNear(zones[3], 4000000000);
    convertTimeNear(zones[4], -60000000000);
    return zones;
}

} // namespace

TEST(MakeTime, WritesBackDstFlagWeekdayAndDayOfYearOnly) {
    Timezone zone = zoneOf(easternClock());
    std::tm local = calendar(2020, 7, 1, 12, 34, 56);
    local.tm_wday = 99;
    local.tm_yday = 999;
    EXPECT_EQ(zone.makeTime(local), 1593599696);
    EXPECT_EQ(writtenInFull(local), "2020-7-1 12:34:56 w3 y182 d1");
}

TEST(MakeTime, InfoIsThatOfTheInstantFound) {
    Timezone zone = zoneOf(easternClock());
    std::tm local = calendar(2020, 10, 25, 2, 30, 0, 0);
    TimezoneInfo info;
    EXPECT_EQ(zone.makeTime(local, &info), easternSummerEnds + 1800);
    EXPECT_EQ(info.isDst, 0U);
    EXPECT_EQ(info.utcOffset, 3600);
    EXPECT_STREQ(info.abbreviation, "CET");
    EXPECT_EQ(info.fold, -3600);

    local = calendar(2020, 10, 25, 2, 30, 0, 1);
    EXPECT_EQ(zone.makeTime(local, &info), easternSummerEnds - 1800);
    EXPECT_EQ(info.isDst, 1U);
    EXPECT_EQ(info.utcOffset, 7200);
    EXPECT_STREQ(info.abbreviation, "CEST");
    EXPECT_EQ(info.fold, 3600);
}

TEST(MakeTime, SkippedHourGivesTheNearestInstantNotAnError) {
    for (Timezone &zone : zonesOfManyStates(easternClock())) {
        for (int minute = 0; minute < 60; ++minute) {
            for (const int flag : {-1, 0, 1}) {
                std::tm local = calendar(2020, 3, 29, 2, minute, 0, flag);
                const std::int64_t instant = zone.makeTime(local);
                ASSERT_TRUE(instant == easternSummerBegins - 1 || instant == easternSummerBegins)
                    << minute << " gives " << instant;
                ASSERT_EQ(local.tm_isdst, instant == easternSummerBegins ? 1 : 0);
                ASSERT_EQ(local.tm_yday, 88);
            }
        }
    }
}

TEST(MakeTime, DstFlagDecidesInARepeatedHour) {
    for (Timezone &zone : zonesOfManyStates(easternClock())) {
        for (int second = 0; second < 3600; ++second) {
            std::tm summer = calendar(2020, 10, 25, 2, second / 60, second % 60, 1);
            ASSERT_EQ(zone.makeTime(summer), easternSummerEnds - 3600 + second);
            ASSERT_EQ(summer.tm_isdst, 1);
            std::tm winter = calendar(2020, 10, 25, 2, second / 60, second % 60, 0);
            ASSERT_EQ(zone.makeTime(winter), easternSummerEnds + second);
            ASSERT_EQ(winter.tm_isdst, 0);
        }
    }
}

TEST(MakeTime, DstFlagMinusOneNeverAppliesTheFold) {
    // Whichever pass the search comes upon is kept; with the fold applied it would be the other one.
    Timezone zone = zoneOf(easternClock());
    struct Row {
        std::int64_t previous;
        std::int64_t expected;
        int flag;
    };
    for (const Row &row : {Row{easternSummerEnds - 7200, easternSummerEnds - 1800, 1},
                           Row{easternSummerEnds + 7200, easternSummerEnds + 1800, 0}}) {
        convertTimeNear(zone, row.previous);
        std::tm local = calendar(2020, 10, 25, 2, 30);
        TimezoneInfo info;
        EXPECT_EQ(zone.makeTime(local, &info), row.expected);
        EXPECT_NE(info.fold, 0);
        EXPECT_EQ(local.tm_isdst, row.flag) << "the flag found is written back";
    }
}

TEST(MakeTime, DstFlagThatIsWrongOutsideARepeatedHourChangesNothing) {
    Timezone zone = zoneOf(easternClock());
    std::tm winter = calendar(2021, 1, 1, 0, 0, 0, 1);
    EXPECT_EQ(zone.makeTime(winter), 1609455600);
    EXPECT_EQ(winter.tm_isdst, 0);
    std::tm summer = calendar(2020, 7, 1, 0, 0, 0, 0);
    EXPECT_EQ(zone.makeTime(summer), 1593554400);
    EXPECT_EQ(summer.tm_isdst, 1);
}

TEST(MakeTime, FoldIsAppliedAtTheSecondBehindTheRepeatedHourToo) {
    // Follows from the fold's inclusive bound: 03:00:00 "summer time" becomes the start of the second pass.
    Timezone zone = zoneOf(easternClock());
    std::tm local = calendar(2020, 10, 25, 3, 0, 0, 1);
    EXPECT_EQ(zone.makeTime(local), easternSummerEnds);
}

TEST(MakeTime, WrongDstFlagInAWesternZoneLeadsFarAway) {
    // The fold means nothing beside western offsets, yet it is applied. Callers there pass -1.
    Timezone zone = zoneOf(westernClock());
    std::tm flagged = calendar(2020, 12, 1, 12, 0, 0, 1);
    EXPECT_EQ(zone.makeTime(flagged), 1606842000 - (4294967296 - 14400 + 18000));
    std::tm unflagged = calendar(2020, 12, 1, 12, 0, 0);
    EXPECT_EQ(zone.makeTime(unflagged), 1606842000);
}

TEST(MakeTime, WesternTimesWithoutAFlagConvert) {
    Timezone zone = zoneOf(westernClock());
    for (std::int64_t instant = westernSummerBegins - 864000; instant < westernSummerEnds + 864000;
         instant += 601) {
        std::tm local{};
        zone.localTime(instant, &local);
        const std::string expected = written(local);
        local.tm_isdst = -1;
        ASSERT_EQ(localTimeAt(zone, zone.makeTime(local)), expected);
    }
}

TEST(MakeTime, NaiveEstimateWrapsWithoutSpoilingTheResult) {
    Timezone zone = zoneOf(easternClock());
    for (const int year : {-1900, 0, 1, 1000, 1900, 1901, 1969, 1970, 2037, 2038, 2039, 2106, 2107, 2500,
                           9999, 32767, 65535, -2000000000, 2000000000}) {
        std::tm local = calendar(year, 7, 4, 5, 6, 7);
        const std::string expected = written(local);
        EXPECT_EQ(localTimeAt(zone, zone.makeTime(local)), expected);
    }
}

TEST(MakeTime, AnAbsurdTimeDoesNotSpoilTheNextConversion) {
    Timezone zone = zoneOf(easternClock());
    for (const int year : {INT_MIN + 1900, -1900, 65535, INT_MAX}) {
        std::tm absurd = calendar(year, 7, 4);
        zone.makeTime(absurd);
        std::tm local = calendar(2020, 7, 1, 12, 34, 56);
        EXPECT_EQ(zone.makeTime(local), 1593599696) << year;
    }
}

TEST(MakeTime, FieldsOutOfRangeGiveTheInstantBetweenTheirNeighbours) {
    // Fields compare as they stand, so a month 254 of 2020 lies between the last second of 2020 and 2021.
    struct Row {
        std::tm wanted;
        const char *before;
        const char *after;
    };
    std::tm month254 = calendar(2020, 1, 1);
    month254.tm_mon = 254;
    const std::vector<Row> rows = {
        {month254, "2020-12-31 23:59:59", "2021-1-1 0:0:0"},
        {calendar(2020, 0, 15), "2019-12-31 23:59:59", "2020-1-1 0:0:0"},
        {calendar(2020, 3, 0), "2020-2-29 23:59:59", "2020-3-1 0:0:0"},
        {calendar(2020, 2, 255), "2020-2-29 23:59:59", "2020-3-1 0:0:0"},
        {calendar(2020, 7, 1, 255), "2020-7-1 23:59:59", "2020-7-2 0:0:0"},
        {calendar(2020, 7, 1, 12, 255), "2020-7-1 12:59:59", "2020-7-1 13:0:0"},
        {calendar(2020, 7, 1, 12, 34, 255), "2020-7-1 12:34:59", "2020-7-1 12:35:0"},
        {calendar(2020, 7, 1, 12, 34, -1), "2020-7-1 12:33:59", "2020-7-1 12:34:0"},
    };
    for (Timezone &zone : zonesOfManyStates(easternClock())) {
        for (const Row &row : rows) {
            std::tm local = row.wanted;
            const std::string found = localTimeAt(zone, zone.makeTime(local));
            EXPECT_TRUE(found == row.before || found == row.after) << written(row.wanted) << ": " << found;
            EXPECT_EQ(written(local), written(row.wanted)) << "the fields themselves stay";
        }
    }
}

TEST(MakeTime, SearchEndsForAnyFields) {
    constexpr int extremes[] = {INT_MIN, INT_MIN + 1900, -1, 0, 255, INT_MAX};
    Timezone zone = zoneOf(easternClock());
    for (const int year : extremes) {
        for (const int month : extremes) {
            for (const int day : extremes) {
                for (const int hour : extremes) {
                    std::tm local{};
                    local.tm_year = year;
                    local.tm_mon = month;
                    local.tm_mday = day;
                    local.tm_hour = local.tm_min = local.tm_sec = hour;
                    local.tm_isdst = hour;
                    std::tm again = local;
                    Timezone fresh = zone.fresh();
                    // Years stay within an int, so nothing comes back zeroed.
                    ASSERT_NE(localTimeAt(zone, zone.makeTime(local)), "1900-1-0 0:0:0");
                    ASSERT_LE(std::abs(fresh.makeTime(again)), 67768040609740800);
                }
            }
        }
    }
}

TEST(MakeTime, YearBeyondTheSearchGivesItsEnd) {
    for (const std::int32_t offset : {0, INT32_MAX, INT32_MIN}) {
        Timezone zone = zoneOf(ZoneFileBuilder().type(offset, false, 0).abbreviations("X\0"s));
        std::tm last{};
        last.tm_year = INT_MAX;
        last.tm_mon = INT_MAX;
        EXPECT_EQ(zone.makeTime(last), 67768036191676799 - 2147483648);
        std::tm first{};
        first.tm_year = INT_MIN;
        first.tm_mon = INT_MIN;
        EXPECT_EQ(zone.makeTime(first), -67768040609740800 + 2147483648);
        std::tm local = calendar(2020, 7, 1);
        EXPECT_EQ(zone.makeTime(local), 1593561600 - std::int64_t{offset});
    }
}

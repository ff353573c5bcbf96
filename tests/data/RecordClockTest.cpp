#include "data/RecordClock.h"

#include "support/RandomNumbers.h"
#include "support/RecordComparison.h"
#include "support/SanitizerBuild.h"

#include <array>
#include <ctime>
#include <gtest/gtest.h>

namespace {

constexpr std::uint8_t both = RecordStamp::hasDate | RecordStamp::hasTimeOfDay;

struct Clock {
    std::uint16_t year;
    std::uint8_t month, day, hour, minute, second;
};

RecordStamp readStamp(std::uint32_t seconds, std::uint8_t flags = 0, Clock clock = {}) {
    RecordStamp stamp;
    stamp.seconds = seconds;
    stamp.nanoseconds = 7;
    stamp.flags = flags;
    stamp.year = clock.year;
    stamp.month = clock.month;
    stamp.day = clock.day;
    stamp.hour = clock.hour;
    stamp.minute = clock.minute;
    stamp.second = clock.second;
    return stamp;
}

RecordStamp completed(const char *zone, RecordStamp stamp) {
    RecordClock clock{Timezone(zone)};
    clock.complete(stamp);
    return stamp;
}

// A record's time the plain way: a conversion of its own for every record.
void completePlainly(Timezone &zone, RecordStamp &stamp) {
    std::tm calendar{};
    TimezoneInfo info;
    if (stamp.flags == both && (stamp.seconds == 0 || zone.isUnknown())) {
        calendar.tm_year = stamp.year - 1900;
        calendar.tm_mon = stamp.month - 1;
        calendar.tm_mday = stamp.day;
        calendar.tm_hour = stamp.hour;
        calendar.tm_min = stamp.minute;
        calendar.tm_sec = stamp.second;
        calendar.tm_isdst = -1;
        stamp.seconds = static_cast<std::uint32_t>(zone.makeTime(calendar, &info));
    } else {
        zone.localTime(stamp.seconds, &calendar, &info);
        if ((stamp.flags & RecordStamp::hasDate) == 0) {
            stamp.year = static_cast<std::uint16_t>(calendar.tm_year + 1900);
            stamp.month = static_cast<std::uint8_t>(calendar.tm_mon + 1);
            stamp.day = static_cast<std::uint8_t>(calendar.tm_mday);
        }
        if ((stamp.flags & RecordStamp::hasTimeOfDay) == 0) {
            stamp.hour = static_cast<std::uint8_t>(calendar.tm_hour);
            stamp.minute = static_cast<std::uint8_t>(calendar.tm_min);
            stamp.second = static_cast<std::uint8_t>(calendar.tm_sec);
        }
        stamp.flags = both;
    }
    stamp.utcOffset = info.utcOffset;
}

} // namespace

TEST(RecordClock, WithoutSecondsTheLocalDateAndTimeGiveThem) {
    const RecordStamp stamp = completed("Europe/Berlin", readStamp(0, both, {2019, 6, 1, 12, 0, 5}));
    EXPECT_EQ(stamp.seconds, 1559383205U);
    EXPECT_EQ(stamp.nanoseconds, 7U);
    EXPECT_EQ(stamp.utcOffset, 7200);
    EXPECT_EQ(int{stamp.hour}, 12);
    EXPECT_EQ(stamp.flags, both);
}

TEST(RecordClock, WhereTheFileNamesAZoneItsSecondsCountAndItsDateAndTimeStayAsRead) {
    const RecordStamp stamp = completed("Europe/Berlin", readStamp(1559383205, both, {2001, 2, 3, 4, 5, 6}));
    EXPECT_EQ(stamp.seconds, 1559383205U);
    EXPECT_EQ(stamp.utcOffset, 7200);
    EXPECT_EQ(stamp.year, 2001);
    EXPECT_EQ(int{stamp.second}, 6);
}

TEST(RecordClock, WhereTheFileNamesNoZoneItsDateAndTimeCountAsUtc) {
    const RecordStamp stamp = completed("Unknown", readStamp(1559383205, both, {2019, 6, 1, 12, 0, 5}));
    EXPECT_EQ(stamp.seconds, 1559390405U);
    EXPECT_EQ(stamp.utcOffset, 0);
}

TEST(RecordClock, TheZoneUtcNamedInTheFileIsAKnownZone) {
    EXPECT_EQ(completed("UTC", readStamp(1559383205, both, {2019, 6, 1, 12, 0, 5})).seconds, 1559383205U);
}

TEST(RecordClock, ADateOrTimeThatWasNotReadIsFilledFromTheSeconds) {
    for (const char *const zone : {"Europe/Berlin", "Unknown"}) {
        const int offset = zone == std::string_view("Unknown") ? 0 : 7200;
        const auto expected = [offset](std::uint8_t flags) {
            RecordStamp stamp = readStamp(1559383205, both, {2019, 6, 1, 10, 0, 5});
            stamp.hour = static_cast<std::uint8_t>(10 + offset / 3600);
            stamp.utcOffset = offset;
            if ((flags & RecordStamp::hasDate) != 0) {
                stamp.year = 2001;
                stamp.month = 2;
                stamp.day = 3;
            }
            if ((flags & RecordStamp::hasTimeOfDay) != 0) {
                stamp.hour = 4;
                stamp.minute = 5;
                stamp.second = 6;
            }
            return stamp;
        };
        for (const std::uint8_t flags : {std::uint8_t{0}, RecordStamp::hasDate, RecordStamp::hasTimeOfDay}) {
            const RecordStamp stamp = completed(zone, readStamp(1559383205, flags, {2001, 2, 3, 4, 5, 6}));
            EXPECT_TRUE(sameStamps(stamp, expected(flags))) << zone << " " << int{flags};
        }
    }
}

TEST(RecordClock, DatesThatNoCalendarHoldsEndTheSearchAndStayAsRead) {
    for (const char *const zone : {"Unknown", "Europe/Berlin", "America/New_York", "Asia/Kolkata"}) {
        for (const Clock &clock : {Clock{65535, 99, 99, 99, 99, 99}, Clock{65535, 255, 255, 255, 255, 255},
                                   Clock{0, 0, 0, 0, 0, 0}, Clock{2019, 2, 30, 24, 60, 60},
                                   Clock{1, 1, 1, 0, 0, 0}, Clock{65535, 12, 31, 23, 59, 59}}) {
            const RecordStamp stamp = completed(zone, readStamp(0, both, clock));
            EXPECT_EQ(stamp.year, clock.year) << zone;
            EXPECT_EQ(stamp.month, clock.month) << zone;
            EXPECT_EQ(stamp.day, clock.day) << zone;
            EXPECT_EQ(stamp.second, clock.second) << zone;
        }
    }
}

namespace {

// A zone of a file, the zone of its instrument's clock, and when that clock repeats or skips an hour.
struct ClockChange {
    const char *zone;
    const char *wall;
    std::int64_t at;
};
constexpr std::array clockChanges{ClockChange{"Unknown", "Europe/Berlin", 1572138000},
                                  ClockChange{"UTC", "Europe/Berlin", 1572138000},
                                  ClockChange{"Europe/Berlin", "Europe/Berlin", 1572138000},
                                  ClockChange{"Europe/Berlin", "Europe/Berlin", 1553994000},
                                  ClockChange{"America/New_York", "America/New_York", 1572760800},
                                  ClockChange{"America/New_York", "America/New_York", 1552201200},
                                  ClockChange{"Australia/Lord_Howe", "Australia/Lord_Howe", 1554562800},
                                  ClockChange{"Pacific/Apia", "Pacific/Apia", 1325239200},
                                  ClockChange{"Pacific/Chatham", "Pacific/Chatham", 1554559200},
                                  ClockChange{"Asia/Kolkata", "Asia/Kolkata", 1559347200},
                                  ClockChange{"Europe/Berlin", "Asia/Tokyo", 1553994000}};

// A record as read, at an instant around the change, with the fields that its columns happen to give.
RecordStamp drawStamp(RandomNumbers &random, Timezone &wall, std::int64_t now) {
    std::tm local{};
    wall.localTime(now, &local);
    const auto flags = static_cast<std::uint8_t>(random.oneIn(8) ? random.below(4) : both);
    const auto seconds = static_cast<std::uint32_t>(random.oneIn(4) ? now : 0);
    return readStamp(seconds, flags,
                     {static_cast<std::uint16_t>(local.tm_year + 1900),
                      static_cast<std::uint8_t>(local.tm_mon + 1), static_cast<std::uint8_t>(local.tm_mday),
                      static_cast<std::uint8_t>(local.tm_hour), static_cast<std::uint8_t>(local.tm_min),
                      static_cast<std::uint8_t>(local.tm_sec)});
}

} // namespace

TEST(RecordClock, SharingOneConversionAmongTheRecordsOfASecondChangesNoResult) {
    RandomNumbers random(7);
    for (std::size_t round = scaledDown(20); round > 0; --round) {
        for (const ClockChange &change : clockChanges) {
            RecordClock clock{Timezone(change.zone)};
            Timezone plain(change.zone);
            Timezone wall(change.wall);
            std::int64_t now = change.at - random.between(0, 8000);
            for (int i = 0; i < 1500; ++i) {
                now += random.oneIn(3) ? random.between(0, 40) : 0;
                now += random.oneIn(600) ? random.between(-9000, 9000) : 0;
                RecordStamp stamp = drawStamp(random, wall, now);
                RecordStamp expected = stamp;
                clock.complete(stamp);
                completePlainly(plain, expected);
                ASSERT_TRUE(sameStamps(stamp, expected)) << change.zone;
            }
        }
    }
}

TEST(RecordClock, ASkippedLocalTimeIsNotSharedWithTheSecondThatItWasTakenFor) {
    RecordClock clock{Timezone("Europe/Berlin")};
    RecordStamp before = readStamp(1553990000);
    clock.complete(before);
    RecordStamp skipped = readStamp(0, both, {2019, 3, 31, 2, 30, 0});
    clock.complete(skipped);
    RecordStamp stamp = readStamp(skipped.seconds);
    RecordStamp expected = stamp;
    clock.complete(stamp);
    Timezone plain("Europe/Berlin");
    completePlainly(plain, expected);
    EXPECT_TRUE(sameStamps(stamp, expected));
}

TEST(RecordClock, StartsAsANewlyLoadedZoneWhateverTheZoneConvertedBefore) {
    // The second pass of a repeated hour: a zone that comes from later times may find the other one.
    const RecordStamp repeated = readStamp(0, both, {2019, 10, 27, 2, 30, 0});
    const RecordStamp expected = completed("Europe/Berlin", repeated);
    Timezone used("Europe/Berlin");
    for (const std::int64_t before : {0, 1572130000, 1572138000, 1572150000, 1600000000}) {
        std::tm calendar{};
        used.localTime(before, &calendar);
        used.makeTime(calendar);
        RecordClock clock(used);
        RecordStamp stamp = repeated;
        clock.complete(stamp);
        EXPECT_TRUE(sameStamps(stamp, expected)) << before;
    }
}

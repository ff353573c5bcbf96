#include "time/CalendarTime.h"

#include "time/CalendarFields.h"

#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

namespace {

using Seconds = std::numeric_limits<std::int64_t>;

std::string fromLibrary(std::int64_t seconds) {
    const std::time_t instant = seconds;
    std::tm fields{};
    return gmtime_r(&instant, &fields) != nullptr ? writtenInFull(fields) : "no year";
}

std::string fromUs(std::int64_t seconds) {
    std::tm fields{};
    return breakDownUtc(seconds, fields) ? writtenInFull(fields) : "no year";
}

constexpr std::int64_t firstWithAYear = -67768040609740800;
constexpr std::int64_t lastWithAYear = 67768036191676799;

} // namespace

TEST(BreakDownUtc, KnownInstantsHaveTheirCalendarFields) {
    struct Row {
        std::int64_t seconds;
        const char *fields;
    };
    for (const Row &row : {
             Row{0, "1970-1-1 0:0:0 w4 y0 d0"},
             Row{-1, "1969-12-31 23:59:59 w3 y364 d0"},
             Row{951782400, "2000-2-29 0:0:0 w2 y59 d0"},
             Row{978307199, "2000-12-31 23:59:59 w0 y365 d0"},
             Row{-2203891200, "1900-3-1 0:0:0 w4 y59 d0"},
             Row{4107542400, "2100-3-1 0:0:0 w1 y59 d0"},
             Row{-62135596801, "0-12-31 23:59:59 w0 y365 d0"},
             Row{firstWithAYear, "-2147481748-1-1 0:0:0 w4 y0 d0"},
             Row{lastWithAYear, "2147485547-12-31 23:59:59 w3 y364 d0"},
         }) {
        EXPECT_EQ(fromUs(row.seconds), row.fields);
    }
}

TEST(BreakDownUtc, AgreesWithTheCLibraryOnEveryDayFrom1600To2400) {
    constexpr std::int64_t day = 86400;
    constexpr std::int64_t first = -11676096000; // 1600-01-01
    constexpr std::int64_t last = 13601088000;   // 2401-01-01
    ASSERT_EQ(fromLibrary(first), "1600-1-1 0:0:0 w6 y0 d0");
    ASSERT_EQ(fromLibrary(last), "2401-1-1 0:0:0 w1 y0 d0");
    for (std::int64_t midnight = first; midnight < last; midnight += day) {
        ASSERT_EQ(fromUs(midnight), fromLibrary(midnight)) << midnight;
        ASSERT_EQ(fromUs(midnight + day - 1), fromLibrary(midnight + day - 1)) << midnight;
    }
}

TEST(BreakDownUtc, AgreesWithTheCLibraryOnRandomSecondsOfEverySize) {
    std::mt19937_64 random(20200229);
    for (int i = 0; i < 500000; ++i) {
        // The arithmetic shift keeps the sign and spreads the sizes.
        const std::int64_t seconds = static_cast<std::int64_t>(random()) >> (random() % 64);
        ASSERT_EQ(fromUs(seconds), fromLibrary(seconds)) << seconds;
    }
}

TEST(BreakDownUtc, AgreesWithTheCLibraryOnEverySecondOfADay) {
    for (std::int64_t second = -86400; second < 86400; ++second) {
        ASSERT_EQ(fromUs(second), fromLibrary(second)) << second;
    }
}

TEST(BreakDownUtc, LeavesTheCalendarAsItIsWhenTheYearDoesNotFit) {
    for (const std::int64_t seconds :
         {firstWithAYear - 1, lastWithAYear + 1, Seconds::min(), Seconds::max()}) {
        ASSERT_EQ(fromLibrary(seconds), "no year");
        std::tm fields = calendar(2021, 2, 3, 4, 5, 6, 1);
        fields.tm_wday = 7;
        fields.tm_yday = 400;
        EXPECT_FALSE(breakDownUtc(seconds, fields)) << seconds;
        EXPECT_EQ(writtenInFull(fields), "2021-2-3 4:5:6 w7 y400 d1") << seconds;
    }
}

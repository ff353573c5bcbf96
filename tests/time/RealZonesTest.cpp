#include "time/CalendarFields.h"
#include "time/LibraryClock.h"
#include "time/Timezone.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>

namespace {

constexpr std::int64_t day = 86400;
constexpr std::int64_t endOf2037 = 2145916800;

std::string fileOf(const std::string &zone) {
    return std::string(FVQA_ZONEINFO_DIR) + "/" + zone;
}

// Instants at which the version-1 data speak for themselves: from the first transition since 1970 to 2037,
// at random and close to every transition.
std::vector<std::int64_t> instantsOf(const LibraryClock &clock, std::int64_t margin) {
    const std::int64_t first = clock.transitions().empty() ? 0 : clock.transitions().front();
    std::vector<std::int64_t> instants;
    for (const std::int64_t transition : clock.transitions()) {
        for (const std::int64_t distance :
             {-7200, -3601, -3600, -1801, -1800, -1, 0, 1, 1799, 1800, 3599, 3600}) {
            instants.push_back(transition + distance);
        }
    }
    std::mt19937_64 random(1);
    for (int i = 0; i < 20000; ++i) {
        instants.push_back(
            first + static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(endOf2037 - first)));
    }
    const auto isOutside = [&](std::int64_t instant) {
        return instant < first + margin || instant >= endOf2037;
    };
    instants.erase(std::remove_if(instants.begin(), instants.end(), isOutside), instants.end());
    std::shuffle(instants.begin(), instants.end(), random);
    return instants;
}

std::string testName(const testing::TestParamInfo<const char *> &info) {
    std::string name = info.param;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

class RealZone : public testing::TestWithParam<const char *> {
protected:
    Timezone zone_{FVQA_ZONEINFO_DIR, GetParam()};
    LibraryClock clock_{fileOf(GetParam())};
};

// Zones whose offsets are never negative, where a repeated hour converts both ways.
class RealEasternZone : public RealZone {};

} // namespace

TEST_P(RealZone, LocalTimeAgreesWithTheCLibrary) {
    const auto agree = [&](std::int64_t instant) {
        const std::tm expected = clock_.localTime(instant);
        std::tm local{};
        TimezoneInfo info;
        zone_.localTime(instant, &local, &info);
        ASSERT_EQ(writtenInFull(local), writtenInFull(expected)) << instant;
        ASSERT_EQ(info.utcOffset, expected.tm_gmtoff) << instant;
        ASSERT_EQ(info.isDst, static_cast<unsigned>(expected.tm_isdst)) << instant;
        ASSERT_STREQ(info.abbreviation, expected.tm_zone) << instant;
        ASSERT_STREQ(info.abbreviation, zone_.currentAbbreviation().c_str()) << instant;
    };
    std::vector<std::int64_t> instants = instantsOf(clock_, 0);
    ASSERT_GT(instants.size(), 10000U);
    std::for_each(instants.begin(), instants.end(), agree);
    std::sort(instants.begin(), instants.end());
    std::for_each(instants.begin(), instants.end(), agree);
    std::for_each(instants.rbegin(), instants.rend(), agree);
}

TEST_P(RealZone, MakeTimeWithoutAFlagLeadsBackToTheSameLocalTime) {
    for (const std::int64_t instant : instantsOf(clock_, 0)) {
        std::tm local{};
        zone_.localTime(instant, &local);
        std::tm wanted = local;
        wanted.tm_isdst = -1;
        const std::int64_t found = zone_.makeTime(wanted);
        ASSERT_EQ(written(*zone_.localTime(found, &wanted)), written(local)) << instant;
        ASSERT_LE(std::abs(found - instant), day) << instant;
    }
}

TEST_P(RealEasternZone, MakeTimeUndoesLocalTime) {
    // The day behind the first transition may repeat times that the last type gives to those before it.
    for (const std::int64_t instant : instantsOf(clock_, day)) {
        std::tm local{};
        zone_.localTime(instant, &local);
        ASSERT_EQ(zone_.makeTime(local), instant) << written(local);
    }
}

TEST_P(RealEasternZone, DstFlagDecidesInEveryRepeatedHour) {
    for (const std::int64_t transition : clock_.transitions()) {
        const std::tm before = clock_.localTime(transition - 1);
        const std::tm after = clock_.localTime(transition);
        const std::int64_t repeated = before.tm_gmtoff - after.tm_gmtoff;
        if (repeated <= 0 || before.tm_isdst == after.tm_isdst) {
            continue;
        }
        for (std::int64_t second = 0; second < repeated; second += 97) {
            std::tm local = clock_.localTime(transition + second);
            const std::string wanted = written(local);
            for (const auto &[flag, expected] : {std::pair(before.tm_isdst, transition - repeated + second),
                                                 std::pair(after.tm_isdst, transition + second)}) {
                local.tm_isdst = flag;
                std::tm forLibrary = local;
                ASSERT_EQ(std::mktime(&forLibrary), expected) << wanted;
                ASSERT_EQ(zone_.makeTime(local), expected) << wanted;
                ASSERT_EQ(local.tm_isdst, flag) << wanted;
            }
            local.tm_isdst = -1;
            const std::int64_t either = zone_.makeTime(local);
            ASSERT_TRUE(either == transition + second || either == transition - repeated + second) << wanted;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(World, RealZone,
                         testing::Values("Asia/Kathmandu", "Pacific/Chatham", "Australia/Lord_Howe",
                                         "Pacific/Apia", "Asia/Kolkata", "America/St_Johns",
                                         "America/New_York", "Europe/London", "Europe/Berlin", "Etc/GMT+5",
                                         "UTC"),
                         testName);
INSTANTIATE_TEST_SUITE_P(World, RealEasternZone,
                         testing::Values("Asia/Kathmandu", "Pacific/Chatham", "Australia/Lord_Howe",
                                         "Asia/Kolkata", "Europe/London", "Europe/Berlin", "UTC"),
                         testName);

TEST(RealZones, HaveTheirKnownLocalTimes) {
    struct Row {
        const char *zone;
        std::int64_t instant;
        const char *local;
        const char *abbreviation;
    };
    for (const Row &row : {
             Row{"Asia/Kathmandu", 1600000000, "2020-9-13 18:11:40", "+0545"},
             Row{"Pacific/Chatham", 1600000000, "2020-9-14 1:11:40", "+1245"},
             Row{"Pacific/Chatham", 1610000000, "2021-1-7 19:58:20", "+1345"},
             Row{"Australia/Lord_Howe", 1600000000, "2020-9-13 22:56:40", "+1030"},
             Row{"Australia/Lord_Howe", 1610000000, "2021-1-7 17:13:20", "+11"},
             // Samoa went from the last to the first of the world's days: there was no 30 December 2011.
             Row{"Pacific/Apia", 1325239199, "2011-12-29 23:59:59", "-10"},
             Row{"Pacific/Apia", 1325239200, "2011-12-31 0:0:0", "+14"},
             Row{"Asia/Kolkata", 1600000000, "2020-9-13 17:56:40", "IST"},
             Row{"America/St_Johns", 1600000000, "2020-9-13 9:56:40", "NDT"},
             Row{"America/New_York", 1600000000, "2020-9-13 8:26:40", "EDT"},
             Row{"Europe/London", 1600000000, "2020-9-13 13:26:40", "BST"},
             Row{"Etc/GMT+5", 1600000000, "2020-9-13 7:26:40", "-05"},
             Row{"UTC", 1600000000, "2020-9-13 12:26:40", "UTC"},
         }) {
        Timezone zone(FVQA_ZONEINFO_DIR, row.zone);
        std::tm local{};
        TimezoneInfo info;
        EXPECT_EQ(written(*zone.localTime(row.instant, &local, &info)), row.local) << row.zone;
        EXPECT_STREQ(info.abbreviation, row.abbreviation) << row.zone;
    }
}

TEST(RealZones, EveryZoneOfTheWorldAgreesWithTheCLibraryAtItsTransitions) {
    const std::filesystem::path root = FVQA_ZONEINFO_DIR;
    int count = 0;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(root)) {
        if (!entry.is_regular_file()) {
            continue;
        }
        ++count;
        const std::string name = std::filesystem::relative(entry.path(), root).string();
        Timezone zone(root.string(), name);
        const LibraryClock clock(entry.path().string());
        std::vector<std::int64_t> instants = clock.transitions();
        for (const std::int64_t transition : clock.transitions()) {
            instants.push_back(transition + day);
            if (transition != clock.transitions().front()) {
                instants.push_back(transition - 1);
            }
        }
        instants.push_back(endOf2037);
        for (const std::int64_t instant : instants) {
            std::tm local{};
            ASSERT_EQ(writtenInFull(*zone.localTime(instant, &local)),
                      writtenInFull(clock.localTime(instant)))
                << name << " at " << instant;
        }
    }
    EXPECT_GT(count, 400);
}

TEST(RealZones, SkippedDayOfApiaGivesAnInstantAtTheDateLine) {
    Timezone zone(FVQA_ZONEINFO_DIR, "Pacific/Apia");
    std::tm local = calendar(2011, 12, 30, 12);
    const std::int64_t instant = zone.makeTime(local);
    EXPECT_TRUE(instant == 1325239199 || instant == 1325239200) << instant;
}

TEST(RealZones, TimeBeforeTheFirstTransitionSince1970GetsTheLastTransitionsType) {
    // Nepal kept 5:30 until 1986. The transitions of the years before 1970 count as ones of the next century.
    Timezone zone(FVQA_ZONEINFO_DIR, "Asia/Kathmandu");
    std::tm local{};
    EXPECT_EQ(written(*zone.localTime(400000000, &local)), "1982-9-4 20:51:40");
}

// Compiled time zones after a power failure, a bad disk or a bad copy: each loads and converts, or says what
// is wrong with it.

#include "damage/Damage.h"
#include "damage/ExampleFiles.h"
#include "damage/MemoryFolder.h"
#include "support/RunningCase.h"
#include "time/Timezone.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <optional>
#include <string>
#include <tuple>

namespace {

constexpr std::array zoneNames{"America/Denver",      "Europe/Berlin",     "Asia/Kolkata",
                               "Australia/Lord_Howe", "Africa/Casablanca", "UTC"};

using Limits = std::numeric_limits<std::int64_t>;
constexpr std::array<std::int64_t, 12> instants{Limits::min(),
                                                -5'000'000'000,
                                                -1,
                                                0,
                                                951'782'400,
                                                1'559'415'600,
                                                1'572'138'000,
                                                2'147'483'647,
                                                2'147'483'648,
                                                4'294'967'295,
                                                40'000'000'000,
                                                Limits::max()};

bool isCalendarTime(const std::tm &local) {
    const bool isCleared = local.tm_mday == 0 && local.tm_mon == 0 && local.tm_year == 0;
    return isCleared ||
           (local.tm_mon >= 0 && local.tm_mon < 12 && local.tm_mday >= 1 && local.tm_mday <= 31 &&
            local.tm_hour >= 0 && local.tm_hour < 24 && local.tm_min >= 0 && local.tm_min < 60 &&
            local.tm_sec >= 0 && local.tm_sec < 60 && local.tm_wday >= 0 && local.tm_wday < 7 &&
            local.tm_yday >= 0 && local.tm_yday < 366);
}

auto fieldsOf(const std::tm &local) {
    return std::tuple(local.tm_year, local.tm_mon, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec,
                      local.tm_isdst);
}

// One conversion there and back by a zone that has converted nothing yet.
struct Conversion {
    Conversion(Timezone zone, std::int64_t instant) {
        zone.localTime(instant, &local, &info);
        abbreviation = info.abbreviation == nullptr ? "none" : info.abbreviation;
        std::tm again = local;
        back = zone.makeTime(again);
    }

    bool operator==(const Conversion &other) const {
        return fieldsOf(local) == fieldsOf(other.local) && info.utcOffset == other.info.utcOffset &&
               info.fold == other.info.fold && abbreviation == other.abbreviation && back == other.back;
    }

    std::tm local{};
    TimezoneInfo info;
    std::string abbreviation;
    std::int64_t back = 0;
};

class DamagedZoneFile : public testing::TestWithParam<const char *> {
protected:
    // The zone that a file of these bytes gives. An error must name the file.
    std::optional<Timezone> load(const std::string &bytes) const {
        const std::string path = folder_.write("Zone", bytes);
        try {
            return Timezone(std::filesystem::path(path).parent_path().string(), "Zone");
        } catch (const Timezone::Error &error) {
            EXPECT_TRUE(std::string(error.what()).ends_with(": " + path)) << error.what();
            return std::nullopt;
        }
    }

    // True when it loads.
    bool check(const std::string &bytes) const {
        const std::optional<Timezone> zone = load(bytes);
        if (!zone) {
            return false;
        }
        for (const std::int64_t instant : instants) {
            const Conversion conversion(zone->fresh(), instant);
            EXPECT_TRUE(isCalendarTime(conversion.local)) << instant;
            EXPECT_LT(conversion.abbreviation.size(), bytes.size()) << instant;
            EXPECT_NE(bytes.find(conversion.abbreviation), std::string::npos) << instant;
            EXPECT_TRUE(conversion == Conversion(zone->fresh(), instant))
                << instant << " is converted in two ways";
        }
        return true;
    }

    MemoryFolder folder_;
    std::string whole_ = bytesOfFile(FVQA_ZONEINFO_DIR "/" + std::string(GetParam()));
};

// Some zones load in spite of the damage, and of many some do not.
void expectSome(std::size_t loaded, std::size_t cases) {
    if (cases >= fewSeeds) {
        EXPECT_GT(loaded, 0U);
    }
    if (cases >= 100) {
        EXPECT_LT(loaded, cases);
    }
}

std::string testName(const testing::TestParamInfo<const char *> &zone) {
    std::string name = zone.param;
    std::replace(name.begin(), name.end(), '/', '_');
    return name;
}

} // namespace

TEST_P(DamagedZoneFile, WithOneByteInAHundredChangedConvertsOrNamesItself) {
    ASSERT_TRUE(check(whole_));
    std::size_t loaded = 0;
    const auto seeds = damageSeeds();
    for (const std::uint64_t seed : seeds) {
        const RunningCase running("FVQA_DAMAGE_SEED=" + std::to_string(seed));
        SCOPED_TRACE(running.text());
        RandomNumbers random(seed);
        loaded += check(withChangedBytes(whole_, random)) ? 1U : 0U;
        ASSERT_FALSE(HasFailure());
    }
    expectSome(loaded, seeds.size());
}

TEST_P(DamagedZoneFile, JoinedWithAnotherConvertsOrNamesItself) {
    std::size_t loaded = 0;
    const auto seeds = damageSeeds();
    for (const std::uint64_t seed : seeds) {
        const RunningCase running("FVQA_DAMAGE_SEED=" + std::to_string(seed));
        SCOPED_TRACE(running.text());
        RandomNumbers random(seed);
        const std::string other = bytesOfFile(FVQA_ZONEINFO_DIR "/" + std::string(random.pick(zoneNames)));
        loaded += check(joined(whole_, other, random)) ? 1U : 0U;
        ASSERT_FALSE(HasFailure());
    }
    expectSome(loaded, seeds.size());
}

// So small a file is cut everywhere.
TEST_P(DamagedZoneFile, CutAtAnyByteConvertsOrNamesItself) {
    std::size_t loaded = 0;
    for (std::size_t cut = 0; cut <= whole_.size(); ++cut) {
        const RunningCase running(std::string(GetParam()) + " cut at byte " + std::to_string(cut));
        SCOPED_TRACE(running.text());
        loaded += check(whole_.substr(0, cut)) ? 1U : 0U;
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GT(loaded, 0U);
    EXPECT_LT(loaded, whole_.size());
}

INSTANTIATE_TEST_SUITE_P(Zones, DamagedZoneFile, testing::ValuesIn(zoneNames), testName);

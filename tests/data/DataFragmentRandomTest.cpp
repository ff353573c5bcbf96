#include "FragmentBlock.h"
#include "ReferenceFragment.h"
#include "data/DataFragment.h"
#include "support/RandomNumbers.h"
#include "support/SanitizerBuild.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <ctime>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

// Records in a text and in numbers, with a clock that mostly goes forward.
class RandomRecords {
public:
    explicit RandomRecords(std::uint64_t seed) : random_(seed), now_(random_.between(1, 1600000000)) {}

    // Draws the next record and gives its fields.
    std::string next(Record &record) {
        step();
        record.seconds = static_cast<std::uint32_t>(now_);
        record.nanoseconds = nanoseconds();
        record.diagnosticWord = static_cast<std::uint32_t>(random_.oneIn(3) ? random_.bits() : 0);
        record.flags = RecordStamp::hasDate | RecordStamp::hasTimeOfDay;
        std::string fields = std::to_string(record.seconds) + '\t' + std::to_string(record.nanoseconds) +
                             '\t' + std::to_string(record.diagnosticWord);
        record.values = {static_cast<double>(record.diagnosticWord),
                         (record.diagnosticWord & 1U) != 0 ? 1.0 : 0.0,
                         (record.diagnosticWord & 2U) != 0 ? 2.0 : 0.0};
        for (int i = 0; i < 3; ++i) {
            fields += '\t' + value(record);
        }
        return fields;
    }

private:
    void step() {
        if (random_.oneIn(300)) {
            now_ += random_.between(-20000, 20000); // a gap, or a step back
        } else if (random_.oneIn(20)) {
            now_ += 60 - now_ % 60; // onto a minute
        } else {
            now_ += random_.between(0, 25);
        }
        now_ = std::max<std::int64_t>(now_, 1);
    }

    std::uint32_t nanoseconds() {
        if (random_.oneIn(3)) {
            return 0;
        }
        return static_cast<std::uint32_t>(random_.oneIn(50) ? random_.bits() : random_.below(1000000000));
    }

    std::string value(Record &record) {
        struct Special {
            const char *text;
            double value;
        };
        constexpr double infinity = std::numeric_limits<double>::infinity();
        constexpr double nan = std::numeric_limits<double>::quiet_NaN();
        static constexpr std::array<Special, 6> specials{
            {{"nan", nan},
             {"inf", infinity},
             {"-1e99", -infinity},
             {"-0", -0.0},
             {"-1e-60", -0.0},
             {"3.4028235e38", std::numeric_limits<float>::max()}}};
        if (random_.oneIn(400)) {
            const Special &special = random_.pick(specials);
            record.values.push_back(special.value);
            return special.text;
        }
        float number = static_cast<float>(random_.between(-1000000, 1000000)) * 1e-3F;
        if (random_.oneIn(50)) {
            number = std::bit_cast<float>(static_cast<std::uint32_t>(random_.bits() & 0xBF7FFFFFU));
        }
        record.values.push_back(number);
        std::array<char, 64> text{};
        return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
    }

    RandomNumbers random_;
    std::int64_t now_;
};

void fillLocalTime(Timezone &zone, Record &record) {
    std::tm calendar{};
    TimezoneInfo info;
    zone.localTime(record.seconds, &calendar, &info);
    record.utcOffset = info.utcOffset;
    record.year = static_cast<std::uint16_t>(calendar.tm_year + 1900);
    record.month = static_cast<std::uint8_t>(calendar.tm_mon + 1);
    record.day = static_cast<std::uint8_t>(calendar.tm_mday);
    record.hour = static_cast<std::uint8_t>(calendar.tm_hour);
    record.minute = static_cast<std::uint8_t>(calendar.tm_min);
    record.second = static_cast<std::uint8_t>(calendar.tm_sec);
}

} // namespace

TEST(DataFragment, KeepsWhatAPlainSlowComputationGivesForRandomRecords) {
    constexpr std::array zones{"UTC", "Europe/Berlin", "America/New_York", "Unknown", "Australia/Lord_Howe"};
    const std::size_t rounds = scaledDown(60);
    std::size_t longPeriods = 0;
    for (std::uint64_t seed = 1; seed <= rounds; ++seed) {
        RandomRecords records(seed);
        const char *const zoneName = zones[seed % zones.size()];
        FragmentBlock block({"SECONDS", "NANOSECONDS", "DIAG", "A", "B", "C"}, {"F", "G"}, "DATA", zoneName);
        Timezone zone(zoneName);
        ReferenceFragment reference(6);
        for (int i = 0; i < 3000; ++i) {
            Record record;
            const std::string fields = records.next(record);
            fillLocalTime(zone, record);
            if (i % 97 == 13) {
                block.take("no record");
            }
            reference.take(record, block.take(fields), fields.size() + 5);
        }
        ASSERT_TRUE(reference.isMatchedBy(*block)) << "seed " << seed;
        longPeriods += block->series(3).size();
        block->finishLoading();
        ASSERT_TRUE(reference.isMatchedBy(*block)) << "after loading, seed " << seed;
    }
    EXPECT_GT(longPeriods, rounds);
}

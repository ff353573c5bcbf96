#include "RandomDataFile.h"
#include "WatchedLoading.h"
#include "support/LoadedSource.h"
#include "support/RecordComparison.h"
#include "support/SanitizerBuild.h"
#include "support/ScratchFolder.h"

#include <array>
#include <gtest/gtest.h>
#include <string>
#include <vector>

// Loading a file and reading it again must give the same records, whatever the file holds.

namespace {

// What the tests below say of one file, and how many records it held.
std::size_t expectReadAgainAsLoaded(const std::string &path) {
    const WatchedLoading watched(path);
    const DataSet source = loadSource(path);
    EXPECT_EQ(source.fragments().size(), watched.blocks().size());
    std::size_t records = 0;
    auto fragment = source.fragments().begin();
    for (const auto &block : watched.blocks()) {
        const ReferenceFragment reference = referenceOf(*block);
        EXPECT_TRUE(reference.isMatchedBy(**fragment));
        // A block without value columns has nothing to be read.
        const std::vector<Record> expected =
            block->fragment->valueCount() == 0 ? std::vector<Record>() : block->records;
        EXPECT_TRUE(sameRecords(readAgain(**fragment), expected));
        EXPECT_TRUE(sameRecords(readAgain(**fragment), expected)) << "at the second time";
        EXPECT_TRUE(reference.isMatchedBy(**fragment)) << "after reading";
        records += expected.size();
        ++fragment;
    }
    return records;
}

struct Place {
    const char *timezone; // as the file says
    const char *wallZone; // of the instrument's clock
    std::int64_t start;   // shortly before the clock is set back an hour, or half an hour
};
constexpr std::array places{Place{"", "Europe/Berlin", 1572138000 - 5000},
                            Place{"Europe/Berlin", "Europe/Berlin", 1572138000 - 5000},
                            Place{"", "America/New_York", 1572760800 - 5000},
                            Place{"America/New_York", "America/New_York", 1572760800 - 5000},
                            Place{"Australia/Lord_Howe", "Australia/Lord_Howe", 1554562800 - 5000},
                            Place{"Europe/Berlin", "Europe/Berlin", 1553994000 - 5000},
                            Place{"Asia/Kolkata", "Asia/Kolkata", 1559347200}};

RandomDataFile::Options optionsAt(const Place &place, std::uint64_t seed) {
    RandomDataFile::Options options;
    options.seed = seed;
    options.timezone = place.timezone;
    options.wallZone = place.wallZone;
    options.start = place.start;
    return options;
}

} // namespace

TEST(ReadingAgain, GivesExactlyTheRecordsThatLoadingGaveAlsoInARepeatedHour) {
    const ScratchFolder folder;
    std::size_t records = 0;
    const std::size_t rounds = scaledDown(40);
    for (std::uint64_t seed = 1; seed <= rounds; ++seed) {
        for (const Place &place : places) {
            const std::string path = folder.write("a.data", RandomDataFile(optionsAt(place, seed)).text());
            records += expectReadAgainAsLoaded(path);
            ASSERT_FALSE(testing::Test::HasFailure())
                << "seed " << seed << " zone \"" << place.timezone << "\" clock " << place.wallZone;
        }
    }
    EXPECT_GT(records, rounds * places.size() * 300);
}

TEST(ReadingAgain, GivesExactlyTheRecordsThatLoadingGaveBehindRefills) {
    const ScratchFolder folder;
    std::size_t records = 0;
    const std::size_t rounds = scaledDown(4);
    for (std::uint64_t seed = 1; seed <= rounds; ++seed) {
        RandomDataFile::Options options = optionsAt(places[seed % places.size()], seed);
        options.longestRemark = 20000;
        options.lines = 3000; // about 30 MB
        const std::string path = folder.write("a.data", RandomDataFile(options).text());
        records += expectReadAgainAsLoaded(path);
        ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed;
    }
    EXPECT_GT(records, rounds * 1000);
}

TEST(ReadingAgain, BetweenTwoTimesGivesTheRecordsBetweenThem) {
    const ScratchFolder folder;
    std::size_t found = 0;
    const std::size_t rounds = scaledDown(40);
    for (std::uint64_t seed = 1; seed <= rounds; ++seed) {
        RandomDataFile::Options options = optionsAt(places[1 + seed % 2 * 2], seed);
        options.isPlain = true;
        options.longestRemark = seed % 8 == 0 ? 20000 : 12;
        const std::string path = folder.write("a.data", RandomDataFile(options).text());
        const WatchedLoading watched(path);
        const DataSet source = loadSource(path);
        RandomNumbers random(seed);
        auto fragment = source.fragments().begin();
        for (const auto &block : watched.blocks()) {
            for (int query = 0; query < 10; ++query) {
                const double start = static_cast<double>(options.start + random.between(-600, 11000));
                const double end = start + static_cast<double>(random.between(0, 4000)) * 0.7;
                std::vector<Record> expected;
                for (const Record &record : block->records) {
                    if (!record.values.empty() && timeOf(record) >= start && timeOf(record) <= end) {
                        expected.push_back(record);
                    }
                }
                ASSERT_TRUE(sameRecords(readAgain(**fragment, start, end), expected)) << "seed " << seed;
                found += expected.size();
            }
            ++fragment;
        }
    }
    EXPECT_GT(found, rounds * 200);
}

TEST(ReadingAgain, OfARepeatedHourGivesWhatLoadingGaveWithAndWithoutAZone) {
    // The instrument's clock shows 02:00 to 03:00 twice.
    const ScratchFolder folder;
    std::string records;
    Timezone berlin("Europe/Berlin");
    for (std::int64_t utc = 1572138000 - 5400; utc < 1572138000 + 5400; utc += 30) {
        std::tm local{};
        berlin.localTime(utc, &local);
        std::array<char, 64> text{};
        const auto length = std::strftime(text.data(), text.size(), "DATA\t%Y-%m-%d\t%H:%M:%S\t1\n", &local);
        records.append(text.data(), length);
    }
    for (const std::string zone : {"", "Timezone:\tEurope/Berlin\n"}) {
        std::string text = zone + "DATAH\tDATE\tTIME\tA\n";
        const std::string path = folder.write("a.data", text.append(records));
        EXPECT_EQ(expectReadAgainAsLoaded(path), 360U) << zone;
    }
}

TEST(ReadingAgain, FromTheMiddleOfARepeatedHourGivesTheTimesThatTheWholeRangeGives) {
    // The times come from the local clock alone, which cannot tell the two passes of the hour apart.
    const ScratchFolder folder;
    for (const std::string zone : {"Europe/Berlin", "America/New_York"}) {
        const std::int64_t change = zone == "Europe/Berlin" ? 1572138000 : 1572760800; // UTC
        std::string text = "Instrument:\tQ\nTimezone:\t" + zone + "\nDATAH\tDATE\tTIME\tA\n";
        Timezone clock(zone);
        for (std::int64_t utc = change - 5400; utc < change + 5400; utc += 10) {
            std::tm local{};
            clock.localTime(utc, &local);
            std::array<char, 64> line{};
            text.append(line.data(),
                        std::strftime(line.data(), line.size(), "DATA\t%Y-%m-%d\t%H:%M:%S\t1\n", &local));
        }
        const DataSet source = loadSource(folder.write("a.data", text));
        const auto whole = pointsOf(source, "Q:DATA:A", "", wholeRangeStart, wholeRangeEnd - 1);
        const DataFragment &fragment = source.fragments().front();
        for (std::int64_t from = change - 5400; from < change + 5400; from += 590) {
            const auto start = static_cast<double>(from);
            const double end = start + 590;
            // What the block's records give when they are read in order and those before the window passed
            // over.
            std::vector<double> expected;
            bool begun = false;
            for (DataFragment::_ContextType reader(fragment, wholeRangeStart, wholeRangeEnd);
                 !reader.isExhausted(); reader.advance()) {
                const double time = timeOf(reader.record());
                begun = begun || time >= start;
                if (begun && time > end) {
                    break;
                }
                if (begun) {
                    expected.push_back(time);
                }
            }
            EXPECT_EQ(pointsOf(source, "Q:DATA:A", "", start, end).times, expected)
                << zone << ' ' << from - change;
        }
        EXPECT_FALSE(whole.times.empty());
    }
}

// One wrong digit must not hide the good records behind it.
TEST(ReadingAgain, ARecordWithMoreNanosecondsThanASecondHasHidesNoOthers) {
    const ScratchFolder folder;
    const DataSet source = loadSource(
        folder.write("a.data", "Instrument:\tQ\nDATAH\tSECONDS\tNANOSECONDS\tA\nDATA\t1000\t0\t0\n"
                               "DATA\t1001\t4200000000\t1\nDATA\t1002\t0\t2\nDATA\t1003\t500000000\t3\n"));
    const DataFragment &fragment = source.fragments().front();
    ASSERT_EQ(fragment.recordCount(), 4U);
    EXPECT_EQ(fragment.latestTime(), 1005.2);
    EXPECT_EQ(fragment.maximumRecord().seconds, 1003U);
    EXPECT_EQ(readAgain(fragment).size(), 4U);
    EXPECT_EQ(pointsOf(source, "Q:DATA:A", "", wholeRangeStart, wholeRangeEnd).values,
              (std::vector<double>{0, 1, 2, 3}));
}

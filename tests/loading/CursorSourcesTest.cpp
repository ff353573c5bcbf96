// A cursor over many blocks keeps its sources open, and gives what opening them anew for each block gives.

#include "data/RandomDataFile.h"
#include "data/RecordCursor.h"
#include "loading/FileLoading.h"
#include "loading/support/DataText.h"
#include "loading/support/OpeningsWatch.h"
#include "loading/support/TempFolder.h"
#include "loading/support/ZipWriting.h"
#include "support/CapturedStandardError.h"
#include "support/FaultyReads.h"
#include "support/LoadedSource.h"
#include "support/RecordComparison.h"
#include "support/SanitizerBuild.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t start = 1'600'000'000;

void loadInto(DataSet &merged, const QString &path) {
    DataSet source(path.toStdString());
    loadFile(path, source, std::atomic<bool>(false), [](int, qint64) {});
    merged.merge(source);
}

DataSet load(const QString &path) {
    DataSet merged;
    loadInto(merged, path);
    return merged;
}

// What a reading gave: the records, the lines on standard error, and the wrong checksums that it met.
struct Reading {
    std::vector<Record> records;
    std::vector<std::string> lines;
    std::uint32_t checksumFailures = 0;
};

struct Wanted {
    std::string instrument;
    std::string tag;
    double from = wholeRangeStart;
    double to = wholeRangeEnd;
};

Reading byCursor(const DataSet &data, const Wanted &wanted) {
    Reading reading;
    const std::uint32_t failuresBefore = data.checksumFailures();
    const CapturedStandardError errors;
    reading.records = readAgain(data, wanted.instrument, wanted.tag, wanted.from, wanted.to);
    std::istringstream text(errors.text());
    for (std::string line; std::getline(text, line);) {
        reading.lines.push_back(line);
    }
    reading.checksumFailures = data.checksumFailures() - failuresBefore;
    return reading;
}

// The same with every block opened anew, and the first line of each file only.
Reading blockByBlock(const DataSet &data, const Wanted &wanted) {
    Reading reading;
    std::set<std::string> filesTold;
    const std::uint32_t failuresBefore = data.checksumFailures();
    for (const auto &fragment : data.fragmentsOf(wanted.instrument, wanted.tag)) {
        const CapturedStandardError errors;
        for (const Record &record : readAgain(*fragment, wanted.from, wanted.to)) {
            reading.records.push_back(record);
        }
        const std::string text = errors.text();
        if (!text.empty() && filesTold.insert(fragment->header().fileName).second) {
            reading.lines.push_back(text.substr(0, text.find('\n')));
        }
    }
    reading.checksumFailures = data.checksumFailures() - failuresBefore;
    return reading;
}

testing::AssertionResult sameReadings(const DataSet &data, const Wanted &wanted, std::size_t *found) {
    const Reading actual = byCursor(data, wanted);
    const Reading expected = blockByBlock(data, wanted);
    *found += expected.records.size();
    if (actual.lines != expected.lines) {
        return testing::AssertionFailure() << "said " << testing::PrintToString(actual.lines)
                                           << "\ninstead of " << testing::PrintToString(expected.lines);
    }
    if (actual.checksumFailures != expected.checksumFailures) {
        return testing::AssertionFailure()
               << actual.checksumFailures << " wrong checksums instead of " << expected.checksumFailures;
    }
    return sameRecords(actual.records, expected.records);
}

RandomDataFile::Options optionsFor(std::uint64_t seed, RandomNumbers &random) {
    RandomDataFile::Options options;
    options.seed = seed;
    options.timezone = seed % 2 == 0 ? "UTC" : "Europe/Berlin";
    options.wallZone = options.timezone;
    options.start = 1572138000 - 5000;
    options.lines = 300;
    options.isPlain = random.oneIn(3);
    return options;
}

// Of every instrument and tag, over the whole range and between random times.
testing::AssertionResult sameForAll(const DataSet &data, RandomNumbers &random, std::size_t *found) {
    for (const std::string &instrument : data.instruments()) {
        for (const std::string &tag : data.tagsOfInstrument(instrument)) {
            const double from = static_cast<double>(1572138000 + random.between(-6000, 5000));
            const double to = from + static_cast<double>(random.between(0, 5000));
            for (const Wanted &wanted : {Wanted{instrument, tag}, Wanted{instrument, tag, from, to}}) {
                const testing::AssertionResult result = sameReadings(data, wanted, found);
                if (!result) {
                    return result;
                }
            }
        }
    }
    return testing::AssertionSuccess();
}

// Blocks of two records each of the tag DATA, one of DATASTAT beside each, `step` seconds from one to the
// next and `offset` from the start.
std::string manyBlocks(int blocks, std::int64_t step, std::int64_t offset = 0) {
    std::string text = keyLines("Q") + "DATASTATH\tSECONDS\tA\n";
    for (int i = 0; i < blocks; ++i) {
        const std::int64_t second = std::int64_t{start} + offset + i * step;
        text += headerLine() + recordLines(static_cast<std::uint32_t>(second), 2) + "DATASTAT\t" +
                std::to_string(second) + "\t1\n";
    }
    return text;
}

// Lets `check` add to `found` in each of at most `most` rounds, whose numbers begin at 1 and whose random
// numbers they decide. Each must find more than `each` records on the average, so that it was a check at all.
void checkInRounds(
    std::size_t most, std::size_t each,
    const std::function<void(std::uint64_t seed, RandomNumbers &random, std::size_t *found)> &check) {
    std::size_t found = 0;
    const std::size_t rounds = scaledDown(most);
    for (std::uint64_t seed = 1; seed <= rounds; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomNumbers random(seed);
        check(seed, random, &found);
        if (testing::Test::HasFatalFailure()) {
            return;
        }
    }
    EXPECT_GT(found, rounds * each);
}

} // namespace

TEST(CursorSources, GiveWhatEveryBlockAloneGives) {
    const TempFolder folder;
    checkInRounds(40, 100, [&folder](std::uint64_t seed, RandomNumbers &random, std::size_t *found) {
        DataSet merged;
        const std::size_t files = 1 + random.below(7); // more than stay open
        for (std::size_t i = 0; i < files; ++i) {
            const std::string text = RandomDataFile(optionsFor(seed * 10 + i, random)).text();
            const QString name = QString::number(i);
            if (random.oneIn(2)) {
                const QString path = folder.path(name + ".zip");
                writeZip(path, cutIntoMembers(text, 1 + random.below(6)));
                loadInto(merged, path);
            } else {
                loadInto(merged, folder.write(name + ".data", text));
            }
        }
        ASSERT_TRUE(sameForAll(merged, random, found));
    });
}

TEST(CursorSources, GiveWhatEveryBlockAloneGivesBehindRefills) {
    const TempFolder folder;
    checkInRounds(4, 500, [&folder](std::uint64_t seed, RandomNumbers &random, std::size_t *found) {
        RandomDataFile::Options options = optionsFor(seed, random);
        options.longestRemark = 20000;
        options.lines = 3000; // about 30 MB
        const std::string text = RandomDataFile(options).text();
        const QString archive = folder.path("a.zip");
        writeZip(archive, cutIntoMembers(text, 2));
        ASSERT_TRUE(sameForAll(load(archive), random, found));
        ASSERT_TRUE(sameForAll(load(folder.write("a.data", text)), random, found));
    });
}

TEST(CursorSources, GiveWhatEveryBlockAloneGivesOfAFileThatFailsOrWasCutAndSayTheSame) {
    const TempFolder folder;
    std::size_t failures = 0;
    std::size_t rounds = 0;
    checkInRounds(40, 100, [&](std::uint64_t seed, RandomNumbers &random, std::size_t *found) {
        ++rounds;
        const std::string text = RandomDataFile(optionsFor(seed, random)).text();
        for (const bool isArchive : {false, true}) {
            const QString path = folder.path(isArchive ? "a.zip" : "a.data");
            if (isArchive) {
                writeZip(path, cutIntoMembers(text, 3));
            } else {
                folder.write("a.data", text);
            }
            const auto size = static_cast<std::size_t>(QFileInfo(path).size());
            const std::size_t at = random.below(size);
            DataSet merged = load(path);
            {
                const FaultyReads faults(path.toStdString(), {.failsAt = at});
                ASSERT_TRUE(sameForAll(merged, random, found)) << "failure at " << at;
                // What failed while it was loaded is known.
                merged = load(path);
                ASSERT_TRUE(sameForAll(merged, random, found)) << "failure at " << at;
                failures += faults.failures();
            }
            merged = load(path);
            ASSERT_TRUE(QFile::resize(path, static_cast<qint64>(at)));
            ASSERT_TRUE(sameForAll(merged, random, found)) << "cut at " << at;
        }
    });
    EXPECT_GT(failures, rounds);
}

TEST(CursorSources, AreOpenedOnceForAllBlocksInWhateverOrderTheyCome) {
    const TempFolder folder;
    constexpr int blocks = 2000;
    for (const std::int64_t step : {10, -10}) {
        const std::string text = manyBlocks(blocks, step);
        const QString archive = folder.path("a.ghg");
        writeZip(archive, {{"a.data", text}});
        for (const QString &path : {archive, folder.write("a.data", text)}) {
            const DataSet merged = load(path);
            ASSERT_EQ(merged.fragmentsOf("Q", "DATA").size(), std::size_t{blocks});
            const OpeningsWatch openings(folder.path("").toStdString());
            EXPECT_EQ(readAgain(merged, "Q", "DATA").size(), 2 * std::size_t{blocks});
            // From the last block on it goes back once, to read what lies before.
            EXPECT_LE(openings.count(), step > 0 || path == archive ? 1U : 2U) << path.toStdString();
        }
    }
}

TEST(CursorSources, WhoseBlocksTakeTurnsAreOpenedOnce) {
    const TempFolder folder;
    for (const bool isArchive : {false, true}) {
        DataSet merged;
        for (std::int64_t file = 0; file < 4; ++file) {
            const std::string text = manyBlocks(100, 40, file * 10);
            const QString name = QString::number(file);
            const QString path = folder.path(name + ".ghg");
            if (isArchive) {
                writeZip(path, {{name + ".data", text}});
            }
            loadInto(merged, isArchive ? path : folder.write(name + ".data", text));
        }
        std::vector<std::string> files;
        for (const auto &fragment : merged.fragmentsOf("Q", "DATA")) {
            files.push_back(fragment->header().fileName);
        }
        ASSERT_EQ(files.size(), 400U);
        EXPECT_EQ(std::adjacent_find(files.begin(), files.end()), files.end()) << "two of one file in turn";
        const OpeningsWatch openings(folder.path("").toStdString());
        EXPECT_EQ(readAgain(merged, "Q", "DATA").size(), 800U);
        EXPECT_EQ(openings.count(), 4U);
    }
}

TEST(CursorSources, OfAnArchiveOfManyMembersAreOpenedOnce) {
    const TempFolder folder;
    std::vector<ZipEntry> members;
    for (std::uint32_t i = 0; i < 50; ++i) {
        members.push_back({QString::number(99 - i) + ".data", dataText("Q", start + i * 100, 5)});
    }
    const QString path = folder.path("a.ghg");
    writeZip(path, members);
    const DataSet merged = load(path);
    const OpeningsWatch openings(folder.path("").toStdString());
    EXPECT_EQ(readAgain(merged, "Q", "DATA").size(), 250U);
    EXPECT_EQ(openings.count(), 1U);
}

TEST(CursorSources, ThatAreReplacedBetweenTwoBlocksAreOpenedAnewAndSaySo) {
    const TempFolder folder;
    const std::string text = manyBlocks(10, 10);
    const QString path = folder.write("a.data", text);
    const DataSet merged = load(path);
    const CapturedStandardError errors;
    DataSet::_ContextType cursor(merged, "Q", "DATA", wholeRangeStart, wholeRangeEnd);
    for (int i = 0; i < 5; ++i) {
        cursor.advance();
    }
    ASSERT_TRUE(QFile::remove(path));
    folder.write("a.data", std::string(text.size() + 1, '\n'));
    EXPECT_EQ(drain(cursor).size(), 1U); // the second one of a block that is being read
    EXPECT_EQ(errors.text(), path.toStdString() + ": The file has changed since it was loaded, from " +
                                 std::to_string(text.size()) + " to " + std::to_string(text.size() + 1) +
                                 " bytes: records that are read again may be wrong or missing\n");
}

// From which files, and how often, the points of a plot window are read.

#include "data/PlainSeries.h"
#include "data/RandomDataFile.h"
#include "loading/FileLoading.h"
#include "loading/support/DataText.h"
#include "loading/support/OpeningsWatch.h"
#include "loading/support/TempFolder.h"
#include "loading/support/ZipWriting.h"
#include "support/CapturedStandardError.h"
#include "support/SanitizerBuild.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <atomic>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t start = 1'600'000'000;

DataSet load(const QString &path) {
    DataSet source(path.toStdString());
    loadFile(path, source, std::atomic<bool>(false), [](int, qint64) {});
    DataSet merged;
    merged.merge(source);
    return merged;
}

// Bytes that this process has read so far, from whatever file.
std::uint64_t bytesRead() {
    std::ifstream counts("/proc/self/io");
    std::string name;
    std::uint64_t bytes = 0;
    counts >> name >> bytes;
    return name == "rchar:" ? bytes : 0;
}

} // namespace

TEST(SeriesSources, ArchivesWhoseBlocksRunOnOverMembersGiveWhatEachKeyAloneGives) {
    struct Clock {
        const char *timezone;
        const char *wallZone;
    };
    constexpr std::array clocks{Clock{"UTC", "UTC"}, Clock{"Europe/Berlin", "Europe/Berlin"},
                                Clock{"", "Europe/Berlin"}};
    const TempFolder folder;
    std::size_t found = 0;
    const std::size_t rounds = scaledDown(40);
    for (std::uint64_t seed = 1; seed <= rounds; ++seed) {
        RandomNumbers random(seed);
        RandomDataFile::Options options;
        options.seed = seed;
        options.timezone = clocks.at(seed % clocks.size()).timezone;
        options.wallZone = clocks.at(seed % clocks.size()).wallZone;
        options.start = 1572138000 - 5000;
        options.lines = 300;
        options.isPlain = random.oneIn(3);
        const QString path = folder.path(QString::number(seed) + ".zip");
        writeZip(path, cutIntoMembers(RandomDataFile(options).text(), 1 + random.below(6)));
        const DataSet merged = load(path);
        for (int query = 0; query < 8; ++query) {
            const double from = static_cast<double>(options.start + random.between(-600, 5000));
            const double length = static_cast<double>(random.between(0, 5000));
            ASSERT_TRUE(sameAsPlain(merged, randomRequests(merged, random), from, from + length, &found))
                << "seed " << seed;
        }
        ASSERT_TRUE(
            sameAsPlain(merged, randomRequests(merged, random), wholeRangeStart, wholeRangeEnd, &found))
            << "seed " << seed;
    }
    EXPECT_GT(found, rounds * 500);
}

TEST(SeriesSources, AnArchiveIsOpenedOnceForAllItsMembersAndBlocks) {
    const TempFolder folder;
    std::vector<ZipEntry> members;
    for (std::uint32_t i = 0; i < 20; ++i) {
        members.push_back({QString::number(99 - i) + ".data", dataText("Q", start + i * 100, 50)});
    }
    const QString path = folder.path("a.ghg");
    writeZip(path, members);
    const DataSet merged = load(path);
    ASSERT_EQ(merged.fragments().size(), 20U);
    const OpeningsWatch openings(folder.path("").toStdString());
    const auto points = merged.seriesOf({{"Q:DATA:CH4", ""}, {"Q:DATA:CH4", "max"}}, start, start + 5000);
    EXPECT_EQ(points[0].times->size(), 1000U);
    EXPECT_TRUE(std::is_sorted(points[0].times->begin(), points[0].times->end()));
    EXPECT_EQ(openings.count(), 1U);
}

TEST(SeriesSources, VeryManyBlocksInOneMemberAreReadInOneGo) {
    const TempFolder folder;
    constexpr std::uint32_t blocks = 2000;
    std::string text = keyLines("Q");
    for (std::uint32_t i = 0; i < blocks; ++i) {
        text += headerLine() + recordLines(start + i, 1);
    }
    for (const QString &name : {QStringLiteral("a.ghg"), QStringLiteral("a.data")}) {
        const QString path = folder.path(name);
        if (name.endsWith("ghg")) {
            writeZip(path, {{"a.data", text}});
        } else {
            folder.write(name, text);
        }
        const DataSet merged = load(path);
        ASSERT_EQ(merged.fragments().size(), blocks);
        const OpeningsWatch openings(folder.path("").toStdString());
        const auto points = merged.seriesOf({{"Q:DATA:CH4", ""}}, start, start + 5000);
        EXPECT_EQ(points[0].times->size(), blocks);
        EXPECT_EQ(points[0].times->back(), start + blocks - 1.0);
        EXPECT_EQ(openings.count(), 1U) << name.toStdString();
        EXPECT_EQ(merged.seriesOf({{"Q:DATA:CH4", ""}}, start + 700.0, start + 709.0)[0].times->size(), 10U);
        EXPECT_EQ(openings.count(), 1U) << name.toStdString();
    }
}

TEST(SeriesSources, AllCurvesOfAWindowReadNoMoreBytesThanOne) {
    if (bytesRead() == 0) {
        GTEST_SKIP() << "this system does not count the bytes read";
    }
    const TempFolder folder;
    std::string text = keyLines("Q") + "DATAH\tSECONDS\tA\tB\tC\tREMARK\nDATASTATH\tSECONDS\tA\n";
    for (std::uint32_t second = start; second < start + 5000; ++second) {
        text += "DATA\t" + std::to_string(second) + "\t1\t2\t3\t" + std::string(6000, 'x') + '\n';
        text += "DATASTAT\t" + std::to_string(second) + "\t1\n";
    }
    const DataSet merged = load(folder.write("a.data", text));
    const auto bytesFor = [&](const std::vector<SeriesRequest> &requests) {
        const std::uint64_t before = bytesRead();
        const auto points = merged.seriesOf(requests, start + 1000.0, start + 4000.0);
        EXPECT_EQ(points.back().times->size(), 3001U);
        return bytesRead() - before;
    };
    // Reading the count reads, too.
    constexpr std::uint64_t allowance = 4096;
    const std::uint64_t ofOne = bytesFor({{"Q:DATA:A", ""}});
    EXPECT_GT(ofOne, std::uint64_t{18} << 20U);
    EXPECT_LT(ofOne, text.size() + allowance);
    std::vector<SeriesRequest> all;
    for (const char *const key : {"Q:DATA:A", "Q:DATA:B", "Q:DATA:C", "Q:DATASTAT:A"}) {
        for (const char *const selector : {"", "max", "min"}) {
            all.push_back({key, selector});
        }
    }
    EXPECT_LT(bytesFor(all), ofOne + allowance);
}

TEST(SeriesSources, MembersThatSeveralBlocksRunOverAreReadOnceEach) {
    if (bytesRead() == 0) {
        GTEST_SKIP() << "this system does not count the bytes read";
    }
    // By their names the members would come the other way round.
    const TempFolder folder;
    const std::string status = "DATASTATH\tSECONDS\tA\n";
    std::string filler;
    for (int line = 0; line < 30000; ++line) {
        filler += std::string(99, 'x') + '\n';
    }
    std::vector<ZipEntry> members;
    std::uint64_t size = 0;
    for (const std::uint32_t i : {0U, 1U, 2U, 3U}) {
        std::string text = i == 0 ? keyLines("Q") + headerLine() : i == 2 ? status : std::string();
        text +=
            recordLines(start + i * 1000, 1000) + "DATASTAT\t" + std::to_string(start + i) + "\t1\n" + filler;
        size += text.size();
        members.push_back({QString::number(9 - i), text, ZipEntry::Method::stored});
    }
    const QString path = folder.path("a.zip");
    writeZip(path, members);
    const DataSet merged = load(path);
    const std::uint64_t before = bytesRead();
    const auto points = merged.seriesOf({{"Q:DATASTAT:A", ""}, {"Q:DATA:CH4", ""}}, start, start + 5000);
    const std::uint64_t read = bytesRead() - before;
    EXPECT_EQ(points[0].times->size(), 2U);
    EXPECT_EQ(points[1].times->size(), 4000U);
    EXPECT_GT(read, size);
    EXPECT_LT(read, size + filler.size() / 2);
}

TEST(SeriesSources, AStretchThatNoBlockNeedsIsNotRead) {
    if (bytesRead() == 0) {
        GTEST_SKIP() << "this system does not count the bytes read";
    }
    // The clock was set back behind the long middle block.
    const TempFolder folder;
    std::string text = keyLines("Q") + headerLine() + recordLines(start, 10) + headerLine();
    constexpr int middle = 3'000'000;
    text += recordLines(start + 100000, middle) + headerLine() + recordLines(start + 20, 10);
    const DataSet merged = load(folder.write("a.data", text));
    ASSERT_GT(text.size(), std::size_t{64} << 20U);
    const std::uint64_t before = bytesRead();
    const auto points = merged.seriesOf({{"Q:DATA:CH4", ""}}, start, start + 5000);
    EXPECT_LT(bytesRead() - before, std::uint64_t{20} << 20U);
    EXPECT_EQ(points[0].times->size(), 20U);
}

TEST(SeriesSources, FilesThatShareNoTimeWithTheWindowAreNotOpened) {
    const TempFolder folder;
    DataSet merged;
    for (std::uint32_t i = 0; i < 200; ++i) {
        const QString path =
            folder.write(QString::number(i) + ".data", dataText("Q", start + i * 1800, 1700));
        DataSet source(path.toStdString());
        loadFile(path, source, std::atomic<bool>(false), [](int, qint64) {});
        merged.merge(source);
    }
    const OpeningsWatch openings(folder.path("").toStdString());
    struct Row {
        double from;
        double to;
        std::size_t files;
    };
    for (const Row &row : {Row{0, 1699, 1}, Row{1699.5, 1799.5, 0}, Row{1699, 1800, 2}, Row{9000, 14000, 3},
                           Row{-5000, -1, 0}, Row{360000, 365000, 0}, Row{100, 200, 1}}) {
        merged.seriesOf({{"Q:DATA:CH4", ""}, {"Q:DATA:CH4", "min"}, {"Q:DATA:none", ""}}, start + row.from,
                        start + row.to);
        EXPECT_EQ(openings.count(), row.files) << row.from;
    }
    merged.seriesOf({{"Q:DATA:CH4", ""}}, wholeRangeStart, wholeRangeEnd);
    EXPECT_EQ(openings.count(), 0U) << "averages are in memory";
}

TEST(SeriesSources, AnArchiveThatIsGoneOrLostAMemberGivesOneLineOnStandardError) {
    const TempFolder folder;
    const QString path = folder.path("a.zip");
    const std::vector<ZipEntry> members{{"a", dataText("Q", start, 10)},
                                        {"b", dataText("Q", start + 100, 10)},
                                        {"c", dataText("Q", start + 200, 10)}};
    writeZip(path, members);
    const DataSet merged = load(path);
    const auto read = [&] {
        return merged.seriesOf({{"Q:DATA:CH4", ""}, {"Q:DATA:CH4", "max"}}, start, start + 5000)[0]
            .times->size();
    };
    ASSERT_EQ(read(), 30U);
    const auto expectOneLine = [&](std::size_t records) {
        const CapturedStandardError errors;
        EXPECT_EQ(read(), records);
        const std::string text = errors.text();
        EXPECT_TRUE(text.starts_with(path.toStdString() + ": ")) << text;
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << text;
    };
    writeZip(path, {members[0], members[2]});
    expectOneLine(20);
    folder.write("a.zip", "this is no archive");
    expectOneLine(0);
    ASSERT_TRUE(QFile::remove(path));
    expectOneLine(0);
    folder.makePipe("a.zip");
    expectOneLine(0);
}

// What a load tells while it goes on, and how it is cancelled.

#include "loading/support/DataText.h"
#include "loading/support/ReferenceLines.h"
#include "loading/support/TempFolder.h"
#include "loading/support/WatchedLoad.h"
#include "loading/support/ZipWriting.h"

#include <QFileInfo>

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t start = 1'600'000'000;

// The percentages of a source of these members, worked out from all their lines.
Percents expectedPercents(const std::vector<std::string> &members) {
    std::uint64_t total = 0;
    for (const std::string &member : members) {
        total += member.size();
    }
    Percents percents{0};
    std::uint64_t before = 0;
    std::size_t lines = 0;
    for (const std::string &member : members) {
        // Lines are counted through the file: an archive of small members shows progress too.
        for (const auto &line : referenceReading(member).lines) {
            if (++lines % 1000 != 0) {
                continue;
            }
            const auto percent = static_cast<int>((before + line.reportedOffset) * 100 / total);
            if (percent > percents.back()) {
                percents.push_back(percent);
            }
        }
        before += member.size();
    }
    percents.push_back(100);
    return percents;
}

class LoadingProgress : public testing::Test {
protected:
    TempFolder folder;
};

} // namespace

TEST_F(LoadingProgress, AFileWithFewerThan1000LinesEmitsExactlyTheProgressValues0And100) {
    const std::string header = keyLines("QA330") + headerLine(); // 3 lines
    for (const int records : {0, 1, 500, 996}) {
        const WatchedLoad loaded = watchedLoad(folder.write("a.data", header + recordLines(start, records)));
        EXPECT_EQ(loaded.percents, (Percents{0, 100})) << records;
    }
    const WatchedLoad loaded = watchedLoad(folder.write("a.data", header + recordLines(start, 997)));
    EXPECT_EQ(loaded.percents, (Percents{0, 99, 100})) << "the thousandth line tells how far it is";
}

TEST_F(LoadingProgress, AnEmptyFileEmitsTheProgressValues0And100) {
    EXPECT_EQ(watchedLoad(folder.write("a.data", "")).percents, (Percents{0, 100}));
}

TEST_F(LoadingProgress, ProgressIsThePercentageAtEvery1000thLineWhenItGrew) {
    for (const int records : {1000, 5000, 30'000, 250'000}) {
        const std::string text = dataText("QA330", start, records);
        const WatchedLoad loaded = watchedLoad(folder.write("a.data", text));
        EXPECT_EQ(loaded.percents, expectedPercents({text})) << records;
    }
}

TEST_F(LoadingProgress, ProgressOfAFileOfSeveralPiecesGoesByTheReportedOffsets) {
    std::string text = dataText("QA330", start, 10);
    const auto growTo = [&text](std::size_t size) {
        while (text.size() < size) {
            text.append(700 + text.size() % 100, 'x').push_back('\n');
        }
    };
    // What is carried over the first read's end is worth several per cent.
    growTo(7'400'000);
    text.append(1'000'000, 'x').push_back('\n');
    growTo(15'000'000);
    const WatchedLoad loaded = watchedLoad(folder.write("a.data", text));
    EXPECT_EQ(loaded.percents, expectedPercents({text}));
    EXPECT_EQ(loaded.recordCounts(), Counts{10});
}

TEST_F(LoadingProgress, ProgressOfAnArchiveIsInUncompressedBytesOverAllMembers) {
    const std::string first = dataText("QA330", start, 20'000);
    const std::string second = recordLines(start + 20'000, 55'555);
    const std::string third = recordLines(start + 100'000, 900);
    const QString path = folder.path("a.ghg");
    writeZip(path, {{"1.data", first},
                    {"x.metadata", std::string(5'000'000, 'm')},
                    {"2.data", second},
                    {"3.data", third, ZipEntry::Method::stored}});
    const WatchedLoad loaded = watchedLoad(path);
    EXPECT_EQ(loaded.percents, expectedPercents({first, second, third}));
    EXPECT_GT(loaded.percents.size(), 50U);
}

TEST_F(LoadingProgress, TheSizeToldWithProgressIsTheSizeOnDisk) {
    const QString path = folder.path("a.ghg");
    writeZip(path, {{"1.data", dataText("QA330", start, 5000)}});
    const WatchedLoad loaded = watchedLoad(path);
    ASSERT_GT(loaded.sizes.size(), 3U);
    EXPECT_EQ(loaded.sizes, std::vector<qint64>(loaded.sizes.size(), QFileInfo(path).size()));
}

TEST_F(LoadingProgress, CancellingBeforeTheStartReadsNothing) {
    const QString path = folder.write("a.data", dataText("QA330", start, 5000));
    const WatchedLoad loaded = watchedLoad(
        path, [](int, std::atomic<bool> &) {}, true);
    EXPECT_EQ(loaded.percents, Percents{0});
    EXPECT_TRUE(loaded.data.fragments().empty());
    EXPECT_TRUE(loaded.report.problem.isEmpty());
    EXPECT_TRUE(loaded.report.remark.isEmpty());
}

TEST_F(LoadingProgress, CancellingInTheMiddleStopsBehindTheCurrentLine) {
    const QString path = folder.write("a.data", dataText("QA330", start, 50'000));
    const WatchedLoad loaded =
        watchedLoad(path, [](int percent, std::atomic<bool> &cancelled) { cancelled = percent > 0; });
    // The thousandth line is the last that is read.
    EXPECT_EQ(loaded.recordCounts(), Counts{997});
    EXPECT_EQ(loaded.percents.front(), 0);
    EXPECT_LT(loaded.percents[1], 5);
    EXPECT_LE(loaded.percents.size(), 3U);
}

TEST_F(LoadingProgress, CancellingInOneMemberLeavesTheNextUnopened) {
    const std::string first = dataText("QA330", start, 2000);
    const std::string second = dataText("QA340", start, 2000);
    std::string bytes =
        rawZip({{"1.data", first, first.size(), crcOf(first)}, {"2.data", second, second.size(), 0}});
    bytes[bytes.rfind("PK\3\4") + 8] = bytes[bytes.rfind("PK\1\2") + 10] = 14; // would be a problem
    const WatchedLoad loaded =
        watchedLoad(folder.write("a.ghg", bytes),
                    [](int percent, std::atomic<bool> &cancelled) { cancelled = percent > 0; });
    EXPECT_EQ(loaded.recordCounts(), Counts{997});
    EXPECT_TRUE(loaded.report.problem.isEmpty()) << qPrintable(loaded.report.problem);
}

TEST_F(LoadingProgress, ACancelledLoadHasNoProblemWithWhatItDidNotRead) {
    std::string text;
    while (text.size() < 100'000) {
        text += "no data line\n";
    }
    const WatchedLoad loaded =
        watchedLoad(folder.write("a.data", text),
                    [](int percent, std::atomic<bool> &cancelled) { cancelled = percent > 0; });
    EXPECT_TRUE(loaded.report.problem.isEmpty()) << qPrintable(loaded.report.problem);
    EXPECT_TRUE(loaded.report.remark.isEmpty());
}

TEST_F(LoadingProgress, SizesThatNoFileCanHaveDoNotDisturbTheProgress) {
    const std::string text = dataText("QA330", start, 5000);
    for (const std::uint64_t size :
         {std::uint64_t{5'000'000'000}, std::uint64_t{1} << 60U, (std::uint64_t{1} << 63U) - 1,
          std::numeric_limits<std::uint64_t>::max()}) {
        const WatchedLoad loaded = watchedLoad(
            folder.write("a.ghg", rawZip({{"1.data", text, size, 0}, {"2.data", text, size, 0}})));
        EXPECT_FALSE(loaded.report.problem.isEmpty()) << size;
        EXPECT_EQ(loaded.percents.front(), 0) << size;
        EXPECT_EQ(loaded.percents.back(), 100) << size;
        EXPECT_TRUE(std::is_sorted(loaded.percents.begin(), loaded.percents.end())) << size;
    }
}

TEST_F(LoadingProgress, ProgressStaysAt100WhenAnArchiveHoldsMoreThanItSays) {
    // The first of two members of one name is read twice.
    const std::string large = dataText("QA330", start, 5000);
    const WatchedLoad loaded =
        watchedLoad(folder.write("a.ghg", rawZip({{"a.data", large, large.size(), crcOf(large)},
                                                  {"a.data", "x\n", 2, crcOf("x\n")}})));
    EXPECT_LE(*std::max_element(loaded.percents.begin(), loaded.percents.end()), 100);
    EXPECT_TRUE(std::is_sorted(loaded.percents.begin(), loaded.percents.end()));
}

// Loading the members of an archive, and reading their records again.

#include "loading/support/DataText.h"
#include "loading/support/TempFolder.h"
#include "loading/support/WatchedLoad.h"
#include "loading/support/ZipWriting.h"
#include "support/LoadedSource.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr std::uint32_t start = 1'600'000'000;

class LoadingArchives : public testing::Test {
protected:
    TempFolder folder;
};

} // namespace

TEST_F(LoadingArchives, TheParsersStateRunsOnFromMemberToMember) {
    const QString path = folder.path("a.ghg");
    writeZip(path, {{"1.data", keyLines("QA330", "Europe/London") + "Serial Number:\tS1\n"},
                    {"2.data", headerLine() + recordLines(start, 3)},
                    {"3.data", recordLines(start + 3, 4)},
                    {"4.data", "Instrument:\tQA340\n" + headerLine() + recordLines(start, 5)}});
    const WatchedLoad loaded = watchedLoad(path);
    ASSERT_EQ(loaded.recordCounts(), (Counts{3 + 4, 5}));
    const DataFragment &first = **loaded.data.fragments().begin();
    EXPECT_EQ(first.header().instrument, "QA330");
    EXPECT_EQ(first.header().serialNumber, "S1");
    EXPECT_EQ(first.timezone().name(), "Europe/London");
    EXPECT_EQ(first.header().subFileName, "2.data");
    const DataFragment &second = **std::next(loaded.data.fragments().begin());
    EXPECT_EQ(second.header().instrument, "QA340");
    EXPECT_EQ(second.header().serialNumber, "S1");
    EXPECT_EQ(second.header().subFileName, "4.data");
}

TEST_F(LoadingArchives, OffsetsCountFromTheBeginOfTheMember) {
    const QString path = folder.path("a.ghg");
    const std::string second = keyLines("QA340") + headerLine();
    writeZip(path, {{"1.data", dataText("QA330", start, 3)}, {"2.data", second + recordLines(start, 3)}});
    const WatchedLoad loaded = watchedLoad(path);
    ASSERT_EQ(loaded.recordCounts(), (Counts{3, 3}));
    EXPECT_EQ((*std::next(loaded.data.fragments().begin()))->firstOffset(), second.size());
}

TEST_F(LoadingArchives, AnArchiveNameWhoseExtensionIsInCapitalsIsReadAsAnArchive) {
    for (const char *name : {"a.GHG", "a.Zip"}) {
        writeZip(folder.path(name), {{"1.data", dataText("QA330", start, 3)}});
        const WatchedLoad loaded = watchedLoad(folder.path(name));
        EXPECT_EQ(loaded.recordCounts(), Counts{3}) << name;
        EXPECT_TRUE(loaded.report.problem.isEmpty()) << name;
    }
}

TEST_F(LoadingArchives, MetadataMembersAreNeverRead) {
    const QString path = folder.path("a.ghg");
    writeZip(path, {{"a.metadata", dataText("QA310", start, 3)}, {"a.data", dataText("QA330", start, 3)}});
    EXPECT_EQ(watchedLoad(path).data.instruments(), std::set<std::string>{"QA330"});
}

TEST_F(LoadingArchives, MemberNamesAreKeptAsUtf8) {
    const QString path = folder.path("a.ghg");
    const std::string name = "S\xc3\xbc"
                             "d/\xe6\xb8\xac.data";
    writeZip(path, {{QString::fromStdString(name), dataText("QA330", start, 3)}});
    const WatchedLoad loaded = watchedLoad(path);
    ASSERT_EQ(loaded.recordCounts(), Counts{3});
    EXPECT_EQ((*loaded.data.fragments().begin())->header().subFileName, name);
}

TEST_F(LoadingArchives, AnArchiveThatCannotBeOpenedIsAProblem) {
    const std::vector<std::pair<std::string, QString>> rows{
        {std::string(), "The file is empty"},
        {dataText("QA330", start, 3), "This is no archive, or it is empty or cut off"},
    };
    for (const auto &[bytes, problem] : rows) {
        const WatchedLoad loaded = watchedLoad(folder.write("a.ghg", bytes));
        EXPECT_EQ(loaded.report.problem, problem);
        EXPECT_EQ(loaded.percents, (Percents{0, 100}));
        EXPECT_TRUE(loaded.data.fragments().empty());
    }
}

TEST_F(LoadingArchives, AMemberThatCannotBeOpenedIsAProblemAndTheOthersAreLoaded) {
    const std::string good = dataText("QA330", start, 3);
    const std::string bad = dataText("QA340", start, 3);
    std::string bytes =
        rawZip({{"bad.data", bad, bad.size(), crcOf(bad)}, {"good.data", good, good.size(), crcOf(good)}});
    bytes[bytes.find("PK\1\2") + 10] = bytes[8] = 14; // a compression method that nobody reads
    const WatchedLoad loaded = watchedLoad(folder.write("a.ghg", bytes));
    EXPECT_TRUE(loaded.report.problem.contains("bad.data")) << qPrintable(loaded.report.problem);
    EXPECT_EQ(loaded.data.instruments(), std::set<std::string>{"QA330"});
    EXPECT_EQ(loaded.percents.back(), 100);
}

TEST_F(LoadingArchives, ADamagedMemberIsAProblemAndItsRecordsAreLoaded) {
    const std::string text = dataText("QA330", start, 30);
    const WatchedLoad loaded =
        watchedLoad(folder.write("a.ghg", rawZip({{"a.data", text, text.size(), crcOf(text) ^ 1U}})));
    EXPECT_TRUE(loaded.report.problem.contains("a.data")) << qPrintable(loaded.report.problem);
    EXPECT_EQ(loaded.recordCounts(), Counts{30});
}

TEST_F(LoadingArchives, EveryDamagedMemberIsNamed) {
    const std::string text = dataText("QA330", start, 30);
    const std::uint32_t crc = crcOf(text) ^ 1U;
    const WatchedLoad loaded = watchedLoad(folder.write(
        "a.ghg", rawZip({{"1.data", text, text.size(), crc}, {"2.data", text, text.size(), crc}})));
    EXPECT_TRUE(loaded.report.problem.contains("1.data")) << qPrintable(loaded.report.problem);
    EXPECT_TRUE(loaded.report.problem.contains("2.data")) << qPrintable(loaded.report.problem);
    EXPECT_EQ(loaded.recordCounts(), (Counts{30, 30}));
}

TEST_F(LoadingArchives, ALineThatIsTooLongEndsItsMemberAndIsAProblem) {
    const QString path = folder.path("a.ghg");
    writeZip(path, {{"1.data", dataText("QA330", start, 3) + std::string(1'048'577, 'x') + '\n' +
                                   recordLines(start + 3, 4)},
                    {"2.data", recordLines(start + 7, 5)}});
    const WatchedLoad loaded = watchedLoad(path);
    EXPECT_FALSE(loaded.report.problem.isEmpty());
    EXPECT_EQ(loaded.recordCounts(), Counts{3 + 5});
}

TEST_F(LoadingArchives, OfMembersWithOneNameTheFirstIsReadAndTheOthersAreAProblem) {
    const std::string first = dataText("QA330", start, 30);
    const std::string second = dataText("QA330", start + 100, 20);
    const WatchedLoad loaded =
        watchedLoad(folder.write("a.ghg", rawZip({{"1.data", first, first.size(), crcOf(first)},
                                                  {"1.data", second, second.size(), crcOf(second)}})));
    EXPECT_EQ(loaded.recordCounts(), Counts{30});
    EXPECT_TRUE(loaded.report.problem.contains("1.data")) << qPrintable(loaded.report.problem);
}

TEST(ReadingArchivesAgain, ABlockThatRunsOnIntoTheNextMemberIsReadThroughBoth) {
    const TempFolder folder;
    const QString path = folder.path("a.ghg");
    const std::string header = "Instrument:\tQ\nDATAH\tSECONDS\tA\n";
    writeZip(path, {{"a.data", header + "DATA\t1600000000\t1\nDATA\t1600000001\t2\n"},
                    {"b.data", "DATA\t1600000002\t3\nDATASTATH\tSECONDS\tS\nDATASTAT\t1600000002\t9\n"},
                    {"c.data", "DATA\t1600000003\t4\nDATAH\tSECONDS\tB\tA\nDATA\t1600000003\t0\t5\n"}});
    const WatchedLoad loaded = watchedLoad(path);
    EXPECT_EQ(loaded.recordCounts(), (Counts{3 + 1, 1, 1}));
    DataSet merged;
    merged.merge(loaded.data);
    std::vector<double> times;
    std::vector<double> values;
    merged.series("Q:DATA:A", "", wholeRangeStart, wholeRangeEnd, times, values);
    EXPECT_EQ(values, (std::vector<double>{1, 2, 3, 4, 5}));
    values.clear();
    merged.series("Q:DATA:A", "", 1600000001, 1600000002, times, values);
    EXPECT_EQ(values, (std::vector<double>{2, 3}));
}

TEST(ReadingArchivesAgain, ABlockEndsWhereTheNextMemberBringsItsOwnHeader) {
    const TempFolder folder;
    const QString path = folder.path("a.ghg");
    const std::string block = "Instrument:\tQ\nDATAH\tSECONDS\tA\nDATA\t160000000";
    writeZip(path, {{"a.data", block + "0\t1\n"}, {"b.data", block + "1\t2\n"}});
    const WatchedLoad loaded = watchedLoad(path);
    ASSERT_EQ(loaded.data.fragments().front().members().size(), 1U);
    EXPECT_EQ(loaded.data.fragments().front().members().front().name, "a.data");
    std::vector<double> times;
    std::vector<double> values;
    loaded.data.series("Q:DATA:A", "", wholeRangeStart, wholeRangeEnd, times, values);
    EXPECT_EQ(values, (std::vector<double>{1, 2}));
}

TEST(ReadingArchivesAgain, AMemberWhoseNameBeginsWithASlashGivesItsRecordsAgain) {
    const TempFolder folder;
    const QString path = folder.path("a.ghg");
    writeZip(path, {{"/data/a.data", "Instrument:\tQ\nDATAH\tSECONDS\tA\nDATA\t1600000000\t1\n"}});
    const WatchedLoad loaded = watchedLoad(path);
    EXPECT_EQ(loaded.recordCounts(), Counts{1});
    // By itself, as exports read, and with others, as plots do.
    EXPECT_EQ(readAgain(fragmentAt(loaded.data, 0)).size(), 1U);
    EXPECT_EQ(pointsOf(loaded.data, "Q:DATA:A", "", wholeRangeStart, wholeRangeEnd).values,
              std::vector<double>{1});
}

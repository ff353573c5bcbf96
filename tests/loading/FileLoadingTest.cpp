// Loading one file: what is read, how progress is told, how it ends.

#include "loading/FileLoading.h"

#include "loading/support/DataText.h"
#include "loading/support/ReferenceLines.h"
#include "loading/support/TempFolder.h"
#include "loading/support/ZipWriting.h"
#include "support/LoadedSource.h"

#include <QFileInfo>

#include <atomic>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::uint32_t start = 1'600'000'000;

struct Loaded {
    explicit Loaded(const QString &path) : data(path.toStdString()) {}

    DataSet data;
    LoadReport report;
    std::vector<int> percents;
    std::vector<qint64> sizes;

    std::vector<std::uint32_t> recordCounts() const {
        std::vector<std::uint32_t> counts;
        for (const auto &fragment : data.fragments()) {
            counts.push_back(fragment->recordCount());
        }
        return counts;
    }
};

using Percents = std::vector<int>;
using Counts = std::vector<std::uint32_t>;
using Watcher = std::function<void(int percent, std::atomic<bool> &cancelled)>;

Loaded load(
    const QString &path, const Watcher &watch = [](int, std::atomic<bool> &) {}, bool isCancelled = false) {
    Loaded loaded(path);
    std::atomic<bool> cancelled = isCancelled;
    loaded.report = loadFile(path, loaded.data, cancelled, [&](int percent, qint64 size) {
        loaded.percents.push_back(percent);
        loaded.sizes.push_back(size);
        watch(percent, cancelled);
    });
    return loaded;
}

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

class FileLoading : public testing::Test {
protected:
    static void SetUpTestSuite() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    TempFolder folder;
};

} // namespace

TEST_F(FileLoading, AFileWithFewerThan1000LinesEmitsExactlyTheProgressValues0And100) {
    const std::string header = keyLines("QA330") + headerLine(); // 3 lines
    for (const int records : {0, 1, 500, 996}) {
        const Loaded loaded = load(folder.write("a.data", header + recordLines(start, records)));
        EXPECT_EQ(loaded.percents, (Percents{0, 100})) << records;
    }
    const Loaded loaded = load(folder.write("a.data", header + recordLines(start, 997)));
    EXPECT_EQ(loaded.percents, (Percents{0, 99, 100})) << "the thousandth line tells how far it is";
}

TEST_F(FileLoading, AnEmptyFileEmitsTheProgressValues0And100) {
    EXPECT_EQ(load(folder.write("a.data", "")).percents, (Percents{0, 100}));
}

TEST_F(FileLoading, ProgressIsThePercentageAtEvery1000thLineWhenItGrew) {
    for (const int records : {1000, 5000, 30'000, 250'000}) {
        const std::string text = dataText("QA330", start, records);
        const Loaded loaded = load(folder.write("a.data", text));
        EXPECT_EQ(loaded.percents, expectedPercents({text})) << records;
    }
}

TEST_F(FileLoading, ProgressOfAFileOfSeveralPiecesGoesByTheReportedOffsets) {
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
    const Loaded loaded = load(folder.write("a.data", text));
    EXPECT_EQ(loaded.percents, expectedPercents({text}));
    EXPECT_EQ(loaded.recordCounts(), Counts{10});
}

TEST_F(FileLoading, ProgressOfAnArchiveIsInUncompressedBytesOverAllMembers) {
    const std::string first = dataText("QA330", start, 20'000);
    const std::string second = recordLines(start + 20'000, 55'555);
    const std::string third = recordLines(start + 100'000, 900);
    const QString path = folder.path("a.ghg");
    writeZip(path, {{"1.data", first},
                    {"x.metadata", std::string(5'000'000, 'm')},
                    {"2.data", second},
                    {"3.data", third, ZipEntry::Method::stored}});
    const Loaded loaded = load(path);
    EXPECT_EQ(loaded.percents, expectedPercents({first, second, third}));
    EXPECT_GT(loaded.percents.size(), 50U);
}

TEST_F(FileLoading, TheSizeToldWithProgressIsTheSizeOnDisk) {
    const QString path = folder.path("a.ghg");
    writeZip(path, {{"1.data", dataText("QA330", start, 5000)}});
    const Loaded loaded = load(path);
    ASSERT_GT(loaded.sizes.size(), 3U);
    EXPECT_EQ(loaded.sizes, std::vector<qint64>(loaded.sizes.size(), QFileInfo(path).size()));
}

TEST_F(FileLoading, CancellingBeforeTheStartReadsNothing) {
    const QString path = folder.write("a.data", dataText("QA330", start, 5000));
    const Loaded loaded = load(
        path, [](int, std::atomic<bool> &) {}, true);
    EXPECT_EQ(loaded.percents, Percents{0});
    EXPECT_TRUE(loaded.data.fragments().empty());
    EXPECT_TRUE(loaded.report.problem.isEmpty());
    EXPECT_TRUE(loaded.report.remark.isEmpty());
}

TEST_F(FileLoading, CancellingInTheMiddleStopsBehindTheCurrentLine) {
    const QString path = folder.write("a.data", dataText("QA330", start, 50'000));
    const Loaded loaded =
        load(path, [](int percent, std::atomic<bool> &cancelled) { cancelled = percent > 0; });
    // The thousandth line is the last that is read.
    EXPECT_EQ(loaded.recordCounts(), Counts{997});
    EXPECT_EQ(loaded.percents.front(), 0);
    EXPECT_LT(loaded.percents[1], 5);
    EXPECT_LE(loaded.percents.size(), 3U);
}

TEST_F(FileLoading, CancellingInOneMemberLeavesTheNextUnopened) {
    const std::string first = dataText("QA330", start, 2000);
    const std::string second = dataText("QA340", start, 2000);
    std::string bytes =
        rawZip({{"1.data", first, first.size(), crcOf(first)}, {"2.data", second, second.size(), 0}});
    bytes[bytes.rfind("PK\3\4") + 8] = bytes[bytes.rfind("PK\1\2") + 10] = 14; // would be a problem
    const Loaded loaded = load(folder.write("a.ghg", bytes),
                               [](int percent, std::atomic<bool> &cancelled) { cancelled = percent > 0; });
    EXPECT_EQ(loaded.recordCounts(), Counts{997});
    EXPECT_TRUE(loaded.report.problem.isEmpty()) << qPrintable(loaded.report.problem);
}

TEST_F(FileLoading, ACancelledLoadHasNoProblemWithWhatItDidNotRead) {
    std::string text;
    while (text.size() < 100'000) {
        text += "no data line\n";
    }
    const Loaded loaded = load(folder.write("a.data", text),
                               [](int percent, std::atomic<bool> &cancelled) { cancelled = percent > 0; });
    EXPECT_TRUE(loaded.report.problem.isEmpty()) << qPrintable(loaded.report.problem);
    EXPECT_TRUE(loaded.report.remark.isEmpty());
}

TEST_F(FileLoading, TheParsersStateRunsOnFromMemberToMember) {
    const QString path = folder.path("a.ghg");
    writeZip(path, {{"1.data", keyLines("QA330", "Europe/London") + "Serial Number:\tS1\n"},
                    {"2.data", headerLine() + recordLines(start, 3)},
                    {"3.data", recordLines(start + 3, 4)},
                    {"4.data", "Instrument:\tQA340\n" + headerLine() + recordLines(start, 5)}});
    const Loaded loaded = load(path);
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

TEST_F(FileLoading, OffsetsCountFromTheBeginOfTheMember) {
    const QString path = folder.path("a.ghg");
    const std::string second = keyLines("QA340") + headerLine();
    writeZip(path, {{"1.data", dataText("QA330", start, 3)}, {"2.data", second + recordLines(start, 3)}});
    const Loaded loaded = load(path);
    ASSERT_EQ(loaded.recordCounts(), (Counts{3, 3}));
    EXPECT_EQ((*std::next(loaded.data.fragments().begin()))->firstOffset(), second.size());
}

TEST_F(FileLoading, AnArchiveNameWhoseExtensionIsInCapitalsIsReadAsAnArchive) {
    for (const char *name : {"a.GHG", "a.Zip"}) {
        writeZip(folder.path(name), {{"1.data", dataText("QA330", start, 3)}});
        const Loaded loaded = load(folder.path(name));
        EXPECT_EQ(loaded.recordCounts(), Counts{3}) << name;
        EXPECT_TRUE(loaded.report.problem.isEmpty()) << name;
    }
}

TEST_F(FileLoading, AnyOtherNameIsReadAsOnePlainFile) {
    const std::string text = dataText("QA330", start, 3);
    for (const char *name : {"a.data", "a.txt", "a", "a.ghg.old"}) {
        const Loaded loaded = load(folder.write(name, text));
        ASSERT_EQ(loaded.recordCounts(), Counts{3}) << name;
        EXPECT_EQ((*loaded.data.fragments().begin())->header().subFileName, "") << name;
    }
}

TEST_F(FileLoading, MetadataMembersAreNeverRead) {
    const QString path = folder.path("a.ghg");
    writeZip(path, {{"a.metadata", dataText("QA310", start, 3)}, {"a.data", dataText("QA330", start, 3)}});
    EXPECT_EQ(load(path).data.instruments(), std::set<std::string>{"QA330"});
}

TEST_F(FileLoading, MemberNamesAreKeptAsUtf8) {
    const QString path = folder.path("a.ghg");
    const std::string name = "S\xc3\xbc"
                             "d/\xe6\xb8\xac.data";
    writeZip(path, {{QString::fromStdString(name), dataText("QA330", start, 3)}});
    const Loaded loaded = load(path);
    ASSERT_EQ(loaded.recordCounts(), Counts{3});
    EXPECT_EQ((*loaded.data.fragments().begin())->header().subFileName, name);
}

TEST_F(FileLoading, AFileWithRecordsHasNeitherProblemNorRemark) {
    const Loaded loaded = load(folder.write("a.data", dataText("QA330", start, 1)));
    EXPECT_EQ(loaded.recordCounts(), Counts{1});
    EXPECT_TRUE(loaded.report.problem.isEmpty());
    EXPECT_TRUE(loaded.report.remark.isEmpty());
    EXPECT_EQ(loaded.data.messageText(), "");
}

TEST_F(FileLoading, AFileWithoutAHeaderLineIsNoDataFile) {
    const QString zip = folder.path("only.ghg");
    writeZip(zip, {{"a.metadata", "x"}});
    const QString notes = folder.path("notes.zip");
    writeZip(notes, {{"a.txt", "x\n"}, {"folder/", ""}});
    const QString noHeader = "No data header line was found: this is no data file";
    const QString noHeaderInArchive = "No data header line was found in the archive";
    const std::vector<std::pair<QString, QString>> rows{
        {folder.write("empty.data", ""), "The file is empty"},
        {folder.write("text.data", "Dear reader,\n\n"), noHeader},
        {folder.write("records.data", recordLines(start, 10)), noHeader},
        {folder.write("keys.data", keyLines("QA330")), noHeader},
        {folder.write("bytes.data", std::string(1'000'000, '\0')), noHeader},
        {zip, noHeaderInArchive},
        {notes, noHeaderInArchive},
    };
    for (const auto &[path, problem] : rows) {
        const Loaded loaded = load(path);
        EXPECT_EQ(loaded.report.problem, problem) << qPrintable(path);
        EXPECT_TRUE(loaded.report.remark.isEmpty()) << qPrintable(path);
        EXPECT_EQ(loaded.percents, (Percents{0, 100})) << qPrintable(path);
    }
}

TEST_F(FileLoading, AFileThatLosesAllRecordsToAnUnknownZoneIsAProblem) {
    const Loaded loaded =
        load(folder.write("a.data", "Timezone:\tMars/Olympus\n" + headerLine() + recordLines(start, 3)));
    EXPECT_EQ(loaded.report.problem, "The file holds no records");
    EXPECT_TRUE(loaded.data.messageText().starts_with("ERROR: Unable to open file: "));
}

TEST_F(FileLoading, AHeaderWithoutRecordsIsRemarkedOn) {
    for (const std::string &text :
         {headerLine(), keyLines("QA330") + headerLine(), headerLine() + headerLine(),
          headerLine() + "DATA\tnot a number\n", headerLine() + "DATA\t1600000000\t0\t1.5"}) {
        const Loaded loaded = load(folder.write("a.data", text));
        EXPECT_TRUE(loaded.report.problem.isEmpty()) << text;
        EXPECT_EQ(loaded.report.remark, "The file holds no records") << text;
    }
}

TEST_F(FileLoading, AFileThatCannotBeLoadedIsAProblemThatNamesTheReason) {
    const std::vector<std::pair<QString, QString>> rows{
        {folder.path("missing.data"), "The file does not exist"},
        {folder.path("missing.ghg"), "The file does not exist"},
        {folder.path("."), "This is a folder: add the files in it"},
        {folder.makePipe("pipe.data"), "This is not a regular file"},
        {folder.makePipe("pipe.ghg"), "This is not a regular file"},
        {"/dev/null", "This is not a regular file"},
    };
    for (const auto &[path, problem] : rows) {
        EXPECT_EQ(whyNotLoadable(path), problem) << qPrintable(path);
        const Loaded loaded = load(path);
        EXPECT_EQ(loaded.report.problem, problem) << qPrintable(path);
        EXPECT_EQ(loaded.percents, (Percents{0, 100})) << qPrintable(path);
        EXPECT_TRUE(loaded.data.fragments().empty()) << qPrintable(path);
    }
    EXPECT_EQ(whyNotLoadable(folder.write("a.data", "")), "");
}

TEST_F(FileLoading, AFileWithoutPermissionIsAProblemThatSaysSo) {
    if (::geteuid() == 0) {
        GTEST_SKIP() << "permissions do not hold for the superuser";
    }
    const QString path = folder.write("a.data", dataText("QA330", start, 3));
    ASSERT_TRUE(QFile::setPermissions(path, QFile::WriteOwner));
    EXPECT_EQ(whyNotLoadable(path), "The file cannot be read: no permission");
    EXPECT_EQ(load(path).report.problem, "The file cannot be read: no permission");
}

TEST_F(FileLoading, ALinkToADataFileIsReadAndADanglingLinkDoesNotExist) {
    const QString path = folder.write("a.data", dataText("QA330", start, 3));
    ASSERT_TRUE(QFile::link(path, folder.path("link.data")));
    EXPECT_EQ(load(folder.path("link.data")).recordCounts(), Counts{3});
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(load(folder.path("link.data")).report.problem, "The file does not exist");
}

TEST_F(FileLoading, AnArchiveThatCannotBeOpenedIsAProblem) {
    const std::vector<std::pair<std::string, QString>> rows{
        {std::string(), "The file is empty"},
        {dataText("QA330", start, 3), "This is no archive, or it is empty or cut off"},
    };
    for (const auto &[bytes, problem] : rows) {
        const Loaded loaded = load(folder.write("a.ghg", bytes));
        EXPECT_EQ(loaded.report.problem, problem);
        EXPECT_EQ(loaded.percents, (Percents{0, 100}));
        EXPECT_TRUE(loaded.data.fragments().empty());
    }
}

TEST_F(FileLoading, AMemberThatCannotBeOpenedIsAProblemAndTheOthersAreLoaded) {
    const std::string good = dataText("QA330", start, 3);
    const std::string bad = dataText("QA340", start, 3);
    std::string bytes =
        rawZip({{"bad.data", bad, bad.size(), crcOf(bad)}, {"good.data", good, good.size(), crcOf(good)}});
    bytes[bytes.find("PK\1\2") + 10] = bytes[8] = 14; // a compression method that nobody reads
    const Loaded loaded = load(folder.write("a.ghg", bytes));
    EXPECT_TRUE(loaded.report.problem.contains("bad.data")) << qPrintable(loaded.report.problem);
    EXPECT_EQ(loaded.data.instruments(), std::set<std::string>{"QA330"});
    EXPECT_EQ(loaded.percents.back(), 100);
}

TEST_F(FileLoading, ADamagedMemberIsAProblemAndItsRecordsAreLoaded) {
    const std::string text = dataText("QA330", start, 30);
    const Loaded loaded =
        load(folder.write("a.ghg", rawZip({{"a.data", text, text.size(), crcOf(text) ^ 1U}})));
    EXPECT_TRUE(loaded.report.problem.contains("a.data")) << qPrintable(loaded.report.problem);
    EXPECT_EQ(loaded.recordCounts(), Counts{30});
}

TEST_F(FileLoading, EveryDamagedMemberIsNamed) {
    const std::string text = dataText("QA330", start, 30);
    const std::uint32_t crc = crcOf(text) ^ 1U;
    const Loaded loaded = load(folder.write(
        "a.ghg", rawZip({{"1.data", text, text.size(), crc}, {"2.data", text, text.size(), crc}})));
    EXPECT_TRUE(loaded.report.problem.contains("1.data")) << qPrintable(loaded.report.problem);
    EXPECT_TRUE(loaded.report.problem.contains("2.data")) << qPrintable(loaded.report.problem);
    EXPECT_EQ(loaded.recordCounts(), (Counts{30, 30}));
}

TEST_F(FileLoading, ALineThatIsTooLongEndsItsMemberAndIsAProblem) {
    const QString path = folder.path("a.ghg");
    writeZip(path, {{"1.data", dataText("QA330", start, 3) + std::string(1'048'577, 'x') + '\n' +
                                   recordLines(start + 3, 4)},
                    {"2.data", recordLines(start + 7, 5)}});
    const Loaded loaded = load(path);
    EXPECT_FALSE(loaded.report.problem.isEmpty());
    EXPECT_EQ(loaded.recordCounts(), Counts{3 + 5});
}

TEST_F(FileLoading, SizesThatNoFileCanHaveDoNotDisturbTheProgress) {
    const std::string text = dataText("QA330", start, 5000);
    for (const std::uint64_t size :
         {std::uint64_t{5'000'000'000}, std::uint64_t{1} << 60U, (std::uint64_t{1} << 63U) - 1,
          std::numeric_limits<std::uint64_t>::max()}) {
        const Loaded loaded =
            load(folder.write("a.ghg", rawZip({{"1.data", text, size, 0}, {"2.data", text, size, 0}})));
        EXPECT_FALSE(loaded.report.problem.isEmpty()) << size;
        EXPECT_EQ(loaded.percents.front(), 0) << size;
        EXPECT_EQ(loaded.percents.back(), 100) << size;
        EXPECT_TRUE(std::is_sorted(loaded.percents.begin(), loaded.percents.end())) << size;
    }
}

TEST_F(FileLoading, ProgressStaysAt100WhenAnArchiveHoldsMoreThanItSays) {
    // The first of two members of one name is read twice.
    const std::string large = dataText("QA330", start, 5000);
    const Loaded loaded = load(folder.write("a.ghg", rawZip({{"a.data", large, large.size(), crcOf(large)},
                                                             {"a.data", "x\n", 2, crcOf("x\n")}})));
    EXPECT_LE(*std::max_element(loaded.percents.begin(), loaded.percents.end()), 100);
    EXPECT_TRUE(std::is_sorted(loaded.percents.begin(), loaded.percents.end()));
}

TEST_F(FileLoading, AParseErrorIsCollectedAndTheLoadGoesOn) {
    const std::string text = keyLines("QA330", "No/Such_Zone") + headerLine() + recordLines(start, 2) +
                             dataText("QA330", start, 3);
    const Loaded loaded = load(folder.write("a.data", text));
    EXPECT_TRUE(loaded.data.messageText().starts_with("ERROR: Unable to open file: "))
        << loaded.data.messageText();
    EXPECT_EQ(loaded.recordCounts(), Counts{3});
    EXPECT_TRUE(loaded.report.problem.isEmpty());
}

TEST_F(FileLoading, ParseErrorsAreCollectedWhileTheTextHoldsAtMost9999Characters) {
    const std::string one = keyLines("QA330", "No/Such_Zone") + headerLine();
    const std::string error = load(folder.write("one.data", one)).data.messageText();
    ASSERT_GT(error.size(), 20U);
    std::string text = one;
    for (int i = 0; i < 1000; ++i) {
        text += headerLine();
    }
    std::string expected;
    while (expected.size() <= 9999) {
        expected += error;
    }
    EXPECT_EQ(load(folder.write("many.data", text)).data.messageText(), expected);
}

TEST(ReadingArchivesAgain, ABlockThatRunsOnIntoTheNextMemberIsReadThroughBoth) {
    const TempFolder folder;
    const QString path = folder.path("a.ghg");
    const std::string header = "Instrument:\tQ\nDATAH\tSECONDS\tA\n";
    writeZip(path, {{"a.data", header + "DATA\t1600000000\t1\nDATA\t1600000001\t2\n"},
                    {"b.data", "DATA\t1600000002\t3\nDATASTATH\tSECONDS\tS\nDATASTAT\t1600000002\t9\n"},
                    {"c.data", "DATA\t1600000003\t4\nDATAH\tSECONDS\tB\tA\nDATA\t1600000003\t0\t5\n"}});
    const Loaded loaded = load(path);
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
    const Loaded loaded = load(path);
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
    const Loaded loaded = load(path);
    EXPECT_EQ(loaded.recordCounts(), Counts{1});
    // By itself, as exports read, and with others, as plots do.
    EXPECT_EQ(readAgain(fragmentAt(loaded.data, 0)).size(), 1U);
    EXPECT_EQ(pointsOf(loaded.data, "Q:DATA:A", "", wholeRangeStart, wholeRangeEnd).values,
              std::vector<double>{1});
}

TEST_F(FileLoading, OfMembersWithOneNameTheFirstIsReadAndTheOthersAreAProblem) {
    const std::string first = dataText("QA330", start, 30);
    const std::string second = dataText("QA330", start + 100, 20);
    const Loaded loaded =
        load(folder.write("a.ghg", rawZip({{"1.data", first, first.size(), crcOf(first)},
                                           {"1.data", second, second.size(), crcOf(second)}})));
    EXPECT_EQ(loaded.recordCounts(), Counts{30});
    EXPECT_TRUE(loaded.report.problem.contains("1.data")) << qPrintable(loaded.report.problem);
}

TEST_F(FileLoading, AFileThatAsksForTooMuchMemoryEndsThereWithAProblemThatSaysWhere) {
    std::string text =
        "Instrument:\t" + std::string(1000000, 'Q') + "\nDATAH\tSECONDS\tA\nDATA\t1\t5\nDATA\t2\t5\n";
    for (int i = 0; i < 1000; ++i) {
        text += "DATAH\tA\n";
    }
    const Loaded loaded = load(folder.write("greedy.data", text));
    const QString &problem = loaded.report.problem;
    EXPECT_TRUE(problem.startsWith("Too many header lines for the size of the file: "))
        << qPrintable(problem);
    EXPECT_TRUE(problem.contains("Reading ends at byte 1002")) << qPrintable(problem);
    EXPECT_EQ(loaded.data.fragments().front().recordCount(), 2U);
}

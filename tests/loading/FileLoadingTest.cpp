// Loading one file: what is read, and what is reported of one that gives less than it should.

#include "loading/FileLoading.h"

#include "loading/support/DataText.h"
#include "loading/support/TempFolder.h"
#include "loading/support/WatchedLoad.h"
#include "loading/support/ZipWriting.h"

#include <QFile>

#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr std::uint32_t start = 1'600'000'000;

class FileLoading : public testing::Test {
protected:
    TempFolder folder;
};

} // namespace

TEST_F(FileLoading, AnyOtherNameIsReadAsOnePlainFile) {
    const std::string text = dataText("QA330", start, 3);
    for (const char *name : {"a.data", "a.txt", "a", "a.ghg.old"}) {
        const WatchedLoad loaded = watchedLoad(folder.write(name, text));
        ASSERT_EQ(loaded.recordCounts(), Counts{3}) << name;
        EXPECT_EQ((*loaded.data.fragments().begin())->header().subFileName, "") << name;
    }
}

TEST_F(FileLoading, AFileWithRecordsHasNeitherProblemNorRemark) {
    const WatchedLoad loaded = watchedLoad(folder.write("a.data", dataText("QA330", start, 1)));
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
        const WatchedLoad loaded = watchedLoad(path);
        EXPECT_EQ(loaded.report.problem, problem) << qPrintable(path);
        EXPECT_TRUE(loaded.report.remark.isEmpty()) << qPrintable(path);
        EXPECT_EQ(loaded.percents, (Percents{0, 100})) << qPrintable(path);
    }
}

TEST_F(FileLoading, AFileThatLosesAllRecordsToAnUnknownZoneIsAProblem) {
    const WatchedLoad loaded = watchedLoad(
        folder.write("a.data", "Timezone:\tMars/Olympus\n" + headerLine() + recordLines(start, 3)));
    EXPECT_EQ(loaded.report.problem, "The file holds no records");
    EXPECT_TRUE(loaded.data.messageText().starts_with("ERROR: Unable to open file: "));
}

TEST_F(FileLoading, AHeaderWithoutRecordsIsRemarkedOn) {
    for (const std::string &text :
         {headerLine(), keyLines("QA330") + headerLine(), headerLine() + headerLine(),
          headerLine() + "DATA\tnot a number\n", headerLine() + "DATA\t1600000000\t0\t1.5"}) {
        const WatchedLoad loaded = watchedLoad(folder.write("a.data", text));
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
        const WatchedLoad loaded = watchedLoad(path);
        EXPECT_EQ(loaded.report.problem, problem) << qPrintable(path);
        EXPECT_EQ(loaded.percents, (Percents{0, 100})) << qPrintable(path);
        EXPECT_TRUE(loaded.data.fragments().empty()) << qPrintable(path);
    }
    EXPECT_EQ(whyNotLoadable(folder.write("a.data", "")), "");
}

TEST_F(FileLoading, ALinkToADataFileIsReadAndADanglingLinkDoesNotExist) {
    const QString path = folder.write("a.data", dataText("QA330", start, 3));
    ASSERT_TRUE(QFile::link(path, folder.path("link.data")));
    EXPECT_EQ(watchedLoad(folder.path("link.data")).recordCounts(), Counts{3});
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(watchedLoad(folder.path("link.data")).report.problem, "The file does not exist");
}

TEST_F(FileLoading, AParseErrorIsCollectedAndTheLoadGoesOn) {
    const std::string text = keyLines("QA330", "No/Such_Zone") + headerLine() + recordLines(start, 2) +
                             dataText("QA330", start, 3);
    const WatchedLoad loaded = watchedLoad(folder.write("a.data", text));
    EXPECT_TRUE(loaded.data.messageText().starts_with("ERROR: Unable to open file: "))
        << loaded.data.messageText();
    EXPECT_EQ(loaded.recordCounts(), Counts{3});
    EXPECT_TRUE(loaded.report.problem.isEmpty());
}

TEST_F(FileLoading, ParseErrorsAreCollectedWhileTheTextHoldsAtMost9999Characters) {
    const std::string one = keyLines("QA330", "No/Such_Zone") + headerLine();
    const std::string error = watchedLoad(folder.write("one.data", one)).data.messageText();
    ASSERT_GT(error.size(), 20U);
    std::string text = one;
    for (int i = 0; i < 1000; ++i) {
        text += headerLine();
    }
    std::string expected;
    while (expected.size() <= 9999) {
        expected += error;
    }
    EXPECT_EQ(watchedLoad(folder.write("many.data", text)).data.messageText(), expected);
}

TEST_F(FileLoading, AFileThatAsksForTooMuchMemoryEndsThereWithAProblemThatSaysWhere) {
    std::string text =
        "Instrument:\t" + std::string(1000000, 'Q') + "\nDATAH\tSECONDS\tA\nDATA\t1\t5\nDATA\t2\t5\n";
    for (int i = 0; i < 1000; ++i) {
        text += "DATAH\tA\n";
    }
    const WatchedLoad loaded = watchedLoad(folder.write("greedy.data", text));
    const QString &problem = loaded.report.problem;
    EXPECT_TRUE(problem.startsWith("Too many header lines for the size of the file: "))
        << qPrintable(problem);
    EXPECT_TRUE(problem.contains("Reading ends at byte 1002")) << qPrintable(problem);
    EXPECT_EQ(loaded.data.fragments().front().recordCount(), 2U);
}

// Disks that fail, and files that are changed or taken away: while they are loaded, and when their records
// are read again.

#include "data/RecordCursor.h"
#include "loading/support/DataText.h"
#include "loading/support/MergedLoad.h"
#include "loading/support/TempFolder.h"
#include "loading/support/ZipWriting.h"
#include "support/CapturedStandardError.h"
#include "support/FaultyReads.h"
#include "support/LoadedSource.h"
#include "support/RecordComparison.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t start = 1'600'000'000;

// The number of records whose lines lie whole in the first `length` bytes of a file's text.
std::size_t recordsWithin(std::string_view text, std::size_t length) {
    std::size_t count = 0;
    for (std::size_t begin = 0; begin < length;) {
        const std::size_t feed = text.find('\n', begin);
        if (feed >= length) {
            break;
        }
        count += text.substr(begin).starts_with("DATA\t") ? 1U : 0U;
        begin = feed + 1;
    }
    return count;
}

std::string failureText(std::size_t at, std::size_t size) {
    return "Reading failed after byte " + std::to_string(at) + " of " + std::to_string(size) +
           ": Input/output error";
}

// Each of the ways in which records are read again: how many came, and what was said.
struct ReadAgain {
    const char *how;
    std::function<std::size_t(const DataSet &)> count;
};

const std::array<ReadAgain, 2> waysToReadAgain{{
    {"series",
     [](const DataSet &data) {
         const auto points =
             data.seriesOf({{"QA330:DATA:CH4", ""}, {"QA330:DATA:CH4", "max"}}, start - 1000, start + 3000);
         return points.front().times->size();
     }},
    {"cursor", [](const DataSet &data) { return readAgain(data, "QA330", "DATA").size(); }},
}};

class FaultyFiles : public testing::Test {
protected:
    static void SetUpTestSuite() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    // Reads all records again in either way, and expects so many, and this line of the file alone.
    static void expectReadAgain(const DataSet &data, std::size_t records, const std::string &line) {
        for (const ReadAgain &way : waysToReadAgain) {
            const CapturedStandardError errors;
            EXPECT_EQ(way.count(data), records) << way.how;
            EXPECT_EQ(errors.text(), line) << way.how;
        }
    }

    TempFolder folder_;
};

// Bytes of small records, more than the line reader takes at a time.
constexpr int manyRecords = 400'000;

} // namespace

TEST_F(FaultyFiles, AReadErrorAtAnyByteIsInTheReportAndTheRecordsBeforeItAreLoaded) {
    const std::string text = dataText("QA330", start, 12);
    const QString path = folder_.write("a.data", text);
    for (std::size_t at = 0; at < text.size(); ++at) {
        const FaultyReads faults(path.toStdString(), {.failsAt = at});
        const MergedLoad loaded = mergedLoad(path);
        EXPECT_EQ(loaded.report.problem.toStdString(), failureText(at, text.size()));
        EXPECT_EQ(loaded.records(), recordsWithin(text, at)) << at;
        ASSERT_GT(faults.failures(), 0U);
    }
}

TEST_F(FaultyFiles, AFileThatEndsBeforeItsSizeIsInTheReportAndTheRecordsBeforeAreLoaded) {
    const std::string text = dataText("QA330", start, 12);
    const QString path = folder_.write("a.data", text);
    for (std::size_t at = 0; at < text.size(); ++at) {
        const FaultyReads faults(path.toStdString(), {.endsAt = at});
        const MergedLoad loaded = mergedLoad(path);
        EXPECT_EQ(loaded.report.problem.toStdString(), "The file ends early, after byte " +
                                                           std::to_string(at) + " of " +
                                                           std::to_string(text.size()));
        EXPECT_EQ(loaded.records(), recordsWithin(text, at)) << at;
    }
}

TEST_F(FaultyFiles, ADiskThatGivesFewBytesAtATimeGivesAllRecordsAndNoProblem) {
    const std::string text = dataText("QA330", start, 50);
    const QString plain = folder_.write("a.data", text);
    const QString archive = folder_.path("a.ghg");
    writeZip(archive, {{"a.data", text}, {"b.data", recordLines(start + 50, 10)}});
    for (const auto &[path, records] : {std::pair(plain, 50U), std::pair(archive, 60U)}) {
        for (const std::size_t piece : {1U, 7U, 100U}) {
            const FaultyReads faults(path.toStdString(), {.largestPiece = piece});
            const MergedLoad loaded = mergedLoad(path);
            EXPECT_EQ(loaded.report.problem, "");
            EXPECT_EQ(loaded.records(), records) << piece;
            expectReadAgain(loaded.data, records, "");
            ASSERT_GT(faults.reads(), text.size() / piece / 10);
        }
    }
}

TEST_F(FaultyFiles, AReadErrorAtAnyByteOfAnArchiveIsInTheReportWheneverRecordsAreMissing) {
    const QString path = folder_.path("a.ghg");
    // An archive is searched for its directory in its last 64 KiB: what fails there loses all of it.
    constexpr std::size_t searched = 70'000;
    writeZip(path, {{"1.data", dataText("QA330", start, 40)},
                    {"2.data", recordLines(start + 40, 30), ZipEntry::Method::stored},
                    {"x.metadata", std::string(searched, 'x'), ZipEntry::Method::stored}});
    const auto size = static_cast<std::size_t>(QFileInfo(path).size());
    std::size_t partly = 0;
    for (const std::size_t length : {std::size_t{1}, std::size_t{40}, size}) {
        for (std::size_t at = 0; at < size; at += at < size - searched ? 1 : 499) {
            const FaultyReads faults(path.toStdString(), {.failsAt = at, .failsUntil = at + length});
            const MergedLoad loaded = mergedLoad(path);
            const std::size_t records = loaded.records();
            EXPECT_LE(records, 70U);
            EXPECT_TRUE(records == 70 || !loaded.report.problem.isEmpty()) << "failure at " << at;
            ASSERT_GT(faults.failures(), 0U) << at;
            partly += records > 0 && records < 70 ? 1U : 0U;
        }
    }
    EXPECT_GT(partly, 500U);
    EXPECT_EQ(mergedLoad(path).records(), 70U);
}

TEST_F(FaultyFiles, AReadErrorWhileRecordsAreReadAgainGivesTheRecordsBeforeAndOneLine) {
    const std::string text = dataText("QA330", start, 12) + headerLine() + recordLines(start + 12, 5);
    const QString path = folder_.write("a.data", text);
    const MergedLoad loaded = mergedLoad(path);
    ASSERT_EQ(loaded.records(), 17U);
    for (std::size_t at = 0; at < text.size(); ++at) {
        const FaultyReads faults(path.toStdString(), {.failsAt = at});
        for (const ReadAgain &way : waysToReadAgain) {
            const CapturedStandardError errors;
            const std::size_t records = way.count(loaded.data);
            EXPECT_EQ(records, recordsWithin(text, at)) << way.how << ' ' << at;
            const std::string said = errors.text();
            EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
            EXPECT_TRUE(said.starts_with(path.toStdString() + ": Reading failed after byte ")) << said;
            EXPECT_TRUE(said.ends_with(" of " + std::to_string(text.size()) + ": Input/output error\n"))
                << said;
        }
        ASSERT_GT(faults.failures(), 0U);
    }
    expectReadAgain(loaded.data, 17, "");
}

TEST_F(FaultyFiles, AnArchiveThatFailsWhileRecordsAreReadAgainGivesOneLineThatNamesTheMember) {
    const QString path = folder_.path("a.ghg");
    writeZip(path, {{"1.data", dataText("QA330", start, 40)}, {"2.data", recordLines(start + 40, 30)}});
    const MergedLoad loaded = mergedLoad(path);
    ASSERT_EQ(loaded.records(), 70U);
    const auto size = static_cast<std::size_t>(QFileInfo(path).size());
    for (std::size_t at = 0; at < size; ++at) {
        const FaultyReads faults(path.toStdString(), {.failsAt = at});
        for (const ReadAgain &way : waysToReadAgain) {
            const CapturedStandardError errors;
            const std::size_t records = way.count(loaded.data);
            const std::string said = errors.text();
            EXPECT_TRUE(records == 70 || !said.empty()) << way.how << " failure at " << at;
            EXPECT_LE(std::count(said.begin(), said.end(), '\n'), 1) << said;
            EXPECT_TRUE(said.empty() || said.starts_with(path.toStdString() + ": The archive member \""))
                << said;
        }
    }
    expectReadAgain(loaded.data, 70, "");
}

// The file's report has said so, and the records that are read again are those that were loaded.
TEST_F(FaultyFiles, WhatWasWrongWhenAFileWasLoadedIsNotSaidAtEachPlot) {
    const std::string text = dataText("QA330", start, 12);
    const QString plain = folder_.write("a.data", text);
    const QString archive = folder_.write("a.ghg", rawZip({{"1.data", text, text.size(), crcOf(text) ^ 1U}}));
    const FaultyReads faults(plain.toStdString(), {.failsAt = 100});
    for (const QString &path : {plain, archive}) {
        const MergedLoad loaded = mergedLoad(path);
        EXPECT_NE(loaded.report.problem, "");
        ASSERT_GT(loaded.records(), 0U);
        expectReadAgain(loaded.data, loaded.records(), "");
    }
}

TEST_F(FaultyFiles, AFileThatIsGoneGivesOneLineForAllItsBlocks) {
    std::string text;
    for (std::uint32_t block = 0; block < 20; ++block) {
        text += dataText("QA330", start + block * 100, 3);
    }
    const QString path = folder_.write("a.data", text);
    const QString archive = folder_.path("a.ghg");
    writeZip(archive, {{"1.data", text}, {"2.data", text}});
    for (const QString &gone : {path, archive}) {
        const MergedLoad loaded = mergedLoad(gone);
        ASSERT_GE(loaded.data.fragments().size(), 20U);
        ASSERT_TRUE(QFile::remove(gone));
        expectReadAgain(loaded.data, 0, gone.toStdString() + ": The file is gone or no regular file\n");
    }
}

TEST_F(FaultyFiles, AFileThatWasCutShortGivesWhatIsLeftAndOneLineForAllItsBlocks) {
    const std::string text = dataText("QA330", start, 10) + headerLine() + recordLines(start + 10, 10);
    const QString path = folder_.write("a.data", text);
    const MergedLoad loaded = mergedLoad(path);
    ASSERT_EQ(loaded.records(), 20U);
    for (const std::size_t size : {text.size() - 1, text.size() / 2, std::size_t{60}, std::size_t{0}}) {
        ASSERT_TRUE(QFile::resize(path, static_cast<qint64>(size)));
        expectReadAgain(loaded.data, recordsWithin(text, size),
                        path.toStdString() + ": The file has changed since it was loaded, from " +
                            std::to_string(text.size()) + " to " + std::to_string(size) +
                            " bytes: records that are read again may be wrong or missing\n");
    }
}

TEST_F(FaultyFiles, AFileThatWasReplacedSaysSoAndOnlyItsOwn) {
    const QString path = folder_.write("a.data", dataText("QA330", start, 10));
    MergedLoad loaded = mergedLoad(path);
    loaded.data.merge(mergedLoad(folder_.write("b.data", dataText("QA330", start + 100, 4))).data);
    fs::rename(folder_.write("new", dataText("QA330", start, 300)).toStdString(), path.toStdString());
    for (const ReadAgain &way : waysToReadAgain) {
        const CapturedStandardError errors;
        EXPECT_EQ(way.count(loaded.data), 14U) << way.how;
        EXPECT_TRUE(errors.text().starts_with(path.toStdString() + ": The file has changed since"))
            << errors.text();
        EXPECT_EQ(errors.text().find("b.data"), std::string::npos) << errors.text();
    }
    MergedLoad again = mergedLoad(path);
    EXPECT_EQ(again.records(), 300U);
    expectReadAgain(again.data, 300, "");
}

TEST_F(FaultyFiles, AnArchiveThatWasReplacedByRubbishSaysSo) {
    const QString path = folder_.path("a.ghg");
    writeZip(path, {{"1.data", dataText("QA330", start, 40)}});
    const MergedLoad loaded = mergedLoad(path);
    folder_.write("a.ghg", std::string(5000, 'x'));
    for (const ReadAgain &way : waysToReadAgain) {
        const CapturedStandardError errors;
        EXPECT_EQ(way.count(loaded.data), 0U) << way.how;
        const std::string said = errors.text();
        EXPECT_TRUE(said.starts_with(path.toStdString() + ": The file has changed since")) << said;
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
    }
}

TEST_F(FaultyFiles, AFileThatIsStillBeingWrittenIsReadAgainAsItWasLoadedWithoutALine) {
    const std::string text = dataText("QA330", start, 10);
    const QString path = folder_.write("a.data", text);
    const MergedLoad loaded = mergedLoad(path);
    folder_.write("a.data", text + recordLines(start + 10, 5) + "DATA\t16000");
    expectReadAgain(loaded.data, 10, "");
}

TEST_F(FaultyFiles, AFileThatIsCutShortWhileItIsLoadedIsInTheReport) {
    const std::string text = dataText("QA330", start, manyRecords);
    const QString path = folder_.write("a.data", text);
    const auto cut = static_cast<qint64>(ChunkLineReader::readSize + 1000);
    ASSERT_GT(static_cast<qint64>(text.size()), cut);
    const MergedLoad loaded = mergedLoad(path, [&](int percent) {
        if (percent == 1) {
            EXPECT_TRUE(QFile::resize(path, cut));
        }
    });
    EXPECT_EQ(loaded.report.problem.toStdString(), "The file ends early, after byte " + std::to_string(cut) +
                                                       " of " + std::to_string(text.size()));
    EXPECT_EQ(loaded.records(), recordsWithin(text, static_cast<std::size_t>(cut)));
}

// An open file stays readable under Unix; what comes later must not pass for it.
TEST_F(FaultyFiles, AFileThatIsDeletedOrReplacedWhileItIsLoadedIsLoadedWholeAndSaysSoLater) {
    const std::string text = dataText("QA330", start, manyRecords);
    for (const bool isReplaced : {false, true}) {
        const QString path = folder_.write("a.data", text);
        const MergedLoad loaded = mergedLoad(path, [&](int percent) {
            if (percent == 1) {
                EXPECT_TRUE(QFile::remove(path));
                if (isReplaced) {
                    folder_.write("a.data", text + recordLines(start, 1));
                }
            }
        });
        EXPECT_EQ(loaded.report.problem, "");
        EXPECT_EQ(loaded.records(), static_cast<std::size_t>(manyRecords));
        for (const ReadAgain &way : waysToReadAgain) {
            const CapturedStandardError errors;
            way.count(loaded.data);
            EXPECT_TRUE(errors.text().starts_with(path.toStdString() +
                                                  (isReplaced ? ": The file has changed" : ": The file is")))
                << errors.text();
        }
    }
}

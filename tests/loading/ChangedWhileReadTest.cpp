// Files that are deleted, cut or replaced between any two reads of them, while they are loaded and while
// their records are read again: all records come, or one line says why not.

#include "data/RecordCursor.h"
#include "loading/support/DataText.h"
#include "loading/support/MergedLoad.h"
#include "loading/support/TempFolder.h"
#include "loading/support/ZipWriting.h"
#include "support/CapturedQtMessages.h"
#include "support/CapturedStandardError.h"
#include "support/FaultyReads.h"
#include "support/FileChanges.h"
#include "support/LoadedSource.h"
#include "support/RecordComparison.h"

#include <algorithm>
#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace {

constexpr std::uint32_t start = 1'600'000'000;
constexpr int records = 60;
constexpr int recordsOfReplacement = 45;

// Three blocks, in an archive in three members.
std::vector<ZipEntry> membersOf(std::uint32_t first, int count) {
    std::vector<ZipEntry> members;
    for (std::uint32_t i = 0; i < 3; ++i) {
        members.push_back({QString::number(i) + ".data", dataText("Q", first + i * 1000, count / 3),
                           ZipEntry::Method::stored});
    }
    return members;
}

void writeFile(const QString &path, bool isArchive, std::uint32_t first, int count) {
    const std::vector<ZipEntry> members = membersOf(first, count);
    if (isArchive) {
        writeZip(path, members);
        return;
    }
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    for (const ZipEntry &member : members) {
        file.write(member.bytes.data(), static_cast<qint64>(member.bytes.size()));
    }
}

using Point = std::tuple<double, double>;

struct ReadAgain {
    const char *how;
    std::function<std::vector<Point>(const DataSet &)> points;
};

const std::array<ReadAgain, 2> waysToReadAgain{{
    {"series",
     [](const DataSet &data) {
         const Points found = pointsOf(data, "Q:DATA:CH4", "", start - 10, start + 4000);
         std::vector<Point> points;
         for (std::size_t i = 0; i < found.times.size(); ++i) {
             points.emplace_back(found.times[i], found.values[i]);
         }
         return points;
     }},
    {"cursor",
     [](const DataSet &data) {
         std::vector<Point> points;
         for (const Record &record : readAgain(data, "Q", "DATA")) {
             points.emplace_back(timeOf(record), record.values[0]);
         }
         return points;
     }},
}};

class ChangedWhileRead : public testing::TestWithParam<bool> {
protected:
    static void SetUpTestSuite() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    bool isArchive() const { return GetParam(); }
    QString path() const { return folder_.path(isArchive() ? "a.ghg" : "a.data"); }
    QString other() const { return folder_.path("other"); }
    void writeFiles() const {
        writeFile(path(), isArchive(), start, records);
        writeFile(other(), isArchive(), start + 7, recordsOfReplacement);
    }

    // Reads with the change made before each read in turn, given by its number, until there is no such read.
    void forEveryRead(const FileChange &change, const std::function<void()> &prepare,
                      const std::function<void(std::size_t)> &read) const {
        std::size_t number = 0;
        for (bool isMade = true; isMade && !HasFatalFailure();) {
            ++number;
            isMade = false;
            writeFiles();
            prepare();
            const CapturedQtMessages messages;
            const FaultyReads faults(path().toStdString(),
                                     {.largestPiece = 300, .actsAtRead = number, .action = [&] {
                                          change.make(path().toStdString(), other().toStdString());
                                          isMade = true;
                                      }});
            read(number);
            EXPECT_EQ(messages.text(), "") << change.what << " at read " << number;
        }
        EXPECT_GT(number, 5U);
    }

    TempFolder folder_;
};

} // namespace

TEST_P(ChangedWhileRead, AFileThatIsLoadedGivesAllOfOneFileOrAProblem) {
    std::size_t problems = 0;
    for (const FileChange &change : fileChanges) {
        forEveryRead(
            change, [] {},
            [&](std::size_t number) {
                const MergedLoad loaded = mergedLoad(path());
                const std::size_t found = loaded.records();
                const std::string problem = loaded.report.problem.toStdString();
                EXPECT_TRUE(!problem.empty() || found == records ||
                            (isArchive() && found == recordsOfReplacement))
                    << change.what << " at read " << number << ": " << found << " records";
                EXPECT_EQ(problem.find('\n'), std::string::npos) << problem;
                problems += problem.empty() ? 0U : 1U;
            });
    }
    EXPECT_GT(problems, 0U);
}

TEST_P(ChangedWhileRead, RecordsThatAreReadAgainAllComeOrOneLineTellsWhyNot) {
    for (const ReadAgain &way : waysToReadAgain) {
        std::size_t lines = 0;
        for (const FileChange &change : fileChanges) {
            MergedLoad loaded;
            std::vector<Point> expected;
            forEveryRead(
                change,
                [&] {
                    loaded = mergedLoad(path());
                    expected = way.points(loaded.data);
                    ASSERT_EQ(expected.size(), std::size_t{records});
                },
                [&](std::size_t number) {
                    const CapturedStandardError errors;
                    const std::vector<Point> found = way.points(loaded.data);
                    const std::string said = errors.text();
                    EXPECT_TRUE(found == expected || !said.empty())
                        << way.how << ' ' << change.what << " at read " << number;
                    EXPECT_LE(std::count(said.begin(), said.end(), '\n'), 1) << said;
                    EXPECT_TRUE(said.empty() || said.starts_with(path().toStdString() + ": The ")) << said;
                    lines += said.empty() ? 0U : 1U;
                });
        }
        EXPECT_GT(lines, 0U) << way.how;
    }
}

INSTANTIATE_TEST_SUITE_P(, ChangedWhileRead, testing::Bool(),
                         [](const auto &row) { return row.param ? "Archive" : "PlainFile"; });

TEST(ChangedWhileListed, AnArchiveThatIsGoneOnceItsMembersAreListedSaysSo) {
    const TempFolder folder;
    const QString path = folder.path("a.ghg");
    std::set<std::string> problems;
    for (std::size_t number = 1; number < 12; ++number) {
        writeFile(path, true, start, records);
        const CapturedQtMessages messages;
        const FaultyReads faults(path.toStdString(),
                                 {.actsAtRead = number, .action = [&] { QFile::remove(path); }});
        problems.insert(mergedLoad(path).report.problem.toStdString());
        EXPECT_EQ(messages.text(), "");
    }
    EXPECT_EQ(problems, (std::set<std::string>{"The archive is gone or has changed while it was read"}));
}

// Files that are deleted, cut or replaced between any two reads of them while they are exported: the export
// has all records, or one line says why not.

#include "export/ExportTest.h"
#include "loading/FileLoading.h"
#include "loading/support/ZipWriting.h"
#include "support/CapturedQtMessages.h"
#include "support/CapturedStandardError.h"
#include "support/FaultyReads.h"
#include "support/FileChanges.h"

#include <algorithm>
#include <atomic>

namespace {

class ChangedWhileExported : public ExportTest, public testing::WithParamInterface<bool> {
protected:
    bool isArchive() const { return GetParam(); }
    std::string path() const { return folder_.pathOf(isArchive() ? "a.ghg" : "a.data"); }

    // Blocks of 20 records, in an archive in as many members.
    void write(const std::string &path, std::uint32_t first, std::uint32_t blocks) const {
        std::vector<ZipEntry> members;
        std::string text;
        for (std::uint32_t i = 0; i < blocks; ++i) {
            members.push_back(
                {QString::number(i) + ".data",
                 "Instrument:\tQ\nDATAH\tSECONDS\tNANOSECONDS\tA\n" + records(first + i * 100, 20)});
            text += members.back().bytes;
        }
        if (isArchive()) {
            writeZip(QString::fromStdString(path), members);
        } else {
            std::ofstream(path, std::ios::binary) << text;
        }
    }

    // Writes the files and loads the one that is exported.
    void prepare() {
        data_ = {};
        progress_ = {};
        write(path(), 1000, 3);
        write(folder_.pathOf("other"), 1007, 2);
        std::filesystem::remove(folder_.pathOf("out.txt"));
        DataSet source(path());
        const LoadReport report =
            loadFile(QString::fromStdString(path()), source, std::atomic<bool>(false), [](int, qint64) {});
        ASSERT_EQ(report.problem, "");
        data_.merge(source);
    }
};

} // namespace

TEST_P(ChangedWhileExported, AllRecordsAreWrittenOrOneLineTellsWhyNot) {
    prepare();
    run(requestFor("out.txt"));
    const std::string whole = read("out.txt");
    ASSERT_EQ(std::count(whole.begin(), whole.end(), '\n'), 61);
    std::size_t lines = 0;
    for (const FileChange &change : fileChanges) {
        std::size_t number = 0;
        for (bool isMade = true; isMade;) {
            ++number;
            isMade = false;
            prepare();
            const CapturedQtMessages messages;
            const CapturedStandardError errors;
            const FaultyReads faults(path(), {.largestPiece = 300, .actsAtRead = number, .action = [&] {
                                                  change.make(path(), folder_.pathOf("other"));
                                                  isMade = true;
                                              }});
            run(requestFor("out.txt"));
            const std::string said = errors.text();
            const std::string written = exists("out.txt") ? read("out.txt") : "";
            EXPECT_TRUE(written == whole || !said.empty()) << change.what << " at read " << number;
            EXPECT_LE(std::count(said.begin(), said.end(), '\n'), 1) << said;
            EXPECT_TRUE(said.empty() || said.starts_with(path() + ": The ")) << said;
            EXPECT_EQ(messages.text(), "");
            EXPECT_TRUE(progress_.hasEnded);
            lines += said.empty() ? 0U : 1U;
        }
        EXPECT_GT(number, 3U) << change.what;
    }
    EXPECT_GT(lines, 0U);
}

INSTANTIATE_TEST_SUITE_P(, ChangedWhileExported, testing::Bool(),
                         [](const auto &row) { return row.param ? "Archive" : "PlainFile"; });

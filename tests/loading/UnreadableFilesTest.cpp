// Files that cannot be opened, or are others by the time they are.

#include "loading/lines/ChunkLineReader.h"
#include "loading/support/DataText.h"
#include "loading/support/EverythingLoaded.h"
#include "loading/support/TempFolder.h"
#include "loading/support/ZipWriting.h"
#include "support/OrdinaryUser.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace {

constexpr std::uint32_t start = 1'600'000'000;

class UnreadableFiles : public testing::Test {
protected:
    // A folder that any user may look into.
    void SetUp() override {
        namespace fs = std::filesystem;
        using fs::perms;
        fs::permissions(folder_.path(".").toStdString(), perms::owner_all | perms::group_read |
                                                             perms::group_exec | perms::others_read |
                                                             perms::others_exec);
    }

    QString lockedFile() const {
        const QString path = folder_.write("a.data", dataText("QA330", start, 3));
        EXPECT_TRUE(QFile::setPermissions(path, QFile::Permissions()));
        return path;
    }

    TempFolder folder_;
};

std::size_t recordsOf(const DataSet &data) {
    std::size_t records = 0;
    for (const auto &block : data.fragments()) {
        records += block->recordCount();
    }
    return records;
}

} // namespace

TEST_F(UnreadableFiles, AFileWithoutPermissionIsAProblemThatSaysSo) {
    const QString path = lockedFile();
    const OrdinaryUser user;
    EXPECT_EQ(whyNotLoadable(path).toStdString(), "The file cannot be read: no permission");
    const EverythingLoaded loaded(path, nullptr);
    EXPECT_EQ(loaded.report.problem.toStdString(), "The file cannot be read: no permission");
    EXPECT_TRUE(loaded.data.fragments().empty());
}

TEST_F(UnreadableFiles, AFileThatIsThereButCannotBeOpenedIsAProblemThatNamesTheReason) {
    const QString path = lockedFile();
    const OrdinaryUser user;
    ChunkLineReader reader;
    EXPECT_FALSE(reader.open(path, QString()));
    EXPECT_EQ(reader.problem().toStdString(), "The file cannot be opened: Permission denied");
    EXPECT_FALSE(reader.nextLine());
}

// As when somebody locks it away in between.
TEST_F(UnreadableFiles, AFileThatIsLockedBetweenTheLookAtItAndItsOpeningIsAProblem) {
    const QString path = folder_.write("a.data", dataText("QA330", start, 3));
    std::optional<OrdinaryUser> user;
    const EverythingLoaded loaded(path, nullptr, [&](int percent, std::atomic<bool> &) {
        if (percent == 0) {
            EXPECT_TRUE(QFile::setPermissions(path, QFile::Permissions()));
            user.emplace();
        }
    });
    EXPECT_EQ(loaded.report.problem.toStdString(), "The file cannot be opened: Permission denied");
}

TEST_F(UnreadableFiles, ANameWhoseBytesWereNoUtf8CannotBeOpenedUnlessAFileHasThatName) {
    const QString name = QStringLiteral("a") + QChar(QChar::ReplacementCharacter) + QStringLiteral(".data");
    EXPECT_EQ(whyNotLoadable(folder_.path(name)).toStdString(),
              "The file cannot be opened: its name is no UTF-8");
    EXPECT_EQ(whyNotLoadable(folder_.write(name, "")).toStdString(), "");
}

TEST_F(UnreadableFiles, AFileThatIsGoneOnceItWasLookedAtIsAProblem) {
    const QString path = folder_.write("a.data", dataText("QA330", start, 3));
    const EverythingLoaded loaded(path, nullptr, [&](int percent, std::atomic<bool> &) {
        if (percent == 0) {
            EXPECT_TRUE(QFile::remove(path));
        }
    });
    EXPECT_EQ(loaded.report.problem.toStdString(), "The file is gone or no regular file");
    EXPECT_TRUE(loaded.data.fragments().empty());
}

// Nothing is a percentage of no bytes.
TEST_F(UnreadableFiles, AnArchiveOfEmptyMembersThatIsReplacedOnceTheyAreListedIsLoadedWithoutPercentages) {
    const QString path = folder_.path("a.ghg");
    writeZip(path, {{"a.data", ""}});
    const EverythingLoaded loaded(path, nullptr, [&](int percent, std::atomic<bool> &) {
        if (percent == 0) {
            writeZip(path, {{"a.data", dataText("QA330", start, 5000)}});
        }
    });
    EXPECT_EQ(loaded.report.problem.toStdString(), "");
    EXPECT_EQ(recordsOf(loaded.data), 5000U);
    EXPECT_EQ(std::count(loaded.progress.begin(), loaded.progress.end(), '\n'), 2) << loaded.progress;
}

TEST_F(UnreadableFiles, AMemberWithoutANameIsAProblemAndThoseBeforeItAreLoaded) {
    const std::string text = dataText("QA330", start, 3);
    const RawZipEntry named{"a.data", text, text.size(), crcOf(text)};
    const RawZipEntry nameless{"", text, text.size(), crcOf(text)};
    const EverythingLoaded loaded(folder_.write("a.ghg", rawZip({named, nameless})), nullptr);
    EXPECT_EQ(loaded.report.problem.toStdString(), "A member of the archive has no name and cannot be read");
    EXPECT_EQ(recordsOf(loaded.data), 3U);
    // The archive's directory is not searched beyond it.
    const EverythingLoaded none(folder_.write("b.ghg", rawZip({nameless, named})), nullptr);
    EXPECT_EQ(none.report.problem.toStdString(), "A member of the archive has no name and cannot be read; "
                                                 "The archive member \"a.data\" cannot be opened");
    EXPECT_EQ(recordsOf(none.data), 0U);
}

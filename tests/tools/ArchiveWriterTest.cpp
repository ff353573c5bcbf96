#include "tools/ArchiveWriter.h"

#include "tools/ArchiveText.h"
#include "tools/DataText.h"
#include "tools/Qa34xxWriter.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class ArchiveWriterTest : public testing::Test {
protected:
    QString write(const QString &name, const ArchiveOptions &archives) {
        RecordingOptions recording;
        recording.start = 1559368800;
        recording.rate = 1;
        recording.instrument = "AIU-0412";
        Qa34xxWriter recorder(recording, Timezone(FVQA_ZONEINFO_DIR, "America/Denver"));
        QString folder = scratch_.filePath(name);
        writeArchives(recorder, recording, archives, folder.toStdString());
        return folder;
    }

    static QByteArray bytes(const QString &path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir scratch_;
};

} // namespace

TEST_F(ArchiveWriterTest, ArchivesAreNamedAfterTheirLocalHalfHourAndHoldDataAndMetadata) {
    const QDir folder(write("a", {.count = 3}));
    EXPECT_EQ(folder.entryList(QDir::Files, QDir::Name),
              QStringList({"2019-06-01T000000_AIU-0412.ghg", "2019-06-01T003000_AIU-0412.ghg",
                           "2019-06-01T010000_AIU-0412.ghg"}));
    const auto members = archiveMembers(folder.filePath("2019-06-01T003000_AIU-0412.ghg"));
    ASSERT_EQ(members.size(), 2U);
    EXPECT_EQ(members[0].first, "2019-06-01T003000_AIU-0412.data");
    EXPECT_EQ(members[1].first, "2019-06-01T003000_AIU-0412.metadata");
    EXPECT_TRUE(members[1].second.startsWith("[Site]\n"));
}

TEST_F(ArchiveWriterTest, EachArchiveHoldsItsHalfHourAndChecksumsAreRight) {
    const QString folder = write("a", {.count = 2});
    const QByteArray data = archiveMembers(folder + "/2019-06-01T003000_AIU-0412.ghg").at(0).second;
    const std::string_view text(data.constData(), static_cast<std::size_t>(data.size()));
    EXPECT_EQ(column(text, "DATA", "SECONDS").front(), "1559370600");
    EXPECT_EQ(column(text, "DATA", "SECONDS").back(), "1559372399");
    EXPECT_EQ(wrongChecksums(linesWith(text, "DATA\t")), 0U);
}

TEST_F(ArchiveWriterTest, EveryKthArchiveIsNameless) {
    const QDir folder(write("a", {.count = 4, .namelessEvery = 2}));
    std::vector<bool> named;
    for (const QString &name : folder.entryList(QDir::Files, QDir::Name)) {
        named.push_back(archiveMembers(folder.filePath(name)).at(0).second.contains("Instrument:\t"));
    }
    EXPECT_EQ(named, std::vector<bool>({true, false, true, false}));
}

TEST_F(ArchiveWriterTest, TwoRunsGiveTheSameBytes) {
    const QDir first(write("a", {.count = 2}));
    const QDir second(write("b", {.count = 2}));
    for (const QString &name : first.entryList(QDir::Files)) {
        const QByteArray archive = bytes(first.filePath(name));
        EXPECT_GT(archive.size(), 10000);
        EXPECT_EQ(archive, bytes(second.filePath(name))) << name.toStdString();
    }
}

TEST_F(ArchiveWriterTest, CompressionChangesTheSizeButNotTheMembers) {
    const QString name = "/2019-06-01T000000_AIU-0412.ghg";
    const QString quick = write("a", {.count = 1, .compression = 1}) + name;
    const QString small = write("b", {.count = 1, .compression = 9}) + name;
    EXPECT_LT(bytes(small).size(), bytes(quick).size());
    EXPECT_EQ(archiveMembers(small), archiveMembers(quick));
}

TEST_F(ArchiveWriterTest, AFolderThatCannotBeMadeIsAnError) {
    QFile file(scratch_.filePath("in-the-way"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_THROW(write("in-the-way", {.count = 1}), WriteError);
}

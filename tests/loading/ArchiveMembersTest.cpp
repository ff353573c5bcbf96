// Members of archives, whole and damaged: what the line reader makes of them.

#include "loading/lines/ChunkLineReader.h"
#include "loading/support/ArchiveReading.h"
#include "loading/support/ReadingCheck.h"
#include "loading/support/TempFolder.h"
#include "loading/support/ZipWriting.h"

#include <QProcess>
#include <QStandardPaths>
#include <quazip.h>

#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace {

constexpr std::size_t piece = 8'388'608; // read at a time

} // namespace

TEST(ArchiveMembers, AMemberThatDeclaresMoreThan4GibibytesButHasNoneFailsCleanly) {
    const TempFolder folder;
    const QString path = folder.write("a.ghg", rawZip({{"big.data", "a\nb\n", 5'000'000'000, 0}}));
    ChunkLineReader reader;
    const bool isOpen = reader.open(path, "big.data");
    if (isOpen) {
        EXPECT_EQ(reader.size(), 5'000'000'000);
        readLines(reader);
        reader.close();
    }
    EXPECT_FALSE(reader.problem().isEmpty());
}

TEST(ArchiveMembers, MembersAreReadByTheRulesStoredAndDeflated) {
    const TempFolder folder;
    const std::string text = numberedLines(2 * piece + 100'000) + "no line feed";
    for (const auto method : {ZipEntry::Method::stored, ZipEntry::Method::deflated}) {
        const QString path = folder.path("a.ghg");
        writeZip(path, {{"first.data", "first\n", method}, {"second.data", text, method}});
        ChunkLineReader reader;
        ASSERT_TRUE(reader.open(path, "second.data"));
        EXPECT_EQ(reader.size(), static_cast<qint64>(text.size()));
        EXPECT_TRUE(readsByTheRules(reader, text));
        reader.close();
        EXPECT_TRUE(reader.problem().isEmpty());
        ASSERT_TRUE(reader.open(path, "first.data"));
        EXPECT_EQ(readLines(reader), Names{"first"});
    }
}

TEST(ArchiveMembers, AMemberWhoseNameBeginsWithASlashIsTheSameHoweverItIsOpened) {
    const TempFolder folder;
    const QString path = folder.path("a.ghg");
    writeZip(path, {{"/a.data", "with\n"}, {"a.data", "without\n"}, {"//b.data", "two\n"}});
    QuaZip archive(path);
    ASSERT_TRUE(archive.open(QuaZip::mdUnzip));
    for (const auto &[name, line] :
         {std::pair("/a.data", "with"), {"a.data", "without"}, {"//b.data", "two"}}) {
        ChunkLineReader reader;
        ASSERT_TRUE(reader.open(path, name)) << name;
        EXPECT_EQ(readLines(reader), Names{line}) << name;
        ASSERT_TRUE(reader.openMember(archive, name)) << name;
        EXPECT_EQ(readLines(reader), Names{line}) << name;
    }
}

TEST(ArchiveMembers, AMemberIsReadFromAnOffsetInsideIt) {
    const TempFolder folder;
    const QString path = folder.path("a.ghg");
    const std::string text = numberedLines(2 * piece);
    writeZip(path, {{"a.data", text}});
    // The third lies behind more than one block of skipped bytes.
    for (const std::size_t start : {std::size_t{1}, piece + 17, piece + 1'048'576 + 17, text.size() - 5,
                                    text.size(), text.size() + 100}) {
        ChunkLineReader reader;
        ASSERT_TRUE(reader.open(path, "a.data", static_cast<qint64>(start)));
        EXPECT_TRUE(readsByTheRules(reader, text, start)) << "from " << start;
    }
}

TEST(ArchiveMembers, AMemberLineLongerThanOneMebibyteStopsTheMemberAtThatLine) {
    const TempFolder folder;
    const QString path = folder.path("a.ghg");
    const std::string text = "before\n" + std::string(1'048'577, 'x') + "\nnever\n";
    writeZip(path, {{"a.data", text}});
    ChunkLineReader reader;
    ASSERT_TRUE(reader.open(path, "a.data"));
    EXPECT_EQ(readLines(reader), Names{"before"});
    const QString problem = reader.problem();
    EXPECT_FALSE(problem.isEmpty());
    reader.close();
    EXPECT_EQ(reader.problem(), problem);
}

TEST(ArchiveMembers, AMissingMemberDoesNotOpen) {
    const TempFolder folder;
    const QString path = folder.path("a.ghg");
    writeZip(path, {{"a.data", "a\n"}});
    ChunkLineReader reader;
    // Names are told apart by letter case.
    for (const char *name : {"b.data", "A.DATA"}) {
        EXPECT_FALSE(reader.open(path, name)) << name;
        EXPECT_TRUE(reader.problem().contains(name)) << name;
        EXPECT_FALSE(reader.nextLine()) << name;
    }
}

TEST(ArchiveMembers, AMemberOfATextFileThatIsNamedLikeAnArchiveDoesNotOpen) {
    const TempFolder folder;
    ChunkLineReader reader;
    for (const char *bytes : {"", "DATAH\tSECONDS\n"}) {
        EXPECT_FALSE(reader.open(folder.write("a.ghg", bytes), "a.data"));
        EXPECT_FALSE(reader.problem().isEmpty());
    }
}

TEST(ArchiveMembers, AFolderInAnArchiveHasNoLines) {
    const TempFolder folder;
    const QString path =
        folder.write("a.ghg", rawZip({{"folder/", "", 0, 0}, {"folder/a.data", "a\n", 2, 0}}));
    EXPECT_EQ(namesOf(listArchive(path)), (Names{"folder/", "folder/a.data"}));
    ChunkLineReader reader;
    if (reader.open(path, "folder/")) {
        EXPECT_FALSE(reader.nextLine());
        reader.close();
    }
    EXPECT_TRUE(reader.problem().isEmpty()) << qPrintable(reader.problem());
}

TEST(ArchiveMembers, AMemberWithAWrongCheckSumGivesItsLinesAndAProblem) {
    const TempFolder folder;
    const std::string text = numberedLines(20'000);
    std::string damaged = text;
    damaged[damaged.size() / 2] = 'X';
    const QString path = folder.write("a.ghg", rawZip({{"a.data", damaged, text.size(), crcOf(text)}}));
    ChunkLineReader reader;
    ASSERT_TRUE(reader.open(path, "a.data"));
    EXPECT_TRUE(readsByTheRules(reader, damaged));
    reader.close();
    EXPECT_TRUE(reader.problem().contains("a.data")) << qPrintable(reader.problem());

    ASSERT_TRUE(reader.open(folder.write("good.ghg", rawZip({{"a.data", text, text.size(), crcOf(text)}})),
                            "a.data"));
    EXPECT_TRUE(readsByTheRules(reader, text));
    reader.close();
    EXPECT_TRUE(reader.problem().isEmpty()) << qPrintable(reader.problem());
}

TEST(ArchiveMembers, AMemberWhoseCompressedBytesAreDamagedGivesThePiecesBeforeAndAProblem) {
    const TempFolder folder;
    const std::string text = numberedLines(3 * piece);
    writeZip(folder.path("a.ghg"), {{"a.data", text}});
    std::string bytes = bytesOf(folder.path("a.ghg"));
    // In the last third: the first piece at least is whole.
    for (std::size_t at = bytes.size() * 3 / 4; at < bytes.size() * 3 / 4 + 64; ++at) {
        bytes[at] = static_cast<char>(0xff);
    }
    ChunkLineReader reader;
    ASSERT_TRUE(reader.open(folder.write("damaged.ghg", bytes), "a.data"));
    const ReferenceReading expected = referenceReading(text);
    std::size_t lines = 0;
    while (reader.nextLine()) {
        if (expected.lines[lines].trueOffset < piece) {
            ASSERT_EQ(reader.line(), expected.lines[lines].text);
        }
        ++lines;
    }
    EXPECT_GT(lines, 0U);
    EXPECT_GT(expected.lines[lines].trueOffset, piece - 100);
    reader.close();
    EXPECT_FALSE(reader.problem().isEmpty());
}

TEST(ArchiveMembers, AMemberThatIsShorterThanTheDirectorySaysGivesItsLinesAndAProblem) {
    const TempFolder folder;
    writeZip(folder.path("a.ghg"), {{"a.data", "a\nb\n"}});
    std::string bytes = bytesOf(folder.path("a.ghg"));
    // The uncompressed size in the directory and in the data descriptor before it.
    const std::size_t entry = bytes.rfind("PK\1\2");
    const std::size_t descriptor = bytes.rfind("PK\7\10", entry);
    ASSERT_NE(descriptor, std::string::npos);
    ASSERT_EQ(bytes[entry + 24], 4);
    ASSERT_EQ(bytes[descriptor + 12], 4);
    bytes[entry + 24] = bytes[descriptor + 12] = 100;
    ChunkLineReader reader;
    ASSERT_TRUE(reader.open(folder.write("b.ghg", bytes), "a.data"));
    EXPECT_EQ(reader.size(), 100);
    EXPECT_EQ(readLines(reader), (Names{"a", "b"}));
    reader.close();
    EXPECT_FALSE(reader.problem().isEmpty());
}

TEST(ArchiveMembers, AnEncryptedMemberGivesNoLineAndAProblem) {
    const QString zip = QStandardPaths::findExecutable("zip");
    if (zip.isEmpty()) {
        GTEST_SKIP() << "zip is not installed";
    }
    const TempFolder folder;
    const QString data = folder.write("a.data", numberedLines(5000));
    const QString path = folder.path("a.ghg");
    ASSERT_EQ(QProcess::execute(zip, {"-q", "-j", "-P", "secret", path, data}), 0);
    EXPECT_EQ(namesOf(listArchive(path)), Names{"a.data"});
    ChunkLineReader reader;
    if (reader.open(path, "a.data")) {
        EXPECT_FALSE(reader.nextLine());
        reader.close();
    }
    EXPECT_FALSE(reader.problem().isEmpty());
    EXPECT_FALSE(reader.problem().contains("Unknown error")) << qPrintable(reader.problem());
}

TEST(ArchiveMembers, AMemberOfAnUnknownCompressionMethodDoesNotOpen) {
    const TempFolder folder;
    std::string bytes = rawZip({{"a.data", "a\n", 2, crcOf("a\n")}});
    bytes[8] = bytes[bytes.rfind("PK\1\2") + 10] = 14;
    ChunkLineReader reader;
    EXPECT_FALSE(reader.open(folder.write("a.ghg", bytes), "a.data"));
    EXPECT_FALSE(reader.problem().isEmpty());
}

// Members of archives: which are listed, and what the line reader makes of them.

#include "loading/lines/Archive.h"

#include "loading/lines/ChunkLineReader.h"
#include "loading/support/ReadingCheck.h"
#include "loading/support/TempFolder.h"
#include "loading/support/ZipWriting.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <quazip.h>

#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Names = std::vector<std::string>;

constexpr std::size_t piece = 8'388'608; // read at a time

Names namesOf(const MemberList &list) {
    Names names;
    for (const ArchiveMember &member : list.members) {
        names.push_back(member.name.toStdString());
    }
    return names;
}

std::string bytesOf(const QString &path) {
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll().toStdString();
}

// Numbered lines, which a compressor cannot make as small as one line.
std::string numberedLines(std::size_t total) {
    std::mt19937 random(3);
    std::string text;
    while (text.size() < total) {
        text += "DATA\t" + std::to_string(text.size()) + '\t' + std::to_string(random()) + "\r\n";
    }
    return text;
}

std::vector<std::string> readLines(ChunkLineReader &reader) {
    std::vector<std::string> lines;
    while (reader.nextLine()) {
        lines.emplace_back(reader.line());
    }
    return lines;
}

} // namespace

TEST(Archive, ArchivesAreKnownByTheirExtensionInAnyLetterCase) {
    for (const char *name : {"a.ghg", "a.GHG", "a.Ghg", "a.zip", "/b/a.ZIP", "a.data.zIp", ".ghg"}) {
        EXPECT_TRUE(isArchiveName(name)) << name;
    }
    for (const char *name : {"a.data", "a.ghg.data", "ghg", "aghg", "a.gh", "", "a.zip/b"}) {
        EXPECT_FALSE(isArchiveName(name)) << name;
    }
}

TEST(Archive, AnArchiveOfOneDataMemberAndItsMetadataYieldsOnlyTheDataMember) {
    const TempFolder folder;
    const QString path = folder.path("a.ghg");
    writeZip(path, {{"a.data", "12345\n"}, {"a.metadata", "more bytes than that\n"}});
    const MemberList list = listArchive(path);
    EXPECT_EQ(namesOf(list), Names{"a.data"});
    EXPECT_EQ(list.members[0].size, 6);
    EXPECT_EQ(list.totalSize, 6);
    EXPECT_TRUE(list.problem.isEmpty());
}

TEST(Archive, SeveralDataMembersAreAllListedInTheArchivesOrder) {
    const TempFolder folder;
    const QString path = folder.path("a.ghg");
    writeZip(path,
             {{"z.data", "1\n"}, {"folder/b.data", "22\n"}, {"a.data", "333\n"}, {"notes.txt", "4444\n"}});
    const MemberList list = listArchive(path);
    EXPECT_EQ(namesOf(list), (Names{"z.data", "folder/b.data", "a.data", "notes.txt"}));
    EXPECT_EQ(list.totalSize, 2 + 3 + 4 + 5);
}

TEST(Archive, MetadataMembersAreSkippedInAnyLetterCase) {
    const TempFolder folder;
    const QString path = folder.path("a.ghg");
    writeZip(path, {{"a.METADATA", "x"},
                    {"b.MetaData", "x"},
                    {"metadata", "1"},
                    {"a.metadata.data", "22"},
                    {"folder.metadata/c", "333"},
                    {".metadata", "x"}});
    const MemberList list = listArchive(path);
    EXPECT_EQ(namesOf(list), (Names{"metadata", "a.metadata.data", "folder.metadata/c"}));
    EXPECT_EQ(list.totalSize, 1 + 2 + 3);
}

TEST(Archive, MemberNamesAreReadAsUtf8) {
    const TempFolder folder;
    const QString path = folder.path("a.ghg");
    const std::string name = "Messstelle S\xc3\xbc"
                             "d/\xe6\xb8\xac\xe5\xae\x9a.data";
    writeZip(path, {{QString::fromStdString(name), "a\n"}});
    EXPECT_EQ(namesOf(listArchive(path)), Names{name});
    ChunkLineReader reader;
    ASSERT_TRUE(reader.open(path, QString::fromStdString(name)));
    EXPECT_EQ(readLines(reader), Names{"a"});
}

TEST(Archive, AZipThatCannotBeOpenedGivesAnEmptyListAndTheTotalZero) {
    const TempFolder folder;
    const QString good = folder.path("good.ghg");
    writeZip(good, {{"a.data", numberedLines(10'000)}});
    const std::string bytes = bytesOf(good);
    const std::vector<std::pair<const char *, QString>> rows{
        {"missing", folder.path("missing.ghg")},
        {"folder", folder.path(".")},
        {"empty", folder.write("empty.ghg", "")},
        {"text", folder.write("text.ghg", "DATAH\tSECONDS\nDATA\t1\n")},
        {"cut in half", folder.write("half.ghg", bytes.substr(0, bytes.size() / 2))},
        {"cut in its end record", folder.write("cut.ghg", bytes.substr(0, bytes.size() - 20))},
        {"without members", folder.write("none.ghg", rawZip({}))},
    };
    for (const auto &[what, path] : rows) {
        const MemberList list = listArchive(path);
        EXPECT_TRUE(list.members.empty()) << what;
        EXPECT_EQ(list.totalSize, 0) << what;
        EXPECT_FALSE(list.problem.isEmpty()) << what;
    }
}

TEST(Archive, AnArchiveBehindOtherBytesIsRead) {
    const TempFolder folder;
    writeZip(folder.path("a.ghg"), {{"a.data", "a\nb\n"}});
    const QString path = folder.write("b.ghg", "#!/bin/sh\nexit\n" + bytesOf(folder.path("a.ghg")));
    EXPECT_EQ(namesOf(listArchive(path)), Names{"a.data"});
    ChunkLineReader reader;
    ASSERT_TRUE(reader.open(path, "a.data"));
    EXPECT_EQ(readLines(reader), (Names{"a", "b"}));
}

TEST(Archive, ADirectoryThatIsDamagedBehindAMemberIsAProblem) {
    const TempFolder folder;
    std::string bytes = rawZip({{"a.data", "a\n", 2, crcOf("a\n")}, {"b.data", "b\n", 2, crcOf("b\n")}});
    bytes[bytes.rfind("PK\1\2") + 2] = 'X';
    const MemberList list = listArchive(folder.write("a.ghg", bytes));
    EXPECT_EQ(namesOf(list), Names{"a.data"});
    EXPECT_EQ(list.totalSize, 2);
    EXPECT_FALSE(list.problem.isEmpty());
}

TEST(Archive, SizesOfMoreThan4GibibytesAreListedIn64Bits) {
    const TempFolder folder;
    const std::uint64_t size = 5'000'000'000;
    const QString path =
        folder.write("a.ghg", rawZip({{"big.data", "a\n", size, 0}, {"b.data", "b\n", 2, 0}}));
    const MemberList list = listArchive(path);
    ASSERT_EQ(namesOf(list), (Names{"big.data", "b.data"}));
    EXPECT_EQ(list.members[0].size, 5'000'000'000);
    EXPECT_EQ(list.totalSize, 5'000'000'002);
}

TEST(Archive, SizesThatAddUpToMoreThan4GibibytesAreSummedIn64Bits) {
    const TempFolder folder;
    const std::uint64_t size = 3'000'000'000;
    const QString path = folder.write(
        "a.ghg", rawZip({{"a.data", "", size, 0}, {"b.data", "", size, 0}, {"c.data", "", size, 0}}));
    EXPECT_EQ(listArchive(path).totalSize, 9'000'000'000);
}

TEST(Archive, SizesThatNoFileCanHaveDoNotOverflowTheTotal) {
    const TempFolder folder;
    for (const std::uint64_t size : {std::numeric_limits<std::uint64_t>::max(), std::uint64_t{1} << 63U,
                                     (std::uint64_t{1} << 63U) - 1}) {
        const QString path =
            folder.write("a.ghg", rawZip({{"a.data", "", size, 0}, {"b.data", "", size, 0}}));
        const MemberList list = listArchive(path);
        ASSERT_EQ(list.members.size(), 2U) << size;
        qint64 sum = 0;
        for (const ArchiveMember &member : list.members) {
            EXPECT_GE(member.size, 0) << size;
            EXPECT_LE(member.size, std::numeric_limits<qint64>::max() / 100 - sum) << size;
            sum += member.size;
        }
        EXPECT_EQ(list.totalSize, sum) << size;
    }
}

TEST(Archive, AMemberThatDeclaresMoreThan4GibibytesButHasNoneFailsCleanly) {
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

TEST(Archive, MembersAreReadByTheRulesStoredAndDeflated) {
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

TEST(Archive, AMemberWhoseNameBeginsWithASlashIsTheSameHoweverItIsOpened) {
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

TEST(Archive, AMemberIsReadFromAnOffsetInsideIt) {
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

TEST(Archive, AMemberLineLongerThanOneMebibyteStopsTheMemberAtThatLine) {
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

TEST(Archive, AMissingMemberDoesNotOpen) {
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

TEST(Archive, AMemberOfATextFileThatIsNamedLikeAnArchiveDoesNotOpen) {
    const TempFolder folder;
    ChunkLineReader reader;
    for (const char *bytes : {"", "DATAH\tSECONDS\n"}) {
        EXPECT_FALSE(reader.open(folder.write("a.ghg", bytes), "a.data"));
        EXPECT_FALSE(reader.problem().isEmpty());
    }
}

TEST(Archive, AFolderInAnArchiveHasNoLines) {
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

TEST(Archive, AMemberWithAWrongCheckSumGivesItsLinesAndAProblem) {
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

TEST(Archive, AMemberWhoseCompressedBytesAreDamagedGivesThePiecesBeforeAndAProblem) {
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

TEST(Archive, AMemberThatIsShorterThanTheDirectorySaysGivesItsLinesAndAProblem) {
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

TEST(Archive, AnEncryptedMemberGivesNoLineAndAProblem) {
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

TEST(Archive, AMemberOfAnUnknownCompressionMethodDoesNotOpen) {
    const TempFolder folder;
    std::string bytes = rawZip({{"a.data", "a\n", 2, crcOf("a\n")}});
    bytes[8] = bytes[bytes.rfind("PK\1\2") + 10] = 14;
    ChunkLineReader reader;
    EXPECT_FALSE(reader.open(folder.write("a.ghg", bytes), "a.data"));
    EXPECT_FALSE(reader.problem().isEmpty());
}

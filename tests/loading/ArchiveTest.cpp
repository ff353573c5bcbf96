// Archives: how they are known, and which of their members are listed.

#include "loading/lines/Archive.h"

#include "loading/lines/ChunkLineReader.h"
#include "loading/support/ArchiveReading.h"
#include "loading/support/TempFolder.h"
#include "loading/support/ZipWriting.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>
#include <vector>

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

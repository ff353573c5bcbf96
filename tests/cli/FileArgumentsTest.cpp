#include "cli/FileArguments.h"

#include "cli/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

using Paths = std::vector<std::string>;

TEST(FileArguments, AFolderStandsForTheDataFilesInItAndBelow) {
    const TemporaryFolder folder;
    const std::string plain = folder.write("in/b.data", "");
    const std::string archive = folder.write("in/deep/er/a.ghg", "");
    const std::string zip = folder.write("in/c.zip", "");
    folder.write("in/readme.txt", "");
    folder.write("in/data", "");
    folder.write("in/x.database", "");
    EXPECT_EQ(expandFileArguments({folder.path("in")}).files, (Paths{plain, zip, archive}));
}

TEST(FileArguments, LetterCaseOfTheEndingIsIgnored) {
    const TemporaryFolder folder;
    const Paths files{folder.write("A.DATA", ""), folder.write("B.Ghg", ""), folder.write("c.ZIP", "")};
    EXPECT_EQ(expandFileArguments({folder.path()}).files.size(), files.size());
}

TEST(FileArguments, FilesOfAFolderComeInByteOrderOfTheirPaths) {
    const TemporaryFolder folder;
    // "." < "/" < "A" < "a" < "\xc3\xa4"
    const Paths files{folder.write("a.data", ""), folder.write("a/z.data", ""), folder.write("aA.data", ""),
                      folder.write("aa.data", ""), folder.write("a\xc3\xa4.data", "")};
    EXPECT_EQ(expandFileArguments({folder.path()}).files, files);
}

TEST(FileArguments, AFolderInsideAnotherIsNoFileWhateverItsName) {
    const TemporaryFolder folder;
    const std::string inner = folder.write("old.data/a.data", "");
    EXPECT_EQ(expandFileArguments({folder.path()}).files, Paths{inner});
}

TEST(FileArguments, LinksToFoldersInsideAFolderAreNotFollowed) {
    const TemporaryFolder folder;
    const std::string file = folder.write("in/a.data", "");
    folder.write("elsewhere/b.data", "");
    fs::create_directory_symlink(folder.path("elsewhere"), folder.path("in/link"));
    fs::create_directory_symlink("..", folder.path("in/round"));
    EXPECT_EQ(expandFileArguments({folder.path("in")}).files, Paths{file});
}

TEST(FileArguments, EachLinkToAFolderThatIsLeftOutIsARemarkAndNoProblem) {
    const TemporaryFolder folder;
    folder.write("in/deep/a.data", "");
    folder.write("elsewhere/b.data", "");
    for (const char *link : {"in/z.data", "in/deep/link", "in/a"}) {
        fs::create_directory_symlink(folder.path("elsewhere"), folder.path(link));
    }
    const FileArguments result = expandFileArguments({folder.path("in"), folder.path("elsewhere")});
    const std::string text = ": This link to a folder is not followed: name it to read the files in it";
    EXPECT_EQ(result.remarks, (Paths{folder.path("in/a") + text, folder.path("in/deep/link") + text,
                                     folder.path("in/z.data") + text}));
    EXPECT_TRUE(result.problems.empty());
}

TEST(FileArguments, ALinkToAFolderThatIsNamedItselfIsFollowed) {
    const TemporaryFolder folder;
    folder.write("in/a.data", "");
    fs::create_directory_symlink(folder.path("in"), folder.path("link"));
    const FileArguments result = expandFileArguments({folder.path("link")});
    EXPECT_EQ(result.files, Paths{folder.path("link/a.data")});
    EXPECT_TRUE(result.remarks.empty());
}

TEST(FileArguments, LinksToFilesCount) {
    const TemporaryFolder folder;
    folder.write("elsewhere/real", "");
    folder.makeFolder("in");
    fs::create_symlink(folder.path("elsewhere/real"), folder.path("in/a.data"));
    fs::create_symlink(folder.path("nowhere"), folder.path("in/b.data"));
    EXPECT_EQ(expandFileArguments({folder.path("in")}).files,
              (Paths{folder.path("in/a.data"), folder.path("in/b.data")}));
}

TEST(FileArguments, PipesInAFolderAreNoDataFiles) {
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo(folder.path("a.data").c_str(), 0600), 0);
    const std::string file = folder.write("b.data", "");
    EXPECT_EQ(expandFileArguments({folder.path()}).files, Paths{file});
}

TEST(FileArguments, AFolderWithoutDataFilesIsAProblem) {
    const TemporaryFolder folder;
    folder.makeFolder("empty/still");
    const FileArguments result = expandFileArguments({folder.path("empty")});
    EXPECT_TRUE(result.files.empty());
    ASSERT_EQ(result.problems.size(), 1U);
    EXPECT_TRUE(result.problems.front().starts_with(folder.path("empty") + ": "));
}

TEST(FileArguments, AnyOtherNameStaysAsItIs) {
    const Paths names{"no/such/file", "notes.txt", ""};
    const FileArguments result = expandFileArguments(names);
    EXPECT_EQ(result.files, names);
    EXPECT_TRUE(result.problems.empty());
}

TEST(FileArguments, AFileThatIsNamedTwiceStaysAtItsLaterPlace) {
    const TemporaryFolder folder;
    const std::string a = folder.write("a.data", "");
    const std::string b = folder.write("b.data", "");
    EXPECT_EQ(expandFileArguments({a, b, a}).files, (Paths{b, a}));
}

TEST(FileArguments, AFileIsTheSameUnderEveryNameForIt) {
    const TemporaryFolder folder;
    const std::string a = folder.write("a.data", "");
    const std::string b = folder.write("b.data", "");
    const std::string roundabout = folder.path("./a.data");
    fs::create_symlink(a, folder.path("link"));
    EXPECT_EQ(expandFileArguments({a, b, roundabout}).files, (Paths{b, roundabout}));
    EXPECT_EQ(expandFileArguments({a, b, folder.path("link")}).files, (Paths{b, folder.path("link")}));
    EXPECT_EQ(expandFileArguments({b, folder.path()}).files, (Paths{a, b}));
    EXPECT_EQ(expandFileArguments({"no/such", "no/./such"}).files, Paths{"no/./such"});
}

} // namespace

// What the real program makes of its FILE arguments.

#include "cli/CliProcess.h"
#include "cli/SampleFiles.h"
#include "cli/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

// The lines "Filename: ..." of a summary, in order.
std::vector<std::string> fileNamesIn(const std::string &summary) {
    constexpr std::string_view label = "Filename: ";
    std::vector<std::string> names;
    for (std::size_t begin = 0; begin < summary.size();) {
        const std::size_t end = summary.find('\n', begin);
        if (summary.compare(begin, label.size(), label) == 0) {
            names.push_back(summary.substr(begin + label.size(), end - begin - label.size()));
        }
        begin = end + 1;
    }
    return names;
}

// A good file beside a bad one is still read, and the bad one is named on standard error.
void expectOnlyBadFails(const TemporaryFolder &folder, const std::string &bad,
                        const CliProcess::Setup &setup = CliProcess::Setup()) {
    const std::string good = folder.write("good.data", sampleData("GOOD", 1000, 2));
    const CliResult result = runCli({"variables", bad, good}, setup);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "GOOD:DATA:CH4D\tmmol/m^3\nGOOD:DATA:TEMP\tC\n");
    EXPECT_TRUE(result.err.starts_with("fvqa300-cli: " + bad + ": ")) << result.err;
    EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
}

// Changes the check sum that the archive's directory gives for its first member.
void breakCheckSum(const std::string &archive) {
    std::fstream file(archive, std::ios::in | std::ios::out | std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    file.seekp(static_cast<std::streamoff>(bytes.find("PK\x01\x02") + 16));
    file.write("\x01\x02\x03\x04", 4);
}

TEST(Inputs, AFolderIsReadWithTheFoldersBelow) {
    const TemporaryFolder folder;
    // Equal times keep the order of loading, which is that of the paths.
    const std::vector<std::string> files{folder.write("a/b.data", sampleData("X", 1000, 1)),
                                         folder.write("a/c/D.DATA", sampleData("X", 1000, 1)),
                                         folder.write("b.data", sampleData("X", 1000, 1))};
    folder.write("a/notes.txt", "no data");
    const CliResult result = runCli({"summary", folder.path()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(fileNamesIn(result.out), files);
    EXPECT_EQ(result.err, "");
}

TEST(Inputs, ALinkToAFolderIsNamedAndIsNoFailure) {
    const TemporaryFolder folder;
    const std::string file = folder.write("in/a.data", sampleData("X", 1000, 1));
    folder.write("elsewhere/b.data", sampleData("X", 2000, 1));
    std::filesystem::create_directory_symlink(folder.path("elsewhere"), folder.path("in/link"));
    const CliResult result = runCli({"summary", folder.path("in")});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(fileNamesIn(result.out), std::vector<std::string>{file});
    EXPECT_EQ(result.err, "fvqa300-cli: " + folder.path("in/link") +
                              ": This link to a folder is not followed: name it to read the files in it\n");
}

TEST(Inputs, AFileNamedTwiceIsLoadedOnceAtItsLaterPlace) {
    const TemporaryFolder folder;
    const std::string a = folder.write("a.data", sampleData("X", 1000, 1));
    const std::string b = folder.write("b.data", sampleData("X", 1000, 1));
    const CliResult result = runCli({"summary", a, b, a});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(fileNamesIn(result.out), (std::vector<std::string>{b, a}));
}

TEST(Inputs, AFileOfAnyNameIsReadAsDataWhenItIsNamed) {
    const TemporaryFolder folder;
    const std::string file = folder.write("raw.txt", sampleData("X", 1000, 1));
    EXPECT_EQ(fileNamesIn(runCli({"summary", file}).out), std::vector<std::string>{file});
}

TEST(Inputs, AnArchiveGivesItsDataMembers) {
    const TemporaryFolder folder;
    const std::string archive = folder.path("a.GHG");
    writeArchive(archive, {{"a.metadata", "[Site]\n"}, {"a.data", sampleData("X", 1000, 3)}});
    const CliResult summary = runCli({"summary", archive});
    EXPECT_EQ(summary.status, 0);
    EXPECT_NE(summary.out.find("SubFilename: a.data\n"), std::string::npos) << summary.out;
    EXPECT_EQ(runCli({"series", "--variable", "X:DATA:CH4D", archive}).out, "1000\t0\n1001\t1\n1002\t2\n");
}

TEST(Inputs, AMissingFileFails) {
    const TemporaryFolder folder;
    expectOnlyBadFails(folder, folder.path("missing.data"));
}

TEST(Inputs, AnEmptyFileFails) {
    const TemporaryFolder folder;
    expectOnlyBadFails(folder, folder.write("empty.data", ""));
}

TEST(Inputs, AFileWithoutAHeaderLineFails) {
    const TemporaryFolder folder;
    expectOnlyBadFails(folder, folder.write("letter.data", "Dear reader,\nthis is no data file.\n"));
}

TEST(Inputs, AnUnreadableFileFails) {
    const TemporaryFolder folder;
    const std::string file = folder.write("locked.data", sampleData("X", 1000, 1));
    fs::permissions(file, fs::perms::none);
    CliProcess::Setup setup;
    setup.obeysFileModes = true;
    expectOnlyBadFails(folder, file, setup);
}

TEST(Inputs, AFolderThatCannotBeReadFails) {
    const TemporaryFolder folder;
    const std::string locked = folder.makeFolder("locked");
    fs::permissions(locked, fs::perms::none);
    CliProcess::Setup setup;
    setup.obeysFileModes = true;
    expectOnlyBadFails(folder, locked, setup);
}

TEST(Inputs, AFileWhoseNameIsNoUtf8FailsAndSaysSo) {
    const TemporaryFolder folder;
    const std::string good = folder.write("good.data", sampleData("GOOD", 1000, 1));
    const CliResult result =
        runCli({"variables", folder.write("gr\xfc\xdf.data", sampleData("X", 1000, 1)), good});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "GOOD:DATA:CH4D\tmmol/m^3\nGOOD:DATA:TEMP\tC\n");
    EXPECT_NE(result.err.find("its name is no UTF-8"), std::string::npos) << result.err;
}

TEST(Inputs, AFolderWithoutDataFilesFails) {
    const TemporaryFolder folder;
    folder.write("bare/notes.txt", "no data");
    expectOnlyBadFails(folder, folder.path("bare"));
}

TEST(Inputs, APipeIsRefusedAndNotWaitedFor) {
    const TemporaryFolder folder;
    const std::string pipe = folder.path("pipe.data");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    expectOnlyBadFails(folder, pipe);
}

TEST(Inputs, ABrokenArchiveFails) {
    const TemporaryFolder folder;
    expectOnlyBadFails(folder, folder.write("broken.ghg", "PK\x03\x04 and nothing more"));
}

TEST(Inputs, ADamagedArchiveMemberFailsAndGivesWhatCanBeRead) {
    const TemporaryFolder folder;
    const std::string archive = folder.path("damaged.zip");
    writeArchive(archive, {{"a.data", sampleData("X", 1000, 3)}});
    breakCheckSum(archive);
    const CliResult series = runCli({"series", "--variable", "X:DATA:CH4D", archive});
    EXPECT_EQ(series.status, 1);
    EXPECT_EQ(series.out, "1000\t0\n1001\t1\n1002\t2\n");
    const CliResult result = runCli({"messages", archive});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.err.starts_with("fvqa300-cli: " + archive + ": ")) << result.err;
}

TEST(Inputs, MessagesNamesAFileThatCannotBeReadOnBothStreams) {
    const TemporaryFolder folder;
    const std::string missing = folder.path("missing.data");
    const CliResult result = runCli({"messages", missing});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.out.starts_with(missing + ": ")) << result.out;
    EXPECT_EQ(result.err, "fvqa300-cli: " + result.out);
}

TEST(Inputs, ZonesComeFromTheFolderThatIsNamed) {
    const TemporaryFolder folder;
    const std::string zones = folder.makeFolder("zones");
    fs::copy_file(fs::path(FVQA_ZONEINFO_DIR) / "UTC", zones + "/UTC");
    const std::string utc = folder.write("utc.data", sampleData("X", 1000, 1));
    const std::string elsewhere =
        folder.write("berlin.data", "Timezone:\tEurope/Berlin\nDATAH\tSECONDS\tCH4D\nDATA\t1\t2\n");
    EXPECT_EQ(runCli({"messages", utc, elsewhere}).status, 0);
    EXPECT_EQ(runCli({"--zoneinfo", zones, "messages", utc}).status, 0);
    const CliResult result = runCli({"--zoneinfo", zones, "messages", utc, elsewhere});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.out.find("Unable to open file: "), std::string::npos) << result.out;
    EXPECT_NE(result.out.find(zones), std::string::npos) << result.out;
}

TEST(Inputs, AZoneFolderThatCannotBeReadIsNamedAndFails) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleData("X", 1000, 1));
    const std::string locked = folder.makeFolder("locked");
    fs::copy_file(fs::path(FVQA_ZONEINFO_DIR) / "UTC", locked + "/UTC");
    fs::permissions(locked, fs::perms::none);
    CliProcess::Setup setup;
    setup.obeysFileModes = true;
    // A file in the place of a folder cannot be read by the superuser either.
    for (const std::string &zones : {locked, file}) {
        const CliResult result = runCli({"--zoneinfo", zones, "messages", file}, setup);
        EXPECT_EQ(result.status, 1) << zones;
        EXPECT_NE((result.out + result.err).find(zones), std::string::npos) << result.out << result.err;
    }
    fs::permissions(locked, fs::perms::owner_all);
}

TEST(Inputs, AZoneFolderThatIsMissingFails) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleData("X", 1000, 1));
    const CliResult result = runCli({"--zoneinfo", folder.path("none"), "summary", file});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.err.starts_with("fvqa300-cli: " + folder.path("none") + ": ")) << result.err;
}

} // namespace

// The command "export" of the real program: what it writes, and how it ends when it cannot.

#include "cli/CliProcess.h"
#include "cli/SampleFiles.h"
#include "cli/TemporaryFolder.h"
#include "cli/Terminal.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace fs = std::filesystem;

namespace {

using Words = std::vector<std::string>;

const std::string flux = FVQA_GOLDEN_DIR "/flux.data";

// The arguments of an export of the data X:DATA to `output`.
Words exportOf(const std::string &file, const std::string &output, const Words &more = {},
               const std::string &format = "text") {
    Words words{"export", "--data", "X:DATA", "--format", format, "--output", output, file};
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

std::string goldenFile(const std::string &name) {
    std::ifstream stream(FVQA_GOLDEN_DIR "/" + name, std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << name;
    return {std::istreambuf_iterator<char>(stream), {}};
}

void expectSilentSuccess(const CliResult &result) {
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
}

// Failed with one line about `path`.
void expectFailure(const CliResult &result, const std::string &path) {
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.signal, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with("fvqa300-cli: " + path + ": ")) << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
}

struct GoldenRow {
    Words options;
    std::string golden;
};

TEST(Export, WritesTheGoldenFilesWhateverTheLocale) {
    const std::vector<GoldenRow> rows{
        {{"--format", "text"}, "flux.txt"},
        {{"--format", "text", "--time-columns", "63"}, "flux-all-times.txt"},
        {{"--format", "text", "--time-columns", "0"}, "flux-no-times.txt"},
        {{"--format", "text", "--time-columns", "seconds,nanoseconds,date,time,timestamp,offset"},
         "flux-all-times.txt"},
        {{"--format", "diagnostics"}, "flux-diagnostics.txt"},
        {{"--format", "diagnostics", "--split", "1800"}, "flux-diagnostics.txt"},
    };
    for (const std::string locale : {"C", "de_DE.UTF-8"}) {
        CliProcess::Setup setup;
        setup.environment = {"LC_ALL=" + locale};
        for (const GoldenRow &row : rows) {
            const TemporaryFolder folder;
            Words words{"export", "--data", "QA330:DATA", "--output", folder.path("flux")};
            words.insert(words.end(), row.options.begin(), row.options.end());
            words.push_back(flux);
            expectSilentSuccess(runCli(words, setup));
            EXPECT_EQ(folder.read("flux"), goldenFile(row.golden));
            EXPECT_EQ(folder.names(), Words{"flux"}); // no extension is added
        }
    }
}

TEST(Export, WritesThePiecesOfASplitExport) {
    const TemporaryFolder folder;
    expectSilentSuccess(
        runCli({"export", "--data", "QA330:DATA", "--format", "text", "--time-columns", "timestamp,offset",
                "--split", "1800", "--output", folder.path("flux.txt"), flux}));
    EXPECT_EQ(folder.names(), (Words{"flux-2019-11-03T0100.txt", "flux-2019-11-03T0159.txt"}));
    for (const std::string &name : folder.names()) {
        EXPECT_EQ(folder.read(name), goldenFile(name));
    }
}

TEST(Export, APieceThatGetsAnotherNameIsNamedAndNoFailure) {
    const TemporaryFolder folder;
    // Denver, 2019-11-03: 01:30 in summer time, then in winter time.
    std::string text = sampleHeader("X") + sampleRecord(1572766200, "1") + sampleRecord(1572769800, "2");
    text.replace(text.find("UTC"), 3, "America/Denver");
    const std::string file = folder.write("a.data", text);
    const CliResult result = runCli(exportOf(file, folder.path("o.txt"), {"--split", "1800"}));
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.err.starts_with("fvqa300-cli: " + folder.path("o-2019-11-03T0130-2.txt") + ": "))
        << result.err;
    EXPECT_EQ(folder.names(), (Words{"a.data", "o-2019-11-03T0130-2.txt", "o-2019-11-03T0130.txt"}));
}

TEST(Export, HoldsTheRecordsOfAllFilesInTheOrderOfTheirTimes) {
    const TemporaryFolder folder;
    folder.write("in/late.data", sampleData("X", 2000, 2));
    folder.write("in/early.data", sampleData("X", 1000, 1));
    folder.write("in/other.data", sampleData("Y", 1500, 1));
    expectSilentSuccess(runCli(exportOf(folder.path("in"), folder.path("o.txt"), {"--time-columns", "1"})));
    EXPECT_EQ(folder.read("o.txt"), "SECONDS\tCH4D\tTEMP\t\n1000\t0\t20\n2000\t0\t20\n2001\t1\t20\n");
}

TEST(Export, NeverReplacesAnInputFile) {
    const TemporaryFolder folder;
    const std::string content = sampleData("X", 1000, 3);
    const std::string file = folder.write("in/a.data", content);
    fs::create_symlink(file, folder.path("link"));
    fs::create_hard_link(file, folder.path("hard"));
    for (const std::string &input : {file, folder.path("in")}) {
        for (const std::string &output :
             {file, folder.path("in/../in/a.data"), folder.path("link"), folder.path("hard")}) {
            expectFailure(runCli(exportOf(input, output)), output);
            EXPECT_EQ(folder.read("in/a.data"), content);
        }
    }
}

TEST(Export, NeverReplacesAnInputFileThatCouldNotBeRead) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleData("X", 1000, 3));
    const std::string notes = folder.write("notes.txt", "no data\n");
    const CliResult result = runCli(exportOf(file, notes, {notes}));
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(folder.read("notes.txt"), "no data\n");
}

TEST(Export, APieceNeverReplacesAnInputFile) {
    const TemporaryFolder folder;
    const std::string content = sampleData("X", 1559383200, 3600 + 2);
    const std::string file = folder.write("o-2019-06-01T1100.txt", content);
    expectFailure(runCli(exportOf(file, folder.path("o.txt"), {"--split", "3600"})), file);
    EXPECT_EQ(folder.read("o-2019-06-01T1100.txt"), content);
    EXPECT_EQ(folder.names(), (Words{"o-2019-06-01T1000.txt", "o-2019-06-01T1100.txt"}));
}

TEST(Export, OfDataThatNoFileHoldsFailsAndWritesNothing) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleData("X", 1000, 3));
    for (const std::string data : {"X:DATASTAT", "x:DATA", "X:DATA:CH4D", "Y:DATA", "X:"}) {
        expectFailure(
            runCli({"export", "--data", data, "--format", "text", "--output", folder.path("o.txt"), file}),
            data);
        EXPECT_EQ(folder.names(), Words{"a.data"});
    }
}

TEST(Export, WhatCannotBeOpenedFails) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleData("X", 1000, 3));
    for (const std::string &output : {folder.path("none/o.txt"), folder.makeFolder("o")}) {
        expectFailure(runCli(exportOf(file, output)), output);
    }
}

TEST(Export, AFullDiskFailsInEveryFormat) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleData("X", 1000, 3));
    for (const std::string format : {"text", "tob1", "diagnostics"}) {
        const CliResult result = runCli(exportOf(file, "/dev/full", {}, format));
        expectFailure(result, "/dev/full");
        EXPECT_NE(result.err.find("No space left on device"), std::string::npos) << result.err;
    }
}

// The system ends a program that writes beyond the limit, unless it looks after the error itself.
TEST(Export, AFileThatMayNotGrowAnyMoreFailsAndKeepsItsBeginning) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleData("X", 1559383200, 40000));
    CliProcess::Setup setup;
    setup.largestFile = 300'000; // more than one block
    const std::string whole = folder.path("whole");
    const std::string cut = folder.path("cut");
    for (const std::string format : {"text", "tob1"}) {
        expectSilentSuccess(runCli(exportOf(file, whole, {}, format)));
        const CliResult result = runCli(exportOf(file, cut, {}, format), setup);
        expectFailure(result, cut);
        EXPECT_NE(result.err.find("File too large"), std::string::npos) << result.err;
        EXPECT_EQ(folder.read("cut"), folder.read("whole").substr(0, setup.largestFile));
    }
}

TEST(Export, AReadOnlyFolderFailsWithTheReasonInEveryFormat) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleData("X", 1000, 3));
    const std::string locked = folder.makeFolder("locked");
    fs::permissions(locked, fs::perms::owner_read | fs::perms::owner_exec);
    CliProcess::Setup setup;
    setup.obeysFileModes = true;
    for (const std::string format : {"text", "tob1", "diagnostics"}) {
        const CliResult result = runCli(exportOf(file, locked + "/o.txt", {}, format), setup);
        expectFailure(result, locked + "/o.txt");
        EXPECT_NE(result.err.find("Permission denied"), std::string::npos) << result.err;
    }
    EXPECT_TRUE(fs::is_empty(locked));
}

TEST(Export, EveryPieceThatMayNotGrowIsNamed) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleData("X", 1559383200, 2 * 3600));
    CliProcess::Setup setup;
    setup.largestFile = 1000;
    const CliResult result = runCli(exportOf(file, folder.path("o.txt"), {"--split", "3600"}), setup);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 2) << result.err;
    EXPECT_EQ(folder.read("o-2019-06-01T1000.txt").size(), 1000U);
    EXPECT_EQ(folder.read("o-2019-06-01T1100.txt").size(), 1000U);
}

TEST(Export, WhatCanBeReadIsExportedBesideAMissingFile) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleData("X", 1000, 1));
    const std::string missing = folder.path("missing.data");
    expectFailure(runCli(exportOf(file, folder.path("o.txt"), {missing, "--time-columns", "0"})), missing);
    EXPECT_EQ(folder.read("o.txt"), "CH4D\tTEMP\t\t\n0\t20\n");
}

TEST(Export, DoesNotDependOnTheNumberOfJobs) {
    const TemporaryFolder folder;
    for (std::uint32_t i = 0; i < 20; ++i) {
        folder.write("in/" + std::to_string(i) + ".data", sampleData("X", 1000, 1 + 700 * (i % 3)));
    }
    expectSilentSuccess(runCli(exportOf(folder.path("in"), folder.path("one"), {"--jobs", "1"})));
    expectSilentSuccess(runCli(exportOf(folder.path("in"), folder.path("many"), {"--jobs", "10"})));
    EXPECT_EQ(folder.read("many"), folder.read("one"));
}

TEST(Export, ATerminalShowsABarUnlessQuiet) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleData("X", 1000, 3000));
    Terminal terminal;
    CliProcess::Setup setup;
    setup.errorDescriptor = terminal.descriptor();
    EXPECT_EQ(runCli(exportOf(file, folder.path("o.txt")), setup).status, 0);
    const std::string shown = terminal.text();
    EXPECT_NE(shown.find("Exporting ["), std::string::npos) << shown;
    EXPECT_NE(shown.find("] 100 %"), shown.rfind("] 100 %")) << shown; // of loading and of exporting
    EXPECT_TRUE(shown.ends_with("\r\033[K")) << shown;
    EXPECT_EQ(runCli(exportOf(file, folder.path("o.txt"), {"--quiet"}), setup).status, 0);
    EXPECT_EQ(terminal.text(), "");
}

// Blocks end with a record, and a block that is being written is written whole.
TEST(Export, AnInterruptLeavesWholeLines) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleData("X", 1559383200, 300'000));
    Terminal terminal;
    CliProcess::Setup setup;
    setup.errorDescriptor = terminal.descriptor();
    CliProcess process(exportOf(file, folder.path("o.txt")), setup);
    std::string shown;
    while (shown.find("Exporting") == std::string::npos) {
        terminal.waitForText();
        shown += terminal.text();
    }
    process.interrupt();
    const CliResult result = process.finish();
    EXPECT_TRUE(result.signal == SIGINT || result.status == 0); // it may have been done already
    if (fs::exists(folder.path("o.txt"))) {
        const std::string text = folder.read("o.txt");
        EXPECT_TRUE(text.empty() || text.ends_with("\t20\n"));
    }
}

} // namespace

// How the real program writes: whole lines, the progress bar, and what it does when nobody takes them.

#include "cli/CliProcess.h"
#include "cli/SampleFiles.h"
#include "cli/TemporaryFolder.h"
#include "cli/Terminal.h"

#include <algorithm>
#include <csignal>
#include <gtest/gtest.h>

namespace {

// A run with more output than a pipe holds: a point for each of many records, ten a second.
class LargeOutput {
public:
    static constexpr int lines = 40000;

    LargeOutput() {
        std::string text = sampleHeader("X");
        for (int i = 0; i < lines; ++i) {
            text += "DATA\t" + std::to_string(1000 + i / 10) + '\t' + std::to_string(i % 10 * 100'000'000) +
                    "\t1.5\t20\n";
        }
        file_ = folder_.write("a.data", text);
    }
    std::vector<std::string> arguments() const { return {"series", "--variable", "X:DATA:CH4D", file_}; }

private:
    TemporaryFolder folder_;
    std::string file_;
};

TEST(Streams, AnInterruptStopsAtALineEnd) {
    const LargeOutput large;
    CliProcess process(large.arguments());
    process.waitForOutput();
    process.interrupt();
    const CliResult result = process.finish();
    EXPECT_EQ(result.signal, SIGINT);
    EXPECT_TRUE(result.out.ends_with('\n'));
    EXPECT_LT(std::count(result.out.begin(), result.out.end(), '\n'), LargeOutput::lines);
    EXPECT_EQ(result.err, "");
}

TEST(Streams, AnInterruptWhileFilesLoadStopsAtOnce) {
    const LargeOutput large;
    Terminal terminal;
    CliProcess::Setup setup;
    setup.errorDescriptor = terminal.descriptor();
    // It cannot end by itself: its output is not read yet.
    CliProcess process(large.arguments(), setup);
    terminal.waitForText();
    process.interrupt();
    const CliResult result = process.finish();
    EXPECT_EQ(result.signal, SIGINT);
    EXPECT_TRUE(result.out.empty() || result.out.ends_with('\n'));
    EXPECT_LT(std::count(result.out.begin(), result.out.end(), '\n'), LargeOutput::lines);
}

TEST(Streams, APipeThatNobodyReadsEndsTheProgramQuietly) {
    const LargeOutput large;
    CliProcess process(large.arguments());
    process.waitForOutput();
    process.closeOutput();
    const CliResult result = process.finish();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "");
}

TEST(Streams, AFullDiskFails) {
    const LargeOutput large;
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleWithBadChecksum() + sampleData("X", 1000, 2));
    CliProcess::Setup setup;
    setup.outputFile = "/dev/full";
    const std::vector<std::vector<std::string>> runs{
        {"summary", file},  {"variables", file},
        {"messages", file}, {"series", "--variable", "X:DATA:CH4D", file},
        large.arguments(),  {"--help"},
        {"--version"}};
    for (const std::vector<std::string> &arguments : runs) {
        ASSERT_NE(runCli(arguments).out, "") << arguments.front();
        const CliResult result = runCli(arguments, setup);
        EXPECT_EQ(result.status, 1) << arguments.front();
        EXPECT_TRUE(result.err.ends_with("fvqa300-cli: standard output: No space left on device\n"))
            << result.err;
    }
}

// As when a disk gets full on the way: a later write fails, not the first one.
TEST(Streams, AFileThatMayNotGrowAnyMoreKeepsItsBeginning) {
    const LargeOutput large;
    const std::string whole = runCli(large.arguments()).out;
    const TemporaryFolder folder;
    for (const std::size_t limit : {whole.size() / 2, whole.size() - 1}) {
        CliProcess::Setup setup;
        setup.outputFile = folder.write("out", "");
        setup.largestFile = limit;
        const CliResult result = runCli(large.arguments(), setup);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err, "fvqa300-cli: standard output: File too large\n");
        EXPECT_TRUE(folder.read("out") == whole.substr(0, limit)) << folder.read("out").size();
    }
}

TEST(Streams, LargeOutputArrivesWhole) {
    const LargeOutput large;
    const CliResult result = runCli(large.arguments());
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), LargeOutput::lines);
    EXPECT_TRUE(result.out.ends_with("\n4999.9\t1.5\n"));
}

TEST(Streams, ATerminalShowsProgressAndKeepsNothingOfIt) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleData("X", 1000, 2));
    Terminal terminal;
    CliProcess::Setup setup;
    setup.errorDescriptor = terminal.descriptor();
    const CliResult result = runCli({"variables", file}, setup);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "X:DATA:CH4D\tmmol/m^3\nX:DATA:TEMP\tC\n");
    const std::string shown = terminal.text();
    EXPECT_NE(shown.find("  0 %"), std::string::npos) << shown;
    EXPECT_NE(shown.find("100 %"), std::string::npos) << shown;
    EXPECT_TRUE(shown.ends_with("\r\033[K")) << shown;
    EXPECT_EQ(shown.find('\n'), std::string::npos) << shown;
}

TEST(Streams, QuietShowsNoProgress) {
    const TemporaryFolder folder;
    Terminal terminal;
    CliProcess::Setup setup;
    setup.errorDescriptor = terminal.descriptor();
    const CliResult result =
        runCli({"--quiet", "variables", folder.write("a.data", sampleData("X", 1000, 2))}, setup);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(terminal.text(), "");
}

} // namespace

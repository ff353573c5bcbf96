// How the real program writes: whole lines, the progress bar, and what it does when nobody takes them.

#include "cli/CliProcess.h"
#include "cli/SampleFiles.h"
#include "cli/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

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

// A terminal in the place of standard error; what is written to it is read at the end.
class Terminal {
public:
    Terminal() : main_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        ::grantpt(main_);
        ::unlockpt(main_);
        const char *const name = ::ptsname(main_);
        program_ = name == nullptr ? -1 : ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
        if (program_ < 0) {
            ::close(main_);
            throw std::runtime_error("no terminal can be made");
        }
    }
    ~Terminal() {
        ::close(program_);
        ::close(main_);
    }
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    int descriptor() const { return program_; }

    void waitForText() const {
        pollfd stream{main_, POLLIN, 0};
        if (::poll(&stream, 1, CliProcess::patience) != 1) {
            throw std::runtime_error("nothing is written to the terminal");
        }
    }

    std::string text() {
        ::fcntl(main_, F_SETFL, O_NONBLOCK);
        std::array<char, 65536> block{};
        std::string all;
        for (ssize_t count = 0; (count = ::read(main_, block.data(), block.size())) > 0;) {
            all.append(block.data(), static_cast<std::size_t>(count));
        }
        return all;
    }

private:
    int main_;
    int program_ = -1;
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
    CliProcess::Setup setup;
    setup.outputFile = "/dev/full";
    for (const std::vector<std::string> &arguments : {large.arguments(), {"--help"}, {"--version"}}) {
        const CliResult result = runCli(arguments, setup);
        EXPECT_EQ(result.status, 1);
        EXPECT_TRUE(result.err.starts_with("fvqa300-cli: standard output: ")) << result.err;
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

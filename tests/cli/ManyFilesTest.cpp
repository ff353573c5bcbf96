// Thousands of small files in a tree of folders, as a season leaves them, with a few bad ones among them.

#include "cli/CliProcess.h"
#include "cli/SampleFiles.h"
#include "cli/TemporaryFolder.h"
#include "cli/Terminal.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

constexpr std::uint32_t files = 2000;
constexpr std::uint32_t firstSecond = 1'559'415'600;

// Names without padding, so that the order of names is not that of writing.
std::string nameOf(std::uint32_t number) {
    const std::string folders =
        "station" + std::to_string(number % 3) + "/day" + std::to_string(number / 3 % 40) + "/";
    return folders + std::to_string(number);
}

// Each file holds one record of one time series; every tenth is an archive.
class ManyFiles : public testing::Test {
protected:
    void SetUp() override {
        for (std::uint32_t number = 0; number < files; ++number) {
            const std::string second = std::to_string(firstSecond + number);
            const std::string text =
                sampleHeader("X") + sampleRecord(firstSecond + number, std::to_string(number));
            if (number % 10 == 0) {
                const std::string archive = folder_.write(nameOf(number) + ".ghg", "");
                writeArchive(archive, {{"a.metadata", "[Site]\n"}, {"a.data", text}});
            } else {
                folder_.write(nameOf(number) + (number % 7 == 0 ? ".DATA" : ".data"), text);
            }
            series_ += second + '\t' + std::to_string(number) + '\n';
            rows_ += second + "\t0\t" + std::to_string(number) + "\t20\n";
        }
        folder_.write("station1/notes.txt", "no data");
    }

    // Bad in each its own way; what standard error says begins with these, in the order of the names.
    std::vector<std::string> addBadFiles() const {
        const std::vector<std::string> bad{
            folder_.write("station0/day1/broken.ghg", "PK\x03\x04 and nothing more"),
            folder_.write("station0/day39/empty.data", ""),
            folder_.write("station1/day2/letter.data", "Dear reader,\n"),
            folder_.write("station2/cut.zip", "")};
        std::vector<std::string> lines;
        for (const std::string &file : bad) {
            lines.push_back("fvqa300-cli: " + file + ": ");
        }
        return lines;
    }

    static void expectLines(const std::string &text, const std::vector<std::string> &beginnings) {
        std::size_t begin = 0;
        for (const std::string &beginning : beginnings) {
            EXPECT_EQ(text.compare(begin, beginning.size(), beginning), 0) << text;
            const std::size_t end = std::min(text.find('\n', begin), text.size());
            EXPECT_GT(end, begin + beginning.size() + 5) << "no reason: " << text;
            begin = end + 1;
        }
        EXPECT_EQ(begin, text.size()) << text;
    }

    std::vector<std::string> seriesOf(const std::string &path) const {
        return {"series", "--variable", "X:DATA:CH4D", path};
    }

    TemporaryFolder folder_;
    std::string series_; // of CH4D
    std::string rows_;   // of a text export
};

TEST_F(ManyFiles, AllOfATreeAreRead) {
    const CliResult result = runCli(seriesOf(folder_.path()));
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.out == series_);
    EXPECT_EQ(result.err, "");
}

TEST_F(ManyFiles, EachBadOneIsNamedWithItsReasonAndTheOthersAreComplete) {
    const std::vector<std::string> bad = addBadFiles();
    for (const char *const jobs : {"1", "4", "10"}) {
        std::vector<std::string> arguments{"--jobs", jobs};
        for (const std::string &argument : seriesOf(folder_.path())) {
            arguments.push_back(argument);
        }
        const CliResult result = runCli(arguments);
        EXPECT_EQ(result.status, 1) << jobs;
        EXPECT_TRUE(result.out == series_) << jobs;
        expectLines(result.err, bad);
    }
}

TEST_F(ManyFiles, AnExportHoldsTheRecordsOfAllGoodOnes) {
    const std::vector<std::string> bad = addBadFiles();
    const TemporaryFolder target;
    const CliResult result = runCli({"export", "--data", "X:DATA", "--format", "text", "--output",
                                     target.path("all.txt"), folder_.path()});
    EXPECT_EQ(result.status, 1);
    expectLines(result.err, bad);
    EXPECT_TRUE(target.read("all.txt") == "SECONDS\tNANOSECONDS\tCH4D\tTEMP\n" + rows_);
}

TEST_F(ManyFiles, MessagesNamesTheBadOnesAlone) {
    addBadFiles();
    const CliResult result = runCli({"messages", folder_.path()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 4) << result.out;
}

TEST_F(ManyFiles, TheBarGoesFromNothingToAllAndLeavesTheNamesOfTheBadOnes) {
    const std::vector<std::string> bad = addBadFiles();
    Terminal terminal;
    CliProcess::Setup setup;
    setup.errorDescriptor = terminal.descriptor();
    EXPECT_EQ(runCli({"variables", folder_.path()}, setup).status, 1);
    const std::string shown = terminal.text();
    for (const char *const share : {"  0 %", " 50 %", "100 %"}) {
        EXPECT_NE(shown.find(share), std::string::npos) << share;
    }
    for (const std::string &line : bad) {
        EXPECT_NE(shown.find(line), std::string::npos) << line;
    }
    EXPECT_TRUE(shown.ends_with("\r\033[K"));
}

TEST(ManyFilesWithMessages, ComeInTheOrderOfTheirNames) {
    const TemporaryFolder folder;
    std::vector<std::string> paths;
    for (std::uint32_t number = 0; number < files; ++number) {
        paths.push_back(folder.write(nameOf(number) + ".data", sampleWithUnknownZone()));
    }
    std::sort(paths.begin(), paths.end());
    const CliResult result = runCli({"messages", folder.path()});
    EXPECT_EQ(result.status, 1);
    std::size_t begin = 0;
    // Each file has a line for its zone and one for having no records.
    for (const std::string &path : paths) {
        for (int line = 0; line < 2; ++line) {
            ASSERT_EQ(result.out.compare(begin, path.size() + 2, path + ": "), 0)
                << result.out.substr(begin, 200);
            begin = result.out.find('\n', begin) + 1;
        }
    }
    EXPECT_EQ(begin, result.out.size());
}

} // namespace

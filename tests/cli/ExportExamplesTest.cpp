// The examples exported by the real program, held against their own lines.

#include "cli/CliProcess.h"
#include "cli/TemporaryFolder.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace {

using Words = std::vector<std::string>;

const std::string methane = FVQA_EXAMPLES_DIR "/QA330-2019-06-01T130000.data";
const std::string fast = FVQA_EXAMPLES_DIR "/AIU-0412-2019-06-01T133000.data";

Words linesOf(const std::string &text) {
    std::istringstream stream(text);
    Words lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

// The fields of a line between tabs.
Words fieldsOf(const std::string &line) {
    std::istringstream stream(line);
    Words fields;
    for (std::string field; std::getline(stream, field, '\t');) {
        fields.push_back(field);
    }
    return fields;
}

// Lines of an example that begin with `prefix`.
Words linesOfFile(const std::string &path, const std::string &prefix) {
    std::ifstream file(path);
    Words lines;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(prefix)) {
            lines.push_back(line);
        }
    }
    return lines;
}

class ExportExamples : public testing::Test {
protected:
    // Exports without a word, and returns the file.
    std::string exported(const std::string &data, const std::string &format, const Words &files,
                         const Words &options = {}) {
        Words words{"export", "--data", data, "--format", format, "--output", folder_.path("out.x")};
        words.insert(words.end(), options.begin(), options.end());
        words.insert(words.end(), files.begin(), files.end());
        const CliResult result = runCli(words);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, "");
        return folder_.names() == Words{"out.x"} ? folder_.read("out.x") : std::string();
    }

    TemporaryFolder folder_;
};

TEST_F(ExportExamples, TextHasALineForEachRecordWithTheTimesOfTheFile) {
    const Words source = linesOfFile(methane, "DATA\t");
    const Words lines = linesOf(exported("QA330:DATA", "text", {methane}, {"--time-columns", "15"}));
    ASSERT_EQ(lines.size(), 1 + source.size() - 1); // one header more, one wrong checksum less
    std::size_t dropped = 0;
    for (std::size_t i = 1; i < lines.size(); ++i) {
        Words fields = fieldsOf(lines[i]);
        Words wanted = fieldsOf(source[i - 1 + dropped]);
        if (fields[0] != wanted[1] || fields[1] != wanted[2]) {
            ++dropped;
            wanted = fieldsOf(source[i - 1 + dropped]);
        }
        ASSERT_EQ(fields[0], wanted[1]);              // SECONDS
        ASSERT_EQ(fields[1], wanted[2]);              // NANOSECONDS
        ASSERT_EQ(fields[2], wanted[3]);              // DATE
        ASSERT_EQ(fields[3], wanted[4].substr(0, 8)); // TIME, without its milliseconds
        ASSERT_EQ(fields.size(), 4U + 7 + 12);
        ASSERT_EQ(fields[10], wanted[11]); // DIAG
    }
    EXPECT_EQ(dropped, 1U);
}

TEST_F(ExportExamples, TextLinesReadAsTheFileDoes) {
    const Words lines = linesOf(exported("QA330:DATA", "text", {methane}));
    EXPECT_EQ(lines[0],
              "SECONDS\tNANOSECONDS\tCH4D\tCH4\tTEMP\tPRESSURE\tRSSI\tDROPRATE\tDIAG\tDIAG:SETTLING\t"
              "DIAG:NOSIGNAL\tDIAG:REFUNLOCKED\tDIAG:LASERDRIFT\tDIAG:BLOCKDRIFT\t"
              "DIAG:MOTORSPINNING\tDIAG:PUMPON\tDIAG:TOPHEATERON\tDIAG:BOTTOMHEATERON\t"
              "DIAG:CALIBRATING\tDIAG:LOWSUPPLY\tDIAG:BOXCONNECTED");
    // From DATA 1559415600 0 ... 0.066567 1.92226 20.142 84.4402 71.34 0.0 2433, which is 0x981.
    EXPECT_EQ(lines[1], "1559415600\t0\t0.066567\t1.92226\t20.142\t84.4402\t71.34\t0\t2433\t"
                        "1\t0\t0\t0\t0\t0\t0\t8\t9\t0\t0\t12");
}

TEST_F(ExportExamples, Tob1HasARecordForEachRecord) {
    const std::string file = exported("AIU-0412:DATA", "tob1", {fast});
    const std::size_t records = linesOfFile(fast, "DATA\t").size();
    const std::string lastType = "\"IEEE4\"\r\n";
    const std::size_t header = file.find(lastType) + lastType.size();
    const std::size_t values = fieldsOf(linesOfFile(fast, "DATAH\t").at(0)).size() - 6; // tag, times, CHK
    EXPECT_EQ((file.size() - header), records * (12 + 4 * values));
}

TEST_F(ExportExamples, DiagnosticsTellOfTheWashing) {
    const Words lines = linesOf(exported("QA330:DATA", "diagnostics", {methane}));
    Words washing;
    std::string before = "0";
    for (const std::string &line : lines) {
        const Words fields = fieldsOf(line);
        if (fields[5] != before && fields[5] != "PUMP") {
            before = fields[5];
            washing.push_back(fields[0].substr(0, 19) + ' ' + fields[5]);
        }
    }
    // 13:03:53 in Denver, for eight seconds.
    EXPECT_EQ(washing, (Words{"2019-06-01 19:03:53 1", "2019-06-01 19:04:01 0"}));
}

TEST_F(ExportExamples, ArchivesOfHalfHoursGiveAPieceEach) {
    const std::string folder = FVQA_EXAMPLES_DIR;
    const Words archives{folder + "/2019-06-01T123000_AIU-0412.ghg",
                         folder + "/2019-06-01T120000_AIU-0412.ghg",
                         folder + "/2019-06-01T130000_AIU-0412.ghg"};
    const std::string whole = exported("AIU-0412:DATA", "text", archives);
    const std::string header = whole.substr(0, whole.find('\n') + 1);
    EXPECT_EQ(linesOf(whole).size(), 1U + 3 * 1800);
    exported("AIU-0412:DATA", "text", archives, {"--split", "1800"});
    std::string together = header;
    for (const std::string name :
         {"out-2019-06-01T1200.x", "out-2019-06-01T1230.x", "out-2019-06-01T1300.x"}) {
        const std::string piece = folder_.read(name);
        EXPECT_TRUE(piece.starts_with(header));
        together += piece.substr(header.size());
    }
    EXPECT_EQ(together, whole);
}

TEST_F(ExportExamples, AllFilesOfAFolderExportTogether) {
    const std::string text = exported("AIU-0412:DATA", "text", {FVQA_EXAMPLES_DIR}, {"--time-columns", "1"});
    EXPECT_EQ(linesOf(text).size(), 1U + 3 * 1800 + 3600);
}

} // namespace

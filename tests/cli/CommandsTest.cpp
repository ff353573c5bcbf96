// The commands of the real program: what they print and how they end.

#include "cli/CliProcess.h"
#include "cli/SampleFiles.h"
#include "cli/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

void expectClean(const CliResult &result, const std::string &out) {
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, out);
    EXPECT_EQ(result.err, "");
}

// The block of a file of sampleData(), whose record lines have `lineLength` bytes with their line feeds.
std::string summaryBlock(const std::string &file, const std::string &instrument, std::size_t lineLength,
                         std::size_t records, const std::string &time) {
    const std::size_t begin = sampleHeader(instrument).size();
    return "Filename: " + file + "\nSubFilename: \nTag: DATA\nInstrument: " + instrument +
           "\nSerial Number: SN-1\nVersion: 1.2.3\nTimezone: UTC\nBegin: " + std::to_string(begin) +
           "\nEnd: " + std::to_string(begin + records * lineLength - 1) + "\nBegin Time: " + time +
           "\nEnd Time: " + time + "\n\n";
}

TEST(Commands, VersionIsTheNameAndTheNumber) {
    expectClean(runCli({"--version"}), "fvqa300-cli " FVQA_VERSION "\n");
}

TEST(Commands, HelpGoesToStandardOutput) {
    const std::vector<std::string> commands{"",       "summary", "variables", "messages",
                                            "series", "plot",    "export"};
    for (const std::string &command : commands) {
        const CliResult result = command.empty() ? runCli({"--help"}) : runCli({command, "--help"});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.err, "");
        EXPECT_TRUE(result.out.starts_with("Usage: fvqa300-cli " + command)) << result.out;
    }
}

TEST(Commands, WrongUsageEndsWithTwoAndNamesTheOption) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> rows{
        {{}, "no command"},
        {{"summary"}, "FILE"},
        {{"plot", "a"}, "plot"},
        {{"--nonsense", "summary", "a"}, "--nonsense"},
        {{"summary", "--jobs", "0", "a"}, "--jobs"},
        {{"series", "--variable", "k", "--from", "abc", "a"}, "--from"},
        {{"series", "--variable", "k", "a", "--to"}, "--to"},
        {{"series", "a"}, "--variable"},
    };
    for (const auto &[arguments, named] : rows) {
        const CliResult result = runCli(arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(result.err.starts_with("fvqa300-cli: ")) << result.err;
        EXPECT_NE(result.err.find(named), std::string::npos) << result.err;
        EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
    }
}

TEST(Commands, SummaryPrintsTheBlocksOfAllFilesInTheOrderOfTheirTimes) {
    const TemporaryFolder folder;
    const std::string late = folder.write("late.data", sampleData("LATE", 1559350000, 2));
    const std::string early = folder.write("early.data", sampleData("EARLY", 100, 1));
    // Times print coarsely.
    expectClean(runCli({"summary", late, early}), summaryBlock(early, "EARLY", 16, 1, "100") +
                                                      summaryBlock(late, "LATE", 23, 2, "1.55935e+09"));
}

TEST(Commands, VariablesPrintsEachKeyWithItsUnitInKeyOrder) {
    const TemporaryFolder folder;
    const std::string b = folder.write("b.data", sampleData("B", 1, 1));
    const std::string a = folder.write(
        "a.data", "Instrument:\tA\nDATASTATH\tSECONDS\tFLOW (l/min)\tMYSTERY\nDATASTAT\t1\t2\t3\n");
    expectClean(runCli({"variables", b, a}), "A:DATASTAT:FLOW (l/min)\tl/min\n"
                                             "A:DATASTAT:MYSTERY\t\n"
                                             "B:DATA:CH4D\tmmol/m^3\n"
                                             "B:DATA:TEMP\tC\n");
}

TEST(Commands, MessagesIsSilentAboutFilesInGoodOrder) {
    const TemporaryFolder folder;
    expectClean(runCli({"messages", folder.write("a.data", sampleData("QA330", 1, 2))}), "");
}

TEST(Commands, MessagesPrintsEachFilesMessagesInTheOrderGiven) {
    const TemporaryFolder folder;
    const std::string b = folder.write("b.data", sampleWithBadChecksum());
    const std::string a = folder.write("a.data", sampleWithUnknownZone());
    const CliResult result = runCli({"messages", b, a});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.out.starts_with(b + ": Checksum errors: 1\n")) << result.out;
    EXPECT_NE(result.out.find('\n' + a + ": ERROR: Unable to open file: "), std::string::npos) << result.out;
    EXPECT_EQ(result.err, "fvqa300-cli: " + b + ": Checksum or parse errors\n" +      //
                              "fvqa300-cli: " + a + ": The file holds no records\n" + //
                              "fvqa300-cli: " + a + ": Checksum or parse errors\n");
}

TEST(Commands, MessagesPrintsTheChecksumLineBeforeTheParseErrors) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleWithBadChecksum() + sampleWithUnknownZone());
    const CliResult result = runCli({"messages", file});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.out.starts_with(file + ": Checksum errors: 1\n" + file + ": ERROR: ")) << result.out;
}

TEST(Commands, MessagesTakesAFileWithoutRecordsForNoFailure) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleHeader("QA330"));
    const CliResult result = runCli({"messages", file});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.out.starts_with(file + ": ")) << result.out;
    EXPECT_EQ(result.err, "");
}

TEST(Commands, OnlyMessagesFailsForMessages) {
    const TemporaryFolder folder;
    const std::string file =
        folder.write("a.data", sampleWithBadChecksum() + sampleData("QA330", 1, 2) + sampleWithUnknownZone());
    EXPECT_EQ(runCli({"messages", file}).status, 1);
    for (const std::string command : {"summary", "variables"}) {
        const CliResult result = runCli({command, file});
        EXPECT_EQ(result.status, 0) << command;
        EXPECT_EQ(result.err, "") << command;
    }
}

TEST(Commands, SeriesPrintsRecordsInTheShortestFormThatReadsBack) {
    const TemporaryFolder folder;
    const std::string file =
        folder.write("a.data", sampleHeader("QA330") + "DATA\t1559350001\t250000000\t1.5\t20\n"
                                                       "DATA\t1559350002\t0\t0.1\t20\n"
                                                       "DATA\t1559350003\t0\t-nan\t20\n"
                                                       "DATA\t1559350004\t0\t1e30\t20\n");
    // 0.1 as a float, in the digits that its double needs.
    expectClean(runCli({"series", "--variable", "QA330:DATA:CH4D", file}),
                "1559350001.25\t1.5\n1559350002\t0.10000000149011612\n1559350003\tnan\n"
                "1559350004\t1.0000000150474662e+30\n");
}

TEST(Commands, SeriesKeepsToTheWindowWithBothItsEnds) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleData("QA330", 1000, 10));
    expectClean(runCli({"series", "--variable", "QA330:DATA:CH4D", "--from", "1002", "--to", "1004", file}),
                "1002\t2\n1003\t3\n1004\t4\n");
    expectClean(runCli({"series", "--variable", "QA330:DATA:CH4D", file, "--from", "1008.5"}), "1009\t9\n");
    expectClean(runCli({"series", "--variable", "QA330:DATA:CH4D", "--to", "1000", file}), "1000\t0\n");
}

TEST(Commands, SeriesPrintsTheWantedStatisticOfEachPeriod) {
    const TemporaryFolder folder;
    // 6000 s of data: more than 5000, so minutes are averaged. Each holds 1, 2 and 6.
    std::string text = sampleHeader("QA330");
    for (std::uint32_t minute = 0; minute < 101; ++minute) {
        text += sampleRecord(600000 + 60 * minute + 1, "1") + sampleRecord(600000 + 60 * minute + 2, "2") +
                sampleRecord(600000 + 60 * minute + 3, "6");
    }
    const std::string file = folder.write("a.data", text);
    const std::vector<std::pair<std::string, std::string>> rows{
        {"average", "3"}, {"maximum", "6"}, {"minimum", "1"}};
    for (const auto &[statistic, value] : rows) {
        std::string expected;
        for (int minute = 1; minute <= 100; ++minute) {
            expected += std::to_string(600000 + 60 * minute) + '\t' + value + '\n';
        }
        expectClean(runCli({"series", "--variable", "QA330:DATA:CH4D", "--statistic", statistic, file}),
                    expected);
    }
}

TEST(Commands, SeriesOfAVariableThatNoFileHoldsFails) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleData("QA330", 1000, 10));
    for (const std::string key : {"QA330:DATA:CO2", "CH4D", "qa330:DATA:CH4D"}) {
        const CliResult result = runCli({"series", "--variable", key, file});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(result.err.starts_with("fvqa300-cli: " + key + ": ")) << result.err;
    }
}

TEST(Commands, SeriesWithoutPointsInTheWindowIsNoFailure) {
    const TemporaryFolder folder;
    const std::string file = folder.write("a.data", sampleData("QA330", 1000, 10));
    expectClean(runCli({"series", "--variable", "QA330:DATA:CH4D", "--from", "5000", file}), "");
    expectClean(runCli({"series", "--variable", "QA330:DATA:CH4D", "--from", "1005", "--to", "1001", file}),
                "");
}

TEST(Commands, OutputDoesNotDependOnTheNumberOfJobs) {
    const TemporaryFolder folder;
    // All begin at one time, so that only the order of merging tells them apart.
    for (std::uint32_t i = 0; i < 30; ++i) {
        folder.write(std::to_string(i) + ".data",
                     sampleData("I" + std::to_string(i), 1000, 1 + 2000 * (i % 3)));
    }
    folder.write("bad.data", sampleWithBadChecksum());
    for (const std::string command : {"summary", "variables", "messages"}) {
        const CliResult one = runCli({"--jobs", "1", command, folder.path()});
        EXPECT_EQ(one.status, command == "messages" ? 1 : 0);
        EXPECT_NE(one.out, "");
        for (const std::string jobs : {"2", "10", "4000000000"}) {
            const CliResult many = runCli({"--jobs", jobs, command, folder.path()});
            EXPECT_EQ(many.status, one.status);
            EXPECT_EQ(many.out, one.out);
            EXPECT_EQ(many.err, one.err);
        }
    }
}

TEST(Commands, TheLocaleChangesNothing) {
    const TemporaryFolder folder;
    const std::string file =
        folder.write("Z\xc3\xbcrich.data", sampleHeader("QA330") + sampleRecord(1000, "1.5"));
    const std::vector<std::string> series{"series", "--variable", "QA330:DATA:CH4D", "--from", "999.5", file};
    const CliResult plain = runCli({"summary", file});
    EXPECT_EQ(plain.status, 0);
    EXPECT_NE(plain.out.find("Filename: " + file + '\n'), std::string::npos) << plain.out;
    for (const std::string locale : {"de_DE.UTF-8", "C", "tr_TR.ISO-8859-9"}) {
        CliProcess::Setup setup;
        setup.environment = {"LC_ALL=" + locale};
        expectClean(runCli(series, setup), "1000\t1.5\n");
        EXPECT_EQ(runCli({"summary", file}, setup).out, plain.out);
    }
}

} // namespace

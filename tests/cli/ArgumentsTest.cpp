#include "cli/Arguments.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

struct WrongUsage {
    std::vector<std::string> arguments;
    std::string named; // stands in the message
};

TEST(Arguments, WrongUsageIsRefusedByNamingWhatIsWrong) {
    const std::vector<WrongUsage> rows{
        {{}, "no command"},
        {{"--quiet"}, "no command"},
        {{"draw", "a"}, "'draw'"},
        {{"Summary", "a"}, "'Summary'"},
        {{"summary"}, "FILE"},
        {{"summary", "--"}, "FILE"},
        {{"summary", "--nonsense", "a"}, "'--nonsense'"},
        {{"summary", "-q", "a"}, "'-q'"},
        {{"--variable", "k", "series", "a"}, "'--variable'"},
        {{"summary", "--variable", "k", "a"}, "'--variable'"},
        {{"summary", "--jobs", "0", "a"}, "--jobs"},
        {{"summary", "--jobs", "-1", "a"}, "--jobs"},
        {{"summary", "--jobs", "2x", "a"}, "--jobs"},
        {{"summary", "--jobs", "", "a"}, "--jobs"},
        {{"summary", "--jobs", "99999999999", "a"}, "--jobs"},
        {{"summary", "a", "--jobs"}, "--jobs"},
        {{"summary", "a", "--zoneinfo"}, "--zoneinfo"},
        {{"summary", "--quiet=yes", "a"}, "--quiet"},
        {{"series", "a"}, "--variable"},
        {{"series", "--variable", "", "a"}, "--variable"},
        {{"series", "--variable", "k", "--variable", "l", "a"}, "--variable"},
        {{"series", "--variable", "k", "--statistic", "median", "a"}, "--statistic"},
        {{"series", "--variable", "k", "--statistic", "max", "a"}, "--statistic"},
        {{"series", "--variable", "k", "--from", "abc", "a"}, "--from"},
        {{"series", "--variable", "k", "--from", "1,5", "a"}, "--from"},
        {{"series", "--variable", "k", "--from", " 1", "a"}, "--from"},
        {{"series", "--variable", "k", "--from", "nan", "a"}, "--from"},
        {{"series", "--variable", "k", "--to", "1h", "a"}, "--to"},
        {{"series", "--variable", "k", "--to", "", "a"}, "--to"},
    };
    for (const WrongUsage &row : rows) {
        try {
            parseArguments(row.arguments);
            ADD_FAILURE() << "accepted: a row with " << row.named;
        } catch (const UsageError &error) {
            EXPECT_NE(std::string(error.what()).find(row.named), std::string::npos) << error.what();
        }
    }
}

TEST(Arguments, WrongUsageOfExportIsRefusedByNamingTheOption) {
    const std::vector<std::string> whole{"export", "--data", "Q:DATA", "--format", "text", "--output", "o"};
    const auto with = [&whole](std::initializer_list<std::string> more) {
        std::vector<std::string> arguments = whole;
        arguments.insert(arguments.end(), more);
        arguments.emplace_back("a");
        return arguments;
    };
    EXPECT_EQ(parseArguments(with({})).action, Arguments::Action::run);
    const std::vector<WrongUsage> rows{
        {whole, "FILE"},
        {{"export", "a"}, "--data"},
        {{"export", "--data", "Q:DATA", "--output", "o", "a"}, "--format"},
        {{"export", "--data", "Q:DATA", "--format", "text", "a"}, "--output"},
        {{"export", "--format", "text", "--output", "o", "a"}, "--data"},
        {{"export", "--data", "QDATA", "a"}, "--data"},
        {{"export", "--data", "", "a"}, "--data"},
        {{"export", "--data", ":", "a"}, "--data"},
        {with({"--data", "Q:DATA"}), "--data"},
        {with({"--format", "csv"}), "--format"},
        {with({"--format", "TEXT"}), "--format"},
        {with({"--format", ""}), "--format"},
        {with({"--output", ""}), "--output"},
        {with({"--time-columns", ""}), "--time-columns"},
        {with({"--time-columns", "64"}), "--time-columns"},
        {with({"--time-columns", "-1"}), "--time-columns"},
        {with({"--time-columns", "date,hour"}), "--time-columns"},
        {with({"--split", "900"}), "--split"},
        {with({"--split", "-1800"}), "--split"},
        {with({"--split", "1h"}), "--split"},
        {with({"--split", ""}), "--split"},
        {with({"--split", "99999999999"}), "--split"},
        {with({"--from", "0"}), "'--from'"},
        {{"series", "--variable", "k", "--format", "text", "a"}, "'--format'"},
    };
    for (const WrongUsage &row : rows) {
        try {
            parseArguments(row.arguments);
            ADD_FAILURE() << "accepted: a row with " << row.named;
        } catch (const UsageError &error) {
            EXPECT_NE(std::string(error.what()).find(row.named), std::string::npos) << error.what();
        }
    }
}

TEST(Arguments, AnExportIsOneFileWithSecondsAndNanosecondsUnlessAskedOtherwise) {
    const Arguments plain =
        parseArguments({"export", "--data", "Q:DATA", "--format", "tob1", "--output", "./o.x", "a"});
    EXPECT_EQ(plain.exporting.instrument, "Q");
    EXPECT_EQ(plain.exporting.tag, "DATA");
    EXPECT_EQ(plain.exporting.request.format, ExportFormat::tob1);
    EXPECT_EQ(plain.exporting.request.targetName, "./o.x");
    EXPECT_EQ(plain.exporting.request.timeColumns, 3U);
    EXPECT_EQ(plain.exporting.request.splitPeriod, 0);
    const Arguments other =
        parseArguments({"export", "a", "--data=Q:D:E", "--format=diagnostics", "--output=o",
                        "--time-columns=timestamp,offset", "--split", "86400"});
    EXPECT_EQ(other.exporting.instrument, "Q");
    EXPECT_EQ(other.exporting.tag, "D:E");
    EXPECT_EQ(other.exporting.request.format, ExportFormat::diagnostics);
    EXPECT_EQ(other.exporting.request.timeColumns, 48U);
    EXPECT_EQ(other.exporting.request.splitPeriod, 86400);
}

TEST(Arguments, DefaultsAreTheWholeRangeOfAverages) {
    const Arguments arguments = parseArguments({"series", "--variable", "QA330:DATA:CH4D", "a"});
    EXPECT_EQ(arguments.action, Arguments::Action::run);
    EXPECT_EQ(arguments.command, Command::series);
    EXPECT_EQ(arguments.series.variable, "QA330:DATA:CH4D");
    EXPECT_EQ(arguments.series.selector, "");
    EXPECT_EQ(arguments.series.from, 0.0);
    EXPECT_EQ(arguments.series.to, 2147483648.0);
    EXPECT_FALSE(arguments.zoneDirectory);
    EXPECT_FALSE(arguments.jobs);
    EXPECT_FALSE(arguments.quiet);
    EXPECT_EQ(arguments.files, std::vector<std::string>{"a"});
}

TEST(Arguments, StatisticsAreNamedInFull) {
    const std::vector<std::pair<std::string, std::string>> rows{
        {"average", ""}, {"maximum", "max"}, {"minimum", "min"}};
    for (const auto &[name, selector] : rows) {
        EXPECT_EQ(parseArguments({"series", "--variable", "k", "--statistic", name, "a"}).series.selector,
                  selector);
    }
}

TEST(Arguments, TimesAreReadInFull) {
    const Arguments arguments =
        parseArguments({"series", "--from", "-5", "--to", "1559350000.25", "--variable", "k", "a"});
    EXPECT_EQ(arguments.series.from, -5.0);
    EXPECT_EQ(arguments.series.to, 1559350000.25);
    EXPECT_EQ(parseArguments({"series", "--variable", "k", "--to", "inf", "a"}).series.to,
              std::numeric_limits<double>::infinity());
}

TEST(Arguments, OptionsMayStandBeforeBetweenAndBehindFiles) {
    const Arguments arguments =
        parseArguments({"--quiet", "summary", "--jobs", "3", "a", "--zoneinfo=zones", "b"});
    EXPECT_TRUE(arguments.quiet);
    EXPECT_EQ(arguments.jobs, 3U);
    EXPECT_EQ(arguments.zoneDirectory, "zones");
    EXPECT_EQ(arguments.files, (std::vector<std::string>{"a", "b"}));
}

TEST(Arguments, NothingBehindTwoDashesIsAnOption) {
    const Arguments arguments = parseArguments({"messages", "--", "--jobs", "--", "--help"});
    EXPECT_EQ(arguments.files, (std::vector<std::string>{"--jobs", "--", "--help"}));
}

TEST(Arguments, ASingleDashIsAFile) {
    EXPECT_EQ(parseArguments({"summary", "-"}).files, std::vector<std::string>{"-"});
}

TEST(Arguments, TheLastOfARepeatedOptionCounts) {
    EXPECT_EQ(parseArguments({"summary", "--jobs", "1", "--jobs", "2", "a"}).jobs, 2U);
}

TEST(Arguments, HelpIsThatOfTheCommandBeforeIt) {
    EXPECT_EQ(parseArguments({"--help"}).command, Command::none);
    const Arguments arguments = parseArguments({"series", "--help"});
    EXPECT_EQ(arguments.action, Arguments::Action::showHelp);
    EXPECT_EQ(arguments.command, Command::series);
}

TEST(Arguments, VersionNeedsNoCommand) {
    EXPECT_EQ(parseArguments({"--version"}).action, Arguments::Action::showVersion);
}

} // namespace

#include "tools/GenerateOptions.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

GenerateOptions parse(const std::vector<const char *> &arguments) {
    return parseGenerateOptions(arguments);
}

std::string complaint(const std::vector<const char *> &arguments) {
    try {
        parse(arguments);
    } catch (const UsageError &error) {
        return error.what();
    }
    return "none";
}

} // namespace

TEST(GenerateOptions, EveryWrongUsageNamesItsOption) {
    const struct {
        std::vector<const char *> arguments;
        const char *option;
    } rows[] = {
        {{}, "--kind"},
        {{"--kind", "qa999", "--hours", "1", "--output", "x"}, "--kind"},
        {{"--kind", "qa330", "--output", "x"}, "--hours"},
        {{"--kind", "qa330", "--hours", "1", "--megabytes", "1", "--output", "x"}, "--hours"},
        {{"--kind", "qa330", "--hours", "1"}, "--output"},
        {{"--kind", "qa330", "--hours", "1", "--output", ""}, "--output"},
        {{"--kind", "qa330", "--hours", "1", "--output"}, "--output"},
        {{"--kind", "qa330", "--hours", "-1", "--output", "x"}, "--hours"},
        {{"--kind", "qa330", "--hours", "0", "--output", "x"}, "--hours"},
        {{"--kind", "qa330", "--hours", "nan", "--output", "x"}, "--hours"},
        {{"--kind", "qa330", "--hours", "1h", "--output", "x"}, "--hours"},
        {{"--kind", "qa330", "--megabytes", "", "--output", "x"}, "--megabytes"},
        {{"--kind", "qa330", "--hours", "1", "--count", "1", "--output", "x"}, "--count"},
        {{"--kind", "qa330", "--hours", "1", "--compression", "1", "--output", "x"}, "--compression"},
        {{"--kind", "archives", "--hours", "1", "--output", "x"}, "--hours"},
        {{"--kind", "archives", "--output", "x"}, "--count"},
        {{"--kind", "archives", "--count", "0", "--output", "x"}, "--count"},
        {{"--kind", "archives", "--count", "1", "--instrument", "a/b", "--output", "x"}, "--instrument"},
        {{"--kind", "archives", "--count", "1", "--compression", "10", "--output", "x"}, "--compression"},
        {{"--kind", "qa330", "--hours", "1", "--rate", "3", "--output", "x"}, "--rate"},
        {{"--kind", "qa330", "--hours", "1", "--rate", "0", "--output", "x"}, "--rate"},
        {{"--kind", "qa330", "--hours", "1", "--seed", "1.5", "--output", "x"}, "--seed"},
        {{"--kind", "qa330", "--hours", "1", "--start", "4294967296", "--output", "x"}, "--start"},
        {{"--kind", "qa330", "--hours", "1", "--blocks", "0", "--output", "x"}, "--blocks"},
        {{"--kind", "qa330", "--hours", "1", "--instrument", "a\tb", "--output", "x"}, "--instrument"},
        {{"--kind", "qa330", "--kind", "qa330", "--hours", "1", "--output", "x"}, "--kind"},
        {{"--kind", "qa330", "--hours", "1", "--colour", "red", "--output", "x"}, "--colour"},
        {{"x.data"}, "x.data"},
    };
    for (const auto &row : rows) {
        EXPECT_TRUE(complaint(row.arguments).starts_with(row.option)) << complaint(row.arguments);
    }
}

TEST(GenerateOptions, ValuesFollowInTheNextArgumentOrBehindAnEqualsSign) {
    const GenerateOptions options =
        parse({"--kind=qa34xx", "--hours", "0.5", "--seed=7", "--output=a=b.data", "--rate", "5"});
    EXPECT_EQ(options.kind, OutputKind::Qa34xx);
    EXPECT_EQ(options.recording.seed, 7U);
    EXPECT_EQ(options.output, "a=b.data");
    EXPECT_FALSE(options.length.isReached(8999, 0));
    EXPECT_TRUE(options.length.isReached(9000, 0));
}

TEST(GenerateOptions, ArchivesBeginAtTheHalfHourAtOrBeforeTheStart) {
    EXPECT_EQ(
        parse({"--kind", "archives", "--count", "1", "--start", "3599", "--output", "x"}).recording.start,
        1800);
    EXPECT_EQ(
        parse({"--kind", "archives", "--count", "1", "--start", "3600", "--output", "x"}).recording.start,
        3600);
}

TEST(GenerateOptions, HelpWinsOverEverythingElse) {
    EXPECT_TRUE(parse({"--kind", "nonsense", "--help"}).help);
    EXPECT_NE(generateHelp().find("--bad-checksums"), std::string_view::npos);
}

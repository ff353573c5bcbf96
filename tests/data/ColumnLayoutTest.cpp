#include "data/ColumnLayout.h"

#include "data/UnitTable.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Kind = FieldReader::Kind;
using Names = std::vector<std::string>;

ColumnLayout layOut(const Names &columns, const Names &flags = {}, std::string_view tag = "DATA") {
    return layOutColumns(tag, columns, flags);
}

} // namespace

TEST(ColumnLayout, KeywordsAreWholeNamesInCapitalsAndAllElseIsAValue) {
    struct Row {
        const char *name;
        Kind kind;
    };
    for (const Row &row : {Row{"SECONDS", Kind::seconds},
                           Row{"NANOSECONDS", Kind::nanoseconds},
                           Row{"DATE", Kind::date},
                           Row{"TIME", Kind::timeOfDay},
                           Row{"DIAG", Kind::diagnosticWord},
                           Row{"CHK", Kind::checksum},
                           Row{"FILENAME", Kind::skip},
                           Row{"REMARK", Kind::skip},
                           Row{"", Kind::skip},
                           Row{"CH4D", Kind::value},
                           Row{"seconds", Kind::value},
                           Row{"Time", Kind::value},
                           Row{"SECONDS ", Kind::value},
                           Row{" SECONDS", Kind::value},
                           Row{"SECONDS (s)", Kind::value},
                           Row{"TIME(h)", Kind::value},
                           Row{"DIAG (DIAG)", Kind::value},
                           Row{"CHK ()", Kind::value},
                           Row{" ", Kind::value},
                           Row{"REMARKS", Kind::value},
                           Row{"DATEX", Kind::value}}) {
        const ColumnLayout layout = layOut({row.name, "X"});
        ASSERT_EQ(layout.readers.size(), 2U) << row.name;
        EXPECT_EQ(layout.readers[0].kind, row.kind) << row.name;
    }
}

TEST(ColumnLayout, TimeChecksumAndTextColumnsGiveNoValueColumn) {
    const ColumnLayout layout =
        layOut({"SECONDS", "NANOSECONDS", "DATE", "TIME", "CHK", "FILENAME", "REMARK", ""});
    EXPECT_TRUE(layout.valueNames.empty());
    EXPECT_TRUE(layout.valueUnits.empty());
}

TEST(ColumnLayout, ANameWithAUnitSuffixNeverMatchesAKeyword) {
    const ColumnLayout layout = layOut({"CH4 (umol/mol)", "SECONDS (s)", "DIAG (DIAG)"}, {"A"});
    EXPECT_EQ(layout.valueNames, (Names{"CH4 (umol/mol)", "SECONDS (s)", "DIAG (DIAG)"}));
    EXPECT_EQ(layout.valueUnits, (Names{"umol/mol", "s", "DIAG"}));
}

TEST(ColumnLayout, ADiagnosticColumnIsFollowedByOneFlagColumnForEachBitName) {
    const ColumnLayout layout = layOut({"A", "DIAG", "CH4"}, {"PUMPON", "", "A:B"});
    EXPECT_EQ(layout.valueNames, (Names{"A", "DIAG", "DIAG:PUMPON", "DIAG:", "DIAG:A:B", "CH4"}));
    EXPECT_EQ(layout.valueUnits, (Names{"", "DIAG", "BOOL", "BOOL", "BOOL", "umol/mol"}));
    EXPECT_EQ(layout.readers[0].firstValue, 0U);
    EXPECT_EQ(layout.readers[1].firstValue, 1U);
    EXPECT_EQ(layout.readers[1].flagCount, 3U);
    EXPECT_EQ(layout.readers[2].firstValue, 5U);
}

TEST(ColumnLayout, ADiagnosticColumnWithoutBitNamesIsOneValueColumn) {
    const ColumnLayout layout = layOut({"DIAG"});
    EXPECT_EQ(layout.valueNames, (Names{"DIAG"}));
    EXPECT_EQ(layout.valueUnits, (Names{"DIAG"}));
}

TEST(ColumnLayout, TheUnitIsWhatStandsBetweenTheFirstParenthesisAndTheNextClosingOne) {
    struct Row {
        const char *name;
        const char *unit;
    };
    for (const Row &row : {Row{"Q (nmol/mol)", "nmol/mol"}, Row{"Q(", ""}, Row{"Q(abc", "abc"},
                           Row{"Q()", ""}, Row{"Q (a) (b)", "a"}, Row{"Q ((a))", "(a"}, Row{"Q ) (a)", "a"},
                           Row{"(a)Q", "a"}, Row{"Q )a", ""}, Row{"Q (\xb5g)", "\xb5g"}}) {
        EXPECT_EQ(layOut({row.name}).valueUnits, Names{row.unit}) << row.name;
        EXPECT_EQ(unitOf(row.name), row.unit) << row.name;
    }
}

TEST(ColumnLayout, AnUnknownNameWithoutParenthesesHasTheEmptyUnit) {
    EXPECT_EQ(layOut({"NEVER HEARD OF"}).valueUnits, Names{""});
}

TEST(ColumnLayout, AUnitInAColumnNameLeavesTheBareNamesUnitAsItIs) {
    layOut({"CH4 (nmol/mol)"});
    EXPECT_EQ(unitOf("CH4 (nmol/mol)"), "nmol/mol");
    EXPECT_EQ(unitOf("CH4"), "umol/mol");
    EXPECT_EQ(layOut({"CH4"}).valueUnits, Names{"umol/mol"});
}

TEST(ColumnLayout, AUnitSetLaterCountsForTheColumnsSetUpAfterIt) {
    EXPECT_EQ(layOut({"ColumnLayout"}).valueUnits, Names{""});
    setUnit("ColumnLayout", "first");
    EXPECT_EQ(layOut({"ColumnLayout"}).valueUnits, Names{"first"});
    setUnit("ColumnLayout", "second");
    EXPECT_EQ(layOut({"ColumnLayout"}).valueUnits, Names{"second"});
}

TEST(ColumnLayout, AUnitInParenthesesOverwritesWhatTheTableHeldForThatName) {
    setUnit("ColumnLayout (mV)", "before");
    EXPECT_EQ(layOut({"ColumnLayout (mV)"}).valueUnits, Names{"mV"});
    EXPECT_EQ(unitOf("ColumnLayout (mV)"), "mV");
}

TEST(ColumnLayout, TheChecksumSeedIsTheByteSumOfTheTagAndItsTab) {
    EXPECT_EQ(layOut({"CHK"}, {}, "DATA").checksumSeed, ('D' + 'A' + 'T' + 'A' + 9) % 256);
    EXPECT_EQ(layOut({"A", "CHK", "B"}, {}, "DATASTAT").checksumSeed,
              ('D' + 'A' + 'T' + 'A' + 'S' + 'T' + 'A' + 'T' + 9) % 256);
    EXPECT_EQ(layOut({"CHK"}, {}, "DATABIO").checksumSeed,
              ('D' + 'A' + 'T' + 'A' + 'B' + 'I' + 'O' + 9) % 256);
}

TEST(ColumnLayout, MoreValueColumnsThanAnyAnalyserWritesAreRefused) {
    EXPECT_EQ(layOut(Names(maximumValueColumns, "X")).valueNames.size(), maximumValueColumns);
    EXPECT_THROW(layOut(Names(maximumValueColumns + 1, "X")), std::length_error);
}

TEST(ColumnLayout, MoreNamesOfDiagnosticBitsThanAWordCouldHoldAreRefused) {
    EXPECT_EQ(layOut({"DIAG"}, Names(maximumDiagnosticNames, "F")).valueNames.size(),
              maximumDiagnosticNames + 1);
    EXPECT_THROW(layOut({"DIAG"}, Names(maximumDiagnosticNames + 1, "F")), std::length_error);
    // Names alone cost nothing: only a diagnostic word makes columns of them.
    EXPECT_EQ(layOut({"X"}, Names(maximumDiagnosticNames + 1, "F")).valueNames.size(), 1U);
    const Names words(maximumValueColumns / (maximumDiagnosticNames + 1) + 1, "DIAG");
    EXPECT_THROW(layOut(words, Names(maximumDiagnosticNames, "F")), std::length_error);
}

TEST(ColumnLayout, ARefusedHeaderTellsHowManyColumnsItAskedFor) {
    try {
        layOut(Names(300000, "X"));
        FAIL() << "300000 columns were taken";
    } catch (const std::length_error &error) {
        EXPECT_NE(std::string(error.what()).find(" 300000 "), std::string::npos) << error.what();
    }
}

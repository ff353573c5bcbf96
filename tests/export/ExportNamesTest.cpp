#include "export/ExportNames.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

RecordStamp localTime(int year, int month, int day, int hour, int minute) {
    RecordStamp stamp;
    stamp.year = static_cast<std::uint16_t>(year);
    stamp.month = static_cast<std::uint8_t>(month);
    stamp.day = static_cast<std::uint8_t>(day);
    stamp.hour = static_cast<std::uint8_t>(hour);
    stamp.minute = static_cast<std::uint8_t>(minute);
    stamp.second = 59;
    return stamp;
}

TEST(ExportNames, APieceHasTheLocalDateAndBelowADayTheTime) {
    const RecordStamp stamp = localTime(2021, 6, 30, 13, 30);
    for (const std::int32_t period : {1800, 3600, 7200, 14400}) {
        EXPECT_EQ(pieceName("flux.txt", stamp, period), "flux-2021-06-30T1330.txt");
    }
    EXPECT_EQ(pieceName("flux.txt", stamp, 86400), "flux-2021-06-30.txt");
    EXPECT_EQ(pieceName("flux.txt", stamp, 2 * 86400), "flux-2021-06-30.txt");
}

TEST(ExportNames, NumbersOfAPieceArePadded) {
    EXPECT_EQ(pieceName("a.tob1", localTime(987, 1, 2, 3, 4), 1800), "a-0987-01-02T0304.tob1");
}

TEST(ExportNames, NumbersOfADamagedDateArePrintedWhole) {
    EXPECT_EQ(pieceName("a", localTime(65535, 255, 255, 255, 255), 1800), "a-65535-255-255T255255");
}

struct TargetRow {
    std::string target;
    std::string stem;
    std::string extension;
};

TEST(ExportNames, ATargetIsCutAtItsLastDotAlsoInAFoldersName) {
    const std::vector<TargetRow> rows{
        {"flux.txt", "flux", ".txt"},
        {"flux.a.txt", "flux.a", ".txt"},
        {"flux", "flux", ""},
        {"", "", ""},
        {"flux.", "flux", "."},
        {".txt", "", ".txt"},
        {"/out.d/flux", "/out", ".d/flux"},
        {"/out.d/flux.txt", "/out.d/flux", ".txt"},
        {"../flux", ".", "./flux"},
    };
    for (const TargetRow &row : rows) {
        EXPECT_EQ(splitTarget(row.target).stem, row.stem) << row.target;
        EXPECT_EQ(splitTarget(row.target).extension, row.extension) << row.target;
        EXPECT_EQ(pieceName(row.target, localTime(2021, 6, 30, 0, 0), 86400),
                  row.stem + "-2021-06-30" + row.extension);
    }
}

TEST(ExportNames, ARepeatedNameGetsItsNumberBeforeTheExtension) {
    EXPECT_EQ(numberedName("a-2021-06-30.txt", 1), "a-2021-06-30.txt");
    EXPECT_EQ(numberedName("a-2021-06-30.txt", 2), "a-2021-06-30-2.txt");
    EXPECT_EQ(numberedName("a-2021-06-30.txt", 13), "a-2021-06-30-13.txt");
    EXPECT_EQ(numberedName("a-2021-06-30", 2), "a-2021-06-30-2");
}

TEST(ExportNames, PiecesEndAtMultiplesOfThePeriodSince1970) {
    EXPECT_EQ(pieceEnd(0, 1800), 1800U);
    EXPECT_EQ(pieceEnd(1799, 1800), 1800U);
    EXPECT_EQ(pieceEnd(1800, 1800), 3600U);
    EXPECT_EQ(pieceEnd(1625047200 + 1, 3600), 1625047200U + 3600);
    EXPECT_EQ(pieceEnd(1625047200, 86400), 1625097600U);
    EXPECT_EQ(pieceEnd(100, 7), 105U);
    // No multiple is left in 32 bits.
    EXPECT_EQ(pieceEnd(4294967295, 86400), std::uint64_t{4294944000} + 86400);
}

TEST(ExportNames, AnExtensionIsAddedUnlessItStandsThere) {
    EXPECT_EQ(withExtension("a", ".txt"), "a.txt");
    EXPECT_EQ(withExtension("a.txt", ".txt"), "a.txt");
    EXPECT_EQ(withExtension("a.TXT", ".txt"), "a.TXT.txt");
    EXPECT_EQ(withExtension("a.dat", ".tob1"), "a.dat.tob1");
    EXPECT_EQ(withExtension("", ".txt"), ".txt");
}

TEST(ExportNames, SwitchingFromTextToDiagnosticsLeavesTheNameUnchanged) {
    EXPECT_EQ(withExtensionChanged("a.txt", ".txt", ".txt"), "a.txt");
}

TEST(ExportNames, SwitchingFromTob1ToTextChangesTheExtensionItFindsAndAddsItElsewhere) {
    EXPECT_EQ(withExtensionChanged("a.tob1", ".tob1", ".txt"), "a.txt");
    EXPECT_EQ(withExtensionChanged("a.dat", ".tob1", ".txt"), "a.dat.txt");
    EXPECT_EQ(withExtensionChanged("a.TOB1", ".tob1", ".txt"), "a.TOB1.txt");
    EXPECT_EQ(withExtensionChanged(".tob1", ".tob1", ".txt"), ".txt");
}

struct ProposalRow {
    std::string item;
    std::string current;
    std::string proposed;
};

TEST(ExportNames, TheProposedNameIsTheDatasInTheCurrentFolder) {
    const std::vector<ProposalRow> rows{
        {"QA330:DATA", "C:/out/export.txt", "C:/out/qa330-data.txt"},
        {"QA330:DATA", "C:\\out\\export.txt", "C:\\out\\qa330-data.txt"},
        {"QA330:DATA", "export.txt", "qa330-data.txt"},
        {"QA330:DATA", "", "qa330-data.txt"},
        {"A:B:DATASTAT", "/home/x/", "/home/x/a-b-datastat.txt"},
        // A "/" anywhere wins over a later "\".
        {"Q:D", "C:/out\\x", "C:/q-d.txt"},
        {"Q:D.TXT", "ab/x", "ab/q-d.txt"},
        {"\xc3\x84:D", "", "\xc3\xa4-d.txt"},
    };
    for (const ProposalRow &row : rows) {
        EXPECT_EQ(proposedName(row.item, row.current, ".txt"), row.proposed);
    }
}

TEST(ExportNames, ASeparatorInTheFirstTwoPlacesIsNoFolders) {
    EXPECT_EQ(proposedName("Q:D", "/export.txt", ".txt"), "q-d.txt");
    EXPECT_EQ(proposedName("Q:D", "a/export.txt", ".txt"), "q-d.txt");
    EXPECT_EQ(proposedName("Q:D", "./export.txt", ".txt"), "q-d.txt");
    EXPECT_EQ(proposedName("Q:D", "\\export.txt", ".txt"), "q-d.txt");
    EXPECT_EQ(proposedName("Q:D", "/a\\export.txt", ".txt"), "q-d.txt");
    EXPECT_EQ(proposedName("Q:D", "ab/export.txt", ".txt"), "ab/q-d.txt");
}

} // namespace

#include "export/ExportChoices.h"

#include <gtest/gtest.h>

namespace {

TEST(ExportChoices, AFileTypeThatIsNeitherTob1NorDiagnosticsMeansText) {
    EXPECT_EQ(exportFormatOf(1), ExportFormat::tob1);
    EXPECT_EQ(exportFormatOf(2), ExportFormat::diagnostics);
    for (const int number : {0, 3, -1, 1000}) {
        EXPECT_EQ(exportFormatOf(number), ExportFormat::text);
    }
}

TEST(ExportChoices, OnlyTheOfferedPeriodsSplit) {
    for (const int period : {0, 1800, 3600, 7200, 14400, 86400}) {
        EXPECT_TRUE(isSplitPeriod(period));
    }
    for (const int period : {-1800, 1, 900, 3601, 43200, 172800}) {
        EXPECT_FALSE(isSplitPeriod(period));
    }
}

TEST(ExportChoices, TimeColumnsAreANumberOrAListOfNames) {
    EXPECT_EQ(timeColumnsFrom("0"), 0U);
    EXPECT_EQ(timeColumnsFrom("3"), 3U);
    EXPECT_EQ(timeColumnsFrom("63"), 63U);
    EXPECT_EQ(timeColumnsFrom("seconds"), 1U);
    EXPECT_EQ(timeColumnsFrom("nanoseconds"), 2U);
    EXPECT_EQ(timeColumnsFrom("date,time"), 12U);
    EXPECT_EQ(timeColumnsFrom("timestamp,offset"), 48U);
    EXPECT_EQ(timeColumnsFrom("time,date,time"), 12U);
    EXPECT_EQ(timeColumnsFrom("offset,timestamp,time,date,nanoseconds,seconds"), 63U);
}

TEST(ExportChoices, OtherTextsAreNoTimeColumns) {
    for (const std::string_view text : {"", ",", "date,", ",date", "date,,time", "Date", "date time", "64",
                                        "-1", "1,2", "3x", "0x3", "date,3"}) {
        EXPECT_FALSE(timeColumnsFrom(text)) << text;
    }
}

} // namespace

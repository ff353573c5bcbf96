#include "data/DataFileParser.h"

#include "time/Timezone.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace std::string_view_literals;
using Names = std::vector<std::string>;

// A parser that is fed one line after the other, as if they followed each other in a file.
class DataFileParserTest : public testing::Test {
protected:
    std::shared_ptr<DataFragment> take(std::string_view line) {
        const std::uint64_t offset = offset_;
        offset_ += line.size() + 1;
        return parser_.parseLine(offset, line, 0);
    }

    DataFileParser parser_{"folder/file.data", "file-name"};

private:
    std::uint64_t offset_ = 0;
};

std::string zoneError(const std::string &name) {
    return "ERROR: Unable to open file: " + zoneDirectory + '/' + name;
}

} // namespace

TEST_F(DataFileParserTest, AHeaderLineOfEachTagStartsAFragmentOfThatTag) {
    struct Row {
        const char *line;
        const char *tag;
    };
    for (const Row &row :
         {Row{"DATAH\tA\tB", "DATA"}, Row{"DATASTATH\tA\tB", "DATASTAT"}, Row{"DATABIOH\tA\tB", "DATABIO"}}) {
        const auto fragment = take(row.line);
        ASSERT_TRUE(fragment) << row.line;
        EXPECT_EQ(fragment->tag(), row.tag);
        EXPECT_EQ(fragment->columnNames(), (Names{"A", "B"}));
        EXPECT_EQ(fragment->header().fileName, "folder/file.data");
        EXPECT_EQ(fragment->header().subFileName, "");
    }
    EXPECT_TRUE(parser_.foundHeader());
}

TEST_F(DataFileParserTest, LinesOfNoKnownKindAreIgnoredWithoutAMessage) {
    for (const std::string_view line :
         {""sv, "DATAH"sv, "DATA"sv, "datah\tA"sv, " DATAH\tA"sv, "DATAH A"sv, "DATAHH\tA"sv, "XDATAH\tA"sv,
          "DATADIAG\tA"sv, "DATAEVENT\tOTHER\tx"sv, "DATAEVENT\tname\tx"sv, "Instrument: x"sv, "Model:\tx"sv,
          "instrument:\tx"sv,
          "\xef\xbb\xbf"
          "DATAH\tA"sv,
          "\0DATAH\tA"sv, "\t"sv, "DATA\0\tA"sv}) {
        EXPECT_FALSE(take(line)) << testing::PrintToString(line);
    }
    EXPECT_EQ(parser_.messageText(), "");
    EXPECT_FALSE(parser_.foundHeader());
    EXPECT_EQ(take("DATAH\tA")->header().instrument, "file-name");
}

TEST_F(DataFileParserTest, AHeaderLineWithNothingBehindItsTagIsIgnored) {
    for (const char *const line : {"DATAH\t", "DATASTATH\t", "DATABIOH\t", "DATADIAGH\t"}) {
        EXPECT_FALSE(take(line)) << line;
    }
    EXPECT_FALSE(parser_.foundHeader());
    EXPECT_EQ(parser_.messageText(), "");
}

TEST_F(DataFileParserTest, HeaderFieldsAreSplitAtEveryTabButATabAtTheEndAddsNone) {
    struct Row {
        const char *line;
        Names names;
    };
    for (const Row &row :
         {Row{"DATAH\tA\t\tB", {"A", "", "B"}}, Row{"DATAH\tA\tB\t", {"A", "B"}}, Row{"DATAH\t\t", {""}},
          Row{"DATAH\t\tA", {"", "A"}}, Row{"DATAH\tA\t\t", {"A", ""}}, Row{"DATAH\t A ,B\t", {" A ,B"}},
          Row{"DATAH\tA\tA", {"A", "A"}}}) {
        EXPECT_EQ(take(row.line)->columnNames(), row.names) << row.line;
    }
}

TEST_F(DataFileParserTest, TheMiddleOfThreeColumnsMayBeAnEmptyNameThatIsSkipped) {
    const auto fragment = take("DATAH\tA\t\tB");
    take("DATA\t1\tx\t2");
    EXPECT_EQ(fragment->valueNames(), (Names{"A", "B"}));
    EXPECT_EQ(fragment->maximumRecord().values, (std::vector<double>{1, 2}));
}

TEST_F(DataFileParserTest, ARecordBeforeAnyHeaderOfItsTagGivesNoRecordAndNoMessage) {
    for (const char *const line : {"DATA\t1", "DATASTAT\t1", "DATABIO\t1"}) {
        EXPECT_FALSE(take(line));
    }
    EXPECT_FALSE(parser_.foundHeader());
    const auto fragment = take("DATAH\tA");
    take("DATASTAT\t1");
    take("DATABIO\t1");
    EXPECT_EQ(fragment->recordCount(), 0U);
    EXPECT_FALSE(fragment->columnsAreSetUp());
    EXPECT_EQ(parser_.messageText(), "");
}

TEST_F(DataFileParserTest, ARecordGoesToTheNewestFragmentOfItsTag) {
    const auto first = take("DATAH\tA");
    const auto status = take("DATASTATH\tA");
    const auto bio = take("DATABIOH\tA");
    take("DATA\t1");
    take("DATASTAT\t2");
    take("DATABIO\t3");
    const auto second = take("DATAH\tB");
    take("DATA\t4");
    take("DATA\t5");
    take("DATASTAT\t6");
    EXPECT_EQ(first->recordCount(), 1U);
    EXPECT_EQ(second->recordCount(), 2U);
    EXPECT_EQ(status->recordCount(), 2U);
    EXPECT_EQ(bio->recordCount(), 1U);
    EXPECT_EQ(second->minimumRecord().values, (std::vector<double>{4}));
    EXPECT_EQ(status->maximumRecord().values, (std::vector<double>{6}));
}

TEST_F(DataFileParserTest, WhatNoKeyLineSaidIsUnknown) {
    const auto fragment = take("DATAH\tA");
    EXPECT_EQ(fragment->header().instrument, "file-name");
    EXPECT_EQ(fragment->header().serialNumber, "Unknown");
    EXPECT_EQ(fragment->header().softwareVersion, "Unknown");
    EXPECT_EQ(fragment->header().timezone, "Unknown");
    EXPECT_TRUE(fragment->timezone().isUnknown());
    EXPECT_EQ(fragment->timezone().name(), "Unknown");
}

TEST_F(DataFileParserTest, AKeyLineSetsItsValueForTheFragmentsAfterIt) {
    struct Row {
        const char *prefix;
        std::string SourceHeader::*value;
    };
    for (const Row &row :
         {Row{"DATAEVENT\tNAME\t", &SourceHeader::instrument},
          Row{"Instrument:\t", &SourceHeader::instrument},
          Row{"DATAEVENT\tSN\t", &SourceHeader::serialNumber},
          Row{"Serial Number:\t", &SourceHeader::serialNumber}, Row{"SN:\t", &SourceHeader::serialNumber},
          Row{"Software Version:\t", &SourceHeader::softwareVersion}}) {
        const auto before = take("DATAH\tA");
        const std::string value = std::string("set by ") + row.prefix;
        EXPECT_FALSE(take(row.prefix + value));
        const auto after = take("DATAH\tA");
        EXPECT_NE(before->header().*row.value, value) << row.prefix;
        EXPECT_EQ(after->header().*row.value, value) << row.prefix;
        take(row.prefix + std::string("later"));
        EXPECT_EQ(after->header().*row.value, value) << row.prefix;
        EXPECT_EQ(take("DATASTATH\tA")->header().*row.value, "later") << row.prefix;
    }
    take("Timezone:\tEurope/Berlin");
    EXPECT_EQ(take("DATAH\tA")->timezone().name(), "Europe/Berlin");
}

TEST_F(DataFileParserTest, AKeysValueIsTheWholeRestOfTheLineAsItStands) {
    take("Instrument:\t  a\tb \xff\0c"sv);
    EXPECT_EQ(take("DATAH\tA")->header().instrument, "  a\tb \xff\0c"sv);
    take("SN:\t\t");
    EXPECT_EQ(take("DATAH\tA")->header().serialNumber, "\t");
}

TEST_F(DataFileParserTest, AKeyLineWithoutAValueIsIgnored) {
    take("Instrument:\tkept");
    for (const char *const line : {"DATAEVENT\tNAME\t", "Instrument:\t", "DATAEVENT\tSN\t",
                                   "Serial Number:\t", "SN:\t", "Software Version:\t", "Timezone:\t"}) {
        take(line);
    }
    const auto fragment = take("DATAH\tA");
    ASSERT_TRUE(fragment);
    EXPECT_EQ(fragment->header().instrument, "kept");
    EXPECT_EQ(fragment->header().serialNumber, "Unknown");
    EXPECT_EQ(fragment->header().softwareVersion, "Unknown");
    EXPECT_EQ(fragment->header().timezone, "Unknown");
    EXPECT_EQ(parser_.messageText(), "");
}

TEST_F(DataFileParserTest, BitNamesBetweenHeaderAndFirstRecordStillApply) {
    const auto data = take("DATAH\tDIAG");
    const auto status = take("DATASTATH\tDIAG");
    take("DATADIAGH\tA\tB");
    take("DATA\t3");
    take("DATASTAT\t3");
    EXPECT_EQ(data->valueNames(), (Names{"DIAG", "DIAG:A", "DIAG:B"}));
    EXPECT_EQ(status->valueNames(), (Names{"DIAG", "DIAG:A", "DIAG:B"}));
    EXPECT_EQ(data->diagnosticNames(), (Names{"A", "B"}));
    EXPECT_EQ(data->maximumRecord().values, (std::vector<double>{3, 1, 2}));
}

TEST_F(DataFileParserTest, BitNamesAfterTheFirstRecordCountForLaterFragmentsOnly) {
    const auto before = take("DATAH\tDIAG");
    take("DATA\tx"); // a bad record sets the columns up too
    take("DATADIAGH\tA");
    take("DATA\t1");
    EXPECT_EQ(before->valueNames(), Names{"DIAG"});
    EXPECT_EQ(before->diagnosticNames(), Names{});
    const auto after = take("DATAH\tDIAG");
    EXPECT_EQ(after->diagnosticNames(), Names{"A"});
}

TEST_F(DataFileParserTest, ABioFragmentGetsBitNamesOnlyWhenItIsCreated) {
    const auto before = take("DATABIOH\tDIAG");
    take("DATADIAGH\tA");
    take("DATABIO\t1");
    EXPECT_EQ(before->valueNames(), Names{"DIAG"});
    const auto after = take("DATABIOH\tDIAG");
    take("DATABIO\t1");
    EXPECT_EQ(after->valueNames(), (Names{"DIAG", "DIAG:A"}));
}

TEST_F(DataFileParserTest, LaterBitNamesReplaceEarlierOnes) {
    take("DATADIAGH\tA\tB\tC");
    const auto fragment = take("DATAH\tDIAG");
    take("DATADIAGH\t\tX\t");
    take("DATA\t3");
    EXPECT_EQ(fragment->valueNames(), (Names{"DIAG", "DIAG:", "DIAG:X"}));
}

TEST_F(DataFileParserTest, AZoneThatCannotBeLoadedIsAnErrorAndStartsNoFragment) {
    const auto before = take("DATAH\tA");
    take("Timezone:\tNo/Such");
    EXPECT_FALSE(take("DATAH\tA\tB"));
    EXPECT_EQ(parser_.messageText(), zoneError("No/Such"));
    take("DATA\t5");
    EXPECT_EQ(before->recordCount(), 1U);
    take("Timezone:\tUTC");
    EXPECT_TRUE(take("DATAH\tA"));
}

TEST_F(DataFileParserTest, RecordsOfATagWhoseOnlyHeaderFailedAreDropped) {
    take("Timezone:\tNo/Such");
    take("DATAH\tA");
    take("DATA\t5");
    EXPECT_EQ(parser_.messageText(), zoneError("No/Such"));
    EXPECT_TRUE(parser_.foundHeader());
}

TEST_F(DataFileParserTest, TheZoneUnknownIsUtc) {
    take("Timezone:\tUnknown");
    const auto fragment = take("DATAH\tDATE\tTIME");
    take("DATA\t2019-06-01\t00:00:05");
    EXPECT_EQ(fragment->firstTime(), 1559347205);
    EXPECT_EQ(fragment->minimumRecord().utcOffset, 0);
    EXPECT_EQ(parser_.messageText(), "");
}

TEST_F(DataFileParserTest, ErrorsAreCollectedWhileTheTextHoldsAtMost9999Characters) {
    const std::string label = "ERROR: ";
    parser_.appendError(std::string(9999 - label.size(), 'x'));
    ASSERT_EQ(parser_.messageText().size(), 9999U);
    parser_.appendError("last");
    EXPECT_EQ(parser_.messageText().size(), 9999U + label.size() + 4);
    EXPECT_TRUE(parser_.messageText().ends_with("xERROR: last"));
    parser_.appendError("dropped");
    EXPECT_TRUE(parser_.messageText().ends_with("xERROR: last"));
}

TEST_F(DataFileParserTest, At10000CharactersNoMoreErrorsAreTaken) {
    parser_.appendError(std::string(10000 - 7, 'x'));
    const std::string before = parser_.messageText();
    ASSERT_EQ(before.size(), 10000U);
    parser_.appendError("dropped");
    EXPECT_EQ(parser_.messageText(), before);
}

TEST_F(DataFileParserTest, TheErrorsOfAnyNumberOfLinesStayWithinThatText) {
    take("Timezone:\tNo/Such");
    const std::string error = zoneError("No/Such");
    for (int i = 0; i < 2000; ++i) {
        take("DATAH\tA");
    }
    const std::size_t size = parser_.messageText().size();
    EXPECT_GT(size, 9999U);
    EXPECT_LE(size, 9999U + error.size());
    EXPECT_EQ(size % error.size(), 0U);
}

TEST_F(DataFileParserTest, AnErrorInOneLineLeavesTheNextOnesAlone) {
    take("Timezone:\tNo/Such");
    take("DATAH\tA");
    take("Timezone:\tEurope/Berlin");
    const auto fragment = take("DATAH\tSECONDS\tA");
    take("DATA\t1559347200\t5");
    EXPECT_EQ(fragment->recordCount(), 1U);
}

TEST_F(DataFileParserTest, ARecordLineOfOnlyItsTagIsARecordWhereNoColumnNeedsAField) {
    const auto fragment = take("DATAH\tREMARK\tFILENAME");
    take("DATA\t");
    EXPECT_EQ(fragment->recordCount(), 1U);
    const auto other = take("DATAH\tREMARK\tA");
    take("DATA\t");
    EXPECT_EQ(other->recordCount(), 0U);
}

TEST_F(DataFileParserTest, ABlockReachesFromItsHeaderToTheNextHeaderOfItsTag) {
    const auto first = parser_.parseLine(100, "DATAH\tA", 0);
    parser_.parseLine(150, "DATASTATH\tA", 0);
    const auto second = parser_.parseLine(200, "DATAH\tA", 30); // offsets fall short by then
    EXPECT_EQ(first->blockBegin(), 100U);
    EXPECT_EQ(first->blockEnd(), 230U);
    EXPECT_EQ(second->blockBegin(), 230U);
    EXPECT_EQ(second->blockEnd(), std::numeric_limits<std::uint64_t>::max());
}

TEST_F(DataFileParserTest, ABlockThatGoesOnIntoTheNextArchiveMemberHasNoEndInItsOwn) {
    parser_.setSubFileName("a.data");
    const auto first = parser_.parseLine(100, "DATAH\tA", 0);
    parser_.setSubFileName("b.data");
    const auto second = parser_.parseLine(50, "DATAH\tA", 0);
    EXPECT_EQ(first->header().subFileName, "a.data");
    EXPECT_EQ(second->header().subFileName, "b.data");
    EXPECT_EQ(first->blockEnd(), std::numeric_limits<std::uint64_t>::max());
}

TEST_F(DataFileParserTest, TheStateRunsOnFromMemberToMember) {
    parser_.setSubFileName("a.data");
    take("Instrument:\tQA330");
    take("DATADIAGH\tA");
    const auto fragment = take("DATAH\tDIAG");
    parser_.setSubFileName("b.data");
    take("DATA\t1");
    EXPECT_EQ(fragment->recordCount(), 1U);
    const auto status = take("DATASTATH\tDIAG");
    EXPECT_EQ(status->header().instrument, "QA330");
    EXPECT_EQ(status->diagnosticNames(), Names{"A"});
}

TEST_F(DataFileParserTest, NoRecordIsTakenOnceTheSourceEnded) {
    const auto fragment = take("DATAH\tA");
    take("DATA\t1");
    parser_.finish();
    take("DATA\t2");
    EXPECT_EQ(fragment->recordCount(), 1U);
}

#include "data/DataSet.h"

#include "data/UnitTable.h"
#include "support/LoadedSource.h"

#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

using Names = std::vector<std::string>;
using Set = std::set<std::string>;

// A loaded source that never was a file.
DataSet sourceOf(const std::string &fileName, std::string_view text) {
    DataSet source(fileName);
    parseText(source, text);
    source.finishLoading();
    return source;
}

// "Instrument:" and one DATA block with a record at each of the times.
std::string blockOf(const std::string &instrument, const std::vector<int> &times,
                    const std::string &tag = "DATA") {
    std::string text = "Instrument:\t" + instrument + "\n" + tag + "H\tSECONDS\tA\n";
    for (const int time : times) {
        text += tag + '\t' + std::to_string(time) + "\t1\n";
    }
    return text;
}

// File name and first time of every fragment, in the set's order.
std::vector<std::string> orderOf(const DataSet &dataSet) {
    std::vector<std::string> order;
    for (const auto &fragment : dataSet.fragments()) {
        order.push_back(fragment->header().fileName + '@' +
                        std::to_string(static_cast<long>(fragment->firstTime())));
    }
    return order;
}

} // namespace

TEST(DataSet, TheTagOfAFileNameIsItsBaseNameUpToTheSecondHyphen) {
    struct Row {
        const char *path;
        const char *tag;
    };
    for (const Row &row :
         {Row{"C:\\data\\2019-06-01T100000_AB-12.data", "2019-06"}, Row{"plain.data", "Unknown"},
          Row{"a-b.data", "Unknown"}, Row{"a-b-c.data", "a-b"}, Row{"/d-i-r/plain.data", "Unknown"},
          Row{"/dir/a-b-c.data", "a-b"}, Row{"/dir\\x-y-z/a\\b-c-d", "a\\b-c"}, Row{"--", "-"},
          Row{"-a-b", "-a"}, Row{"", "Unknown"}, Row{"dir/", "Unknown"}, Row{"d-i-r\\", "Unknown"}}) {
        EXPECT_EQ(DataSet::tagOfFileName(row.path), row.tag) << row.path;
    }
}

TEST(DataSet, ASourcesInstrumentIsItsFileNamesTagUntilAKeyLineNamesIt) {
    const DataSet source = sourceOf("/x/QA-330-x.data", "DATAH\tA\nInstrument:\tOther\nDATAH\tA\n");
    EXPECT_EQ(fragmentAt(source, 0).header().instrument, "QA-330");
    EXPECT_EQ(fragmentAt(source, 1).header().instrument, "Other");
}

TEST(DataSet, AnEmptySetAnswersEveryQueryWithNothingOrUnknown) {
    const DataSet empty;
    EXPECT_TRUE(empty.fragments().empty());
    EXPECT_EQ(empty.messageText(), "");
    EXPECT_EQ(empty.checksumFailures(), 0U);
    EXPECT_FALSE(empty.foundHeader());
    EXPECT_EQ(empty.variableKeys(), Set{});
    EXPECT_FALSE(empty.hasVariableKeys());
    EXPECT_EQ(empty.variableKeysOfInstrument("Q"), Set{});
    EXPECT_EQ(empty.variableKeysOfInstrumentAndTag("Q", "DATA"), Set{});
    EXPECT_TRUE(empty.variableUnits().empty());
    EXPECT_EQ(empty.fileNames(), Set{});
    EXPECT_EQ(empty.instruments(), Set{});
    EXPECT_EQ(empty.tagsOfInstrument("Q"), Set{});
    EXPECT_EQ(empty.versionOfInstrument("Q"), "Unknown");
    EXPECT_EQ(empty.timeZoneNameOfKey("Q:DATA:A"), "Unknown");
    EXPECT_EQ(empty.valueNamesOfInstrumentAndTag("Q", "DATA"), Names{});
    EXPECT_EQ(empty.unitsOfInstrumentAndTag("Q", "DATA"), Names{});
    EXPECT_EQ(empty.diagnosticNamesOfInstrumentAndTag("Q", "DATA"), Names{});
    EXPECT_TRUE(empty.fragmentsOf("Q", "DATA").empty());
    EXPECT_TRUE(pointsOf(empty, "Q:DATA:A", "", 0, wholeRangeEnd).times.empty());
}

TEST(DataSet, AnEmptySetTakesNoLines) {
    DataSet empty;
    empty.setSubFileName("x");
    empty.parseLine(0, "DATAH\tA");
    empty.finishLoading();
    EXPECT_TRUE(empty.fragments().empty());
    EXPECT_EQ(empty.messageText(), "");
}

TEST(DataSet, AnExceptionWhileALineIsHandledBecomesAnErrorOfTheMessageText) {
    DataSet source("a.data");
    EXPECT_NO_THROW(parseText(source, "Timezone:\t..\nDATAH\tA\n"));
    EXPECT_TRUE(source.messageText().starts_with("ERROR: Unable to open file: ")) << source.messageText();
    EXPECT_TRUE(source.foundHeader());
}

TEST(DataSet, ASourceNamesTheArchiveMemberItsFragmentsComeFrom) {
    DataSet source("a.ghg");
    source.setSubFileName("one.data");
    source.parseLine(0, "DATAH\tA");
    source.setSubFileName("two.data");
    source.parseLine(0, "DATAH\tA");
    EXPECT_EQ(fragmentAt(source, 0).header().subFileName, "one.data");
    EXPECT_EQ(fragmentAt(source, 1).header().subFileName, "two.data");
}

TEST(DataSet, ASourcesFragmentsStandInTheOrderOfTheirHeaderLines) {
    const DataSet source =
        sourceOf("a", blockOf("Q", {500}) + blockOf("Q", {100}, "DATASTAT") + blockOf("Q", {300}));
    EXPECT_EQ(orderOf(source), (Names{"a@500", "a@100", "a@300"}));
}

TEST(DataSet, ChecksumFailuresOfAllFragmentsAreSummed) {
    const DataSet source = sourceOf("a", "DATAH\tA\tCHK\nDATASTATH\tA\tCHK\nDATA\t1\t0\nDATASTAT\t1\t0\nDATA"
                                         "\t1\t0\nDATAH\tA\tCHK\nDATA\t1\t0\n");
    EXPECT_EQ(source.checksumFailures(), 4U);
}

TEST(DataSet, MergingOrdersFragmentsByTheTimeOfTheirFirstRecord) {
    DataSet merged;
    merged.merge(sourceOf("a", blockOf("Q", {500, 900}) + blockOf("Q", {100})));
    merged.merge(sourceOf("b", blockOf("Q", {300})));
    merged.merge(sourceOf("c", blockOf("Q", {50, 5000})));
    EXPECT_EQ(orderOf(merged), (Names{"c@50", "a@100", "b@300", "a@500"}));
}

TEST(DataSet, SourcesWhoseFirstRecordsShareOneTimeKeepTheOrderInWhichTheyWereMerged) {
    DataSet merged;
    for (const char *const name : {"d", "b", "c", "a"}) {
        merged.merge(sourceOf(name, blockOf("Q", {100}) + blockOf("R", {100})));
    }
    merged.merge(sourceOf("0", blockOf("Q", {99})));
    EXPECT_EQ(orderOf(merged),
              (Names{"0@99", "d@100", "d@100", "b@100", "b@100", "c@100", "c@100", "a@100", "a@100"}));
    EXPECT_EQ(fragmentAt(merged, 1).header().instrument, "Q");
    EXPECT_EQ(fragmentAt(merged, 2).header().instrument, "R");
}

TEST(DataSet, MergingDropsFragmentsWithoutRecords) {
    DataSet merged;
    merged.merge(sourceOf("a", "DATASTATH\tB\n" + blockOf("Q", {100}) + "DATABIOH\tB\nDATABIO\tbad\n"));
    EXPECT_EQ(orderOf(merged), Names{"a@100"});
    EXPECT_EQ(merged.tagsOfInstrument("Q"), Set{"DATA"});
    EXPECT_EQ(merged.variableKeys(), Set{"Q:DATA:A"});
}

TEST(DataSet, MergingTheSameSourcesInAnyOrderOfDistinctTimesGivesTheSameList) {
    DataSet forward;
    DataSet backward;
    for (int i = 0; i < 20; ++i) {
        forward.merge(sourceOf("f" + std::to_string(i), blockOf("Q", {100 + i * 7 % 20})));
        const int j = 19 - i;
        backward.merge(sourceOf("f" + std::to_string(j), blockOf("Q", {100 + j * 7 % 20})));
    }
    EXPECT_EQ(orderOf(forward), orderOf(backward));
    EXPECT_EQ(forward.fragments().size(), 20U);
}

TEST(DataSet, RemovingAFileRemovesItsFragmentsAndNoOthers) {
    DataSet merged;
    merged.merge(sourceOf("a", blockOf("Q", {100}) + blockOf("R", {300})));
    merged.merge(sourceOf("A", blockOf("S", {200})));
    merged.merge(sourceOf("ab", blockOf("Q", {400})));
    merged.removeFile("b");
    merged.removeFile("");
    EXPECT_EQ(merged.fragments().size(), 4U);
    merged.removeFile("a");
    EXPECT_EQ(orderOf(merged), (Names{"A@200", "ab@400"}));
    EXPECT_EQ(merged.fileNames(), (Set{"A", "ab"}));
    EXPECT_EQ(merged.variableKeys(), (Set{"S:DATA:A", "Q:DATA:A"}));
}

TEST(DataSet, AFileMayBeAddedAgainAfterItWasRemoved) {
    DataSet merged;
    for (int i = 0; i < 3; ++i) {
        merged.merge(sourceOf("a", blockOf("Q", {100})));
        merged.merge(sourceOf("b", blockOf("Q", {50})));
        EXPECT_EQ(orderOf(merged), (Names{"b@50", "a@100"}));
        merged.removeFile("a");
        merged.removeFile("b");
        EXPECT_TRUE(merged.fragments().empty());
        EXPECT_FALSE(merged.hasVariableKeys());
    }
}

TEST(DataSet, FragmentsOutliveTheSetThatTheyWereMergedInto) {
    std::vector<std::shared_ptr<const DataFragment>> fragments;
    {
        DataSet merged;
        merged.merge(sourceOf("a", blockOf("Q", {100})));
        fragments = merged.fragmentsOf("Q", "DATA");
        merged.removeFile("a");
    }
    ASSERT_EQ(fragments.size(), 1U);
    EXPECT_EQ(fragments[0]->firstTime(), 100);
}

TEST(DataSet, VariableKeysCollapseAndCanBeAskedForByInstrumentAndTag) {
    DataSet merged;
    merged.merge(
        sourceOf("a", "DATADIAGH\tPUMPON\n" + blockOf("Q", {1}) + "DATASTATH\tDIAG\tA\nDATASTAT\t1\t2\n"));
    merged.merge(sourceOf("b", blockOf("Q", {2}) + blockOf("R", {3})));
    EXPECT_EQ(merged.variableKeys(),
              (Set{"Q:DATA:A", "Q:DATASTAT:A", "Q:DATASTAT:DIAG", "Q:DATASTAT:DIAG:PUMPON", "R:DATA:A"}));
    EXPECT_EQ(merged.variableKeysOfInstrument("Q"),
              (Set{"Q:DATA:A", "Q:DATASTAT:A", "Q:DATASTAT:DIAG", "Q:DATASTAT:DIAG:PUMPON"}));
    EXPECT_EQ(merged.variableKeysOfInstrumentAndTag("Q", "DATA"), Set{"Q:DATA:A"});
    EXPECT_EQ(merged.variableKeysOfInstrumentAndTag("q", "DATA"), Set{});
    EXPECT_EQ(merged.variableKeysOfInstrumentAndTag("R", "DATASTAT"), Set{});
    EXPECT_EQ(merged.instruments(), (Set{"Q", "R"}));
    EXPECT_EQ(merged.tagsOfInstrument("Q"), (Set{"DATA", "DATASTAT"}));
    EXPECT_EQ(merged.tagsOfInstrument("R"), Set{"DATA"});
}

TEST(DataSet, ASourceThatIsBeingReadGivesTheKeysOfTheColumnsSetUpSoFar) {
    DataSet source("a");
    source.parseLine(0, "DATAH\tA");
    EXPECT_EQ(source.variableKeys(), Set{});
    EXPECT_FALSE(source.hasVariableKeys());
    source.parseLine(10, "DATA\t1");
    EXPECT_EQ(source.variableKeys(), Set{"Unknown:DATA:A"});
    EXPECT_TRUE(source.hasVariableKeys());
}

TEST(DataSet, TheRevisionOfTheVariableKeysChangesWithTheirSet) {
    DataSet merged;
    merged.merge(sourceOf("a", blockOf("Q", {1})));
    const auto first = merged.variableKeysRevision();
    merged.merge(sourceOf("b", blockOf("Q", {2})));
    EXPECT_EQ(merged.variableKeysRevision(), first);
    merged.removeFile("a");
    EXPECT_EQ(merged.variableKeysRevision(), first);
    merged.removeFile("b");
    EXPECT_NE(merged.variableKeysRevision(), first);
}

TEST(DataSet, VersionAndZoneAreThoseOfTheInstrumentsFirstFragment) {
    DataSet merged;
    merged.merge(sourceOf("late", "Software Version:\t2\nTimezone:\tEurope/Berlin\n" + blockOf("Q", {200})));
    merged.merge(sourceOf("early", "Software Version:\t1\nTimezone:\tUTC\n" + blockOf("Q", {100}) +
                                       "Timezone:\tAsia/Kolkata\n" + blockOf("R", {50})));
    EXPECT_EQ(merged.versionOfInstrument("Q"), "1");
    EXPECT_EQ(merged.versionOfInstrument("S"), "Unknown");
    EXPECT_EQ(merged.timeZoneNameOfKey("Q:DATA:A"), "UTC");
    EXPECT_EQ(merged.timeZoneNameOfKey("R:anything"), "Asia/Kolkata");
    EXPECT_EQ(merged.timeZoneNameOfKey("Q"), "UTC");
    EXPECT_EQ(merged.timeZoneNameOfKey("S:DATA:A"), "Unknown");
    EXPECT_EQ(merged.timeZoneNameOfKey(""), "Unknown");
}

TEST(DataSet, NamesUnitsAndBitNamesAreThoseOfTheFirstFragmentOfInstrumentAndTag) {
    DataSet merged;
    merged.merge(sourceOf("late", "Instrument:\tQ\nDATAH\tSECONDS\tLATE\nDATA\t200\t1\n"));
    merged.merge(sourceOf(
        "early", "Instrument:\tQ\nDATADIAGH\tF\nDATAH\tSECONDS\tB (b)\tDIAG\tCH4\nDATA\t100\t1\t2\t3\n"));
    EXPECT_EQ(merged.valueNamesOfInstrumentAndTag("Q", "DATA"), (Names{"B (b)", "DIAG", "DIAG:F", "CH4"}));
    EXPECT_EQ(merged.unitsOfInstrumentAndTag("Q", "DATA"), (Names{"b", "DIAG", "BOOL", "umol/mol"}));
    EXPECT_EQ(merged.diagnosticNamesOfInstrumentAndTag("Q", "DATA"), Names{"F"});
    EXPECT_EQ(merged.valueNamesOfInstrumentAndTag("Q", "DATASTAT"), Names{});
    EXPECT_EQ(merged.unitsOfInstrumentAndTag("R", "DATA"), Names{});
}

TEST(DataSet, EachVariableKeyHasTheUnitOfTheFirstFragmentThatHasIt) {
    DataSet merged;
    merged.merge(sourceOf("late", "Instrument:\tQ\nDATAH\tSECONDS\tDataSet unit\tX (m)\nDATA\t200\t1\t1\n"));
    setUnit("DataSet unit", "changed");
    merged.merge(sourceOf("early", "Instrument:\tQ\nDATAH\tSECONDS\tDataSet unit\nDATA\t100\t1\n"));
    EXPECT_EQ(merged.variableUnits(), (std::map<std::string, std::string>{{"Q:DATA:DataSet unit", "changed"},
                                                                          {"Q:DATA:X (m)", "m"}}));
}

TEST(DataSet, AKeyNamesTheColumnBehindItsSecondColon) {
    const DataSet source = sourceOf(
        "a", "Instrument:\tQA330\nDATADIAGH\tPUMPON\nDATAH\tDIAG\tPUMPON\nDATA\t1\t77\nDATA\t0\t78\n");
    double low = std::numeric_limits<double>::max();
    double high = -low;
    source.valueRange("QA330:DATA:DIAG:PUMPON", low, high);
    EXPECT_EQ(low, 0);
    EXPECT_EQ(high, 1);
}

TEST(DataSet, AVariablesRangeWidensThePairByTheFirstColumnOfItsNameInEveryFragment) {
    DataSet merged;
    merged.merge(sourceOf("a", "Instrument:\tQ\nDATAH\tA\tB\tA\nDATA\t1\t-50\t99\nDATA\t5\t50\t99\n"));
    merged.merge(sourceOf("b", "Instrument:\tQ\nDATAH\tA\nDATA\t-2\nDATASTATH\tA\nDATASTAT\t1000\n"));
    double low = std::numeric_limits<double>::max();
    double high = -low;
    merged.valueRange("Q:DATA:A", low, high);
    EXPECT_EQ(low, -2);
    EXPECT_EQ(high, 5);
    low = -3;
    high = 4;
    merged.valueRange("Q:DATA:A", low, high);
    EXPECT_EQ(low, -3);
    EXPECT_EQ(high, 5);
}

TEST(DataSet, AKeyThatMatchesNothingLeavesTheRangeAsItWas) {
    const DataSet source = sourceOf("a", blockOf("Q", {1}));
    for (const char *const key :
         {"Q:DATA:B", "Q:DATASTAT:A", "R:DATA:A", "Q:DATA", "Q", "", "Q:DATA:A:", "q:DATA:A"}) {
        double low = 7;
        double high = -7;
        source.valueRange(key, low, high);
        EXPECT_EQ(low, 7) << key;
        EXPECT_EQ(high, -7) << key;
    }
}

TEST(DataSet, AColumnOfNothingButNotANumberLeavesTheRangeAsItWas) {
    const DataSet source = sourceOf("a", "Instrument:\tQ\nDATAH\tA\nDATA\tnan\nDATA\tnan\n");
    double low = std::numeric_limits<double>::max();
    double high = -low;
    source.valueRange("Q:DATA:A", low, high);
    EXPECT_EQ(low, std::numeric_limits<double>::max());
    EXPECT_EQ(high, -std::numeric_limits<double>::max());
}

TEST(DataSet, AnInstrumentsTimeRangeSpansFirstAndLastRecordsOfAllItsFragments) {
    DataSet merged;
    merged.merge(sourceOf("a", blockOf("Q", {100, 900, 700})));
    merged.merge(sourceOf("b", blockOf("Q", {200, 300}, "DATASTAT") + blockOf("R", {1, 5000})));
    double first = 1e9;
    double last = 0;
    merged.timeRangeOfInstrument("Q", first, last);
    EXPECT_EQ(first, 100);
    EXPECT_EQ(last, 700); // the last record, though an earlier one has a later time
    merged.timeRangeOfInstrument("S", first, last);
    EXPECT_EQ(first, 100);
    EXPECT_EQ(last, 700);
}

TEST(DataSet, FragmentsOfOneInstrumentAndTagComeInTheSetsOrder) {
    DataSet merged;
    merged.merge(sourceOf("a", blockOf("Q", {300}) + blockOf("Q", {1}, "DATASTAT") + blockOf("R", {2})));
    merged.merge(sourceOf("b", blockOf("Q", {200})));
    const auto fragments = merged.fragmentsOf("Q", "DATA");
    ASSERT_EQ(fragments.size(), 2U);
    EXPECT_EQ(fragments[0]->firstTime(), 200);
    EXPECT_EQ(fragments[1]->firstTime(), 300);
}

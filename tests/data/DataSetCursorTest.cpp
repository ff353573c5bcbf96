#include "SourceReadingTest.h"
#include "data/RecordCursor.h"
#include "support/CapturedStandardError.h"

#include <algorithm>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using DataSetCursor = SourceReadingTest;

TEST_F(DataSetCursor, AStatusCursorIgnoresTheDataLinesOfTheSameSource) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATASTATH\tSECONDS\tA\nDATABIOH\tSECONDS\tA\n"
                                "DATA\t1000\t1\nDATASTAT\t1000\t2\nDATABIO\t1000\t3\nDATA\t1001\t4\n"
                                "DATASTAT\t1002\t5\nDATA\t1003\t6\n");
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATASTAT")), (std::vector<double>{2, 5}));
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATA")), (std::vector<double>{1, 4, 6}));
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATABIO")), std::vector<double>{3});
}

TEST_F(DataSetCursor, ACursorGoesFromFragmentToFragmentInTheSetsOrder) {
    DataSet merged;
    merged.merge(load(
        "DATAH\tSECONDS\tA\nDATA\t1000\t1\nDATA\t4000\t2\nDATASTATH\tSECONDS\tA\nDATASTAT\t1\t9\n", "a"));
    merged.merge(load("DATAH\tSECONDS\tA\nDATA\t2000\t3\nDATA\t3000\t4\n", "b"));
    merged.merge(load("Instrument:\tR\nDATAH\tSECONDS\tA\nDATA\t1500\t9\n", "c"));
    merged.merge(load("DATAH\tA\tSECONDS\tB\nDATA\t5\t500\t50\n", "d"));
    EXPECT_EQ(timesOf(readAgain(merged, "Q", "DATA")), (std::vector<double>{500, 1000, 4000, 2000, 3000}));
    EXPECT_EQ(timesOf(readAgain(merged, "Q", "DATA", 900, 2500)), (std::vector<double>{1000, 2000}));
    EXPECT_EQ(readAgain(merged, "Q", "DATA")[0].values, (std::vector<double>{5, 50}));
}

TEST_F(DataSetCursor, FragmentsThatYieldNothingArePassedOver) {
    DataSet merged;
    for (int i = 0; i < 5; ++i) {
        const std::string time = std::to_string(1000 + i);
        merged.merge(load(i % 2 == 0 ? "DATAH\tSECONDS\tREMARK\nDATA\t" + time + "\tx\n"
                                     : "DATAH\tSECONDS\tA\nDATA\t" + time + "\t1\n",
                          std::to_string(i)));
    }
    ASSERT_EQ(merged.fragments().size(), 5U);
    EXPECT_EQ(timesOf(readAgain(merged, "Q", "DATA")), (std::vector<double>{1001, 1003}));
}

TEST_F(DataSetCursor, ACursorOverNothingIsExhaustedAtOnceAndStaysSo) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t1000\t1\n");
    for (const char *const instrument : {"R", "q", ""}) {
        DataSet::_ContextType cursor(source, instrument, "DATA", wholeRangeStart, wholeRangeEnd);
        EXPECT_TRUE(cursor.isExhausted());
        EXPECT_TRUE(cursor.record().values.empty());
        cursor.advance();
        EXPECT_TRUE(cursor.isExhausted());
    }
}

TEST_F(DataSetCursor, AnExhaustedCursorHasARecordWithoutValues) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t1000\t1\n");
    DataSet::_ContextType cursor(source, "Q", "DATA", wholeRangeStart, wholeRangeEnd);
    EXPECT_EQ(cursor.record().values.size(), 1U);
    cursor.advance();
    EXPECT_TRUE(cursor.isExhausted());
    EXPECT_TRUE(cursor.record().values.empty());
    cursor.advance();
    EXPECT_TRUE(cursor.isExhausted());

    DataFragment::_ContextType reader(fragmentAt(source, 0), wholeRangeStart, wholeRangeEnd);
    reader.advance();
    EXPECT_TRUE(reader.isExhausted());
    reader.advance();
    EXPECT_TRUE(reader.record().values.empty());
}

TEST_F(DataSetCursor, ACursorReadsOnWhileItsSetChanges) {
    DataSet merged;
    merged.merge(load("DATAH\tSECONDS\tA\nDATA\t1000\t1\nDATA\t1001\t2\n", "a"));
    merged.merge(load("DATAH\tSECONDS\tA\nDATA\t2000\t3\n", "b"));
    DataSet::_ContextType cursor(merged, "Q", "DATA", wholeRangeStart, wholeRangeEnd);
    merged.removeFile(folder_.pathOf("a"));
    merged.removeFile(folder_.pathOf("b"));
    EXPECT_EQ(firstValuesOf(drain(cursor)), (std::vector<double>{1, 2, 3}));
}

TEST_F(DataSetCursor, ASourceThatIsGoneGivesNoRecordsAndOneLineOnStandardError) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t1000\t1\n");
    const std::string path = folder_.pathOf("a.data");
    ASSERT_EQ(std::remove(path.c_str()), 0);
    const CapturedStandardError errors;
    EXPECT_TRUE(readAgain(fragmentAt(source, 0)).empty());
    const std::string text = errors.text();
    EXPECT_TRUE(text.starts_with(path + ": ")) << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << text;
    EXPECT_EQ(text.back(), '\n');
}

TEST_F(DataSetCursor, ASourceThatIsGoneLeavesTheOtherSourcesToBeRead) {
    DataSet merged;
    merged.merge(load("DATAH\tSECONDS\tA\nDATA\t1000\t1\n", "gone"));
    merged.merge(load("DATAH\tSECONDS\tA\nDATA\t2000\t2\n", "there"));
    ASSERT_EQ(std::remove(folder_.pathOf("gone").c_str()), 0);
    const CapturedStandardError errors;
    EXPECT_EQ(firstValuesOf(readAgain(merged, "Q", "DATA")), std::vector<double>{2});
    EXPECT_EQ(pointsOf(merged, "Q:DATA:A", "", wholeRangeStart, wholeRangeEnd).values,
              std::vector<double>{2});
    const std::string text = errors.text();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2) << text;
}

TEST_F(DataSetCursor, AFragmentOutsideTheBoundsIsNotEvenOpened) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t1000\t1\n");
    ASSERT_EQ(std::remove(folder_.pathOf("a.data").c_str()), 0);
    const CapturedStandardError errors;
    EXPECT_TRUE(readAgain(fragmentAt(source, 0), 2000, 3000).empty());
    EXPECT_EQ(errors.text(), "");
}

TEST_F(DataSetCursor, ASourceCutShortGivesTheRecordsItStillHolds) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 9000, 10));
    const std::string lines = recordsOf("DATA", begin, begin + 90, 10);
    folder_.write("a.data", "Instrument:\tQ\nDATAH\tSECONDS\tA\n" + lines);
    const CapturedStandardError errors;
    EXPECT_EQ(readAgain(fragmentAt(source, 0)).size(), 10U);
    EXPECT_TRUE(readAgain(fragmentAt(source, 0), begin + 5000, wholeRangeEnd).empty());
    EXPECT_EQ(errors.text(), "");
}

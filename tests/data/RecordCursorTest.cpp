#include "data/RecordCursor.h"

#include "support/CapturedStandardError.h"
#include "support/LoadedSource.h"
#include "support/RecordComparison.h"
#include "support/ScratchFolder.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr std::uint32_t halfHour = 1800;
constexpr std::uint32_t begin = 1500000000 + 1234; // 1,500,000,000 is no half hour; nor is this

std::vector<double> timesOf(const std::vector<Record> &records) {
    std::vector<double> times;
    for (const Record &record : records) {
        times.push_back(timeOf(record));
    }
    return times;
}

std::vector<double> firstValuesOf(const std::vector<Record> &records) {
    std::vector<double> values;
    for (const Record &record : records) {
        values.push_back(record.values.at(0));
    }
    return values;
}

// Every number from `first` to `last` in steps.
std::vector<double> numbers(double first, double last, double step) {
    std::vector<double> all;
    for (double number = first; number <= last; number += step) {
        all.push_back(number);
    }
    return all;
}

std::string recordsOf(const std::string &tag, std::uint32_t first, std::uint32_t last, std::uint32_t step,
                      const std::string &rest = "\t1") {
    std::string text;
    for (std::uint32_t seconds = first; seconds <= last; seconds += step) {
        text += tag + '\t' + std::to_string(seconds) + rest + '\n';
    }
    return text;
}

// The line with its check sum behind it.
std::string withChecksum(const std::string &line) {
    unsigned sum = 0;
    for (const char c : line) {
        sum += static_cast<unsigned char>(c);
    }
    return line + std::to_string(sum % 256) + '\n';
}

class RecordCursorTest : public testing::Test {
protected:
    DataSet load(const std::string &text, const std::string &name = "a.data") const {
        return loadSource(folder_.write(name, "Instrument:\tQ\n" + text));
    }

    ScratchFolder folder_;
};

// A file whose half-hour offsets lie before true line begins, because the line reader carried bytes over.
std::string fileLongerThanOneRead() {
    std::string text = "DATAH\tSECONDS\tA\tREMARK\n";
    const std::string filler = "\t1\t" + std::string(900, 'x');
    return text + recordsOf("DATA", begin, begin + 12000, 1, filler);
}

} // namespace

TEST_F(RecordCursorTest, AWholeRangeGivesEveryRecordOfTheFragment) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 9000, 10));
    const std::vector<Record> records = readAgain(fragmentAt(source, 0));
    EXPECT_EQ(timesOf(records), numbers(begin, begin + 9000, 10));
}

TEST_F(RecordCursorTest, AStartBeforeTheFirstHalfHourKeyReadsFromTheFirstRecordLine) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 9000, 10));
    const DataFragment &fragment = fragmentAt(source, 0);
    const std::uint32_t firstKey = fragment.halfHourIndex().entries().front().first;
    EXPECT_EQ(firstKey, begin / halfHour * halfHour);
    for (const double start : {1.0, -5.0, -infinity, firstKey - 0.5, firstKey - 1.0}) {
        EXPECT_EQ(startOffsetFor(fragment, start), fragment.firstOffset()) << start;
        EXPECT_EQ(readAgain(fragment, start, wholeRangeEnd).size(), 901U) << start;
    }
}

TEST_F(RecordCursorTest,
       AStartWithinAHalfHourReadsFromTheIndexEntryBeforeItAndSkipsTheRecordsBeforeTheStart) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 9000, 10));
    const DataFragment &fragment = fragmentAt(source, 0);
    const auto &entry = fragment.halfHourIndex().entries().at(2);
    EXPECT_EQ(startOffsetFor(fragment, entry.first), entry.second);
    EXPECT_EQ(startOffsetFor(fragment, entry.first + 700.7), entry.second);
    EXPECT_EQ(startOffsetFor(fragment, entry.first - 0.1), fragment.halfHourIndex().entries().at(1).second);
    const std::uint32_t start = begin + (entry.first + 700 - begin) / 10 * 10;
    EXPECT_EQ(timesOf(readAgain(fragment, start, start + 55)), numbers(start, start + 50, 10));
    EXPECT_EQ(timesOf(readAgain(fragment, start + 0.5, start + 60)), numbers(start + 10, start + 60, 10));
}

TEST_F(RecordCursorTest, TheStartOffsetIsAtMostTheEndOffset) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 9000, 10));
    const DataFragment &fragment = fragmentAt(source, 0);
    for (const double start : {wholeRangeStart, 1.0, begin + 4000.0, 4294967295.0, 1e300, infinity}) {
        EXPECT_LE(startOffsetFor(fragment, start), fragment.endOffset()) << start;
        EXPECT_GE(startOffsetFor(fragment, start), fragment.firstOffset()) << start;
    }
    EXPECT_EQ(startOffsetFor(fragment, 1e300), fragment.halfHourIndex().entries().back().second);
    const DataSet empty = load("DATAH\tSECONDS\tA\n", "empty.data");
    EXPECT_EQ(startOffsetFor(fragmentAt(empty, 0), 5), 0U);
}

TEST_F(RecordCursorTest, TheEndOffsetIsTheFirstIndexEntryAtOrAfterTheEnd) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 9000, 10));
    const DataFragment &fragment = fragmentAt(source, 0);
    const auto &entry = fragment.halfHourIndex().entries().at(2);
    EXPECT_EQ(endOffsetFor(fragment, wholeRangeEnd), fragment.endOffset());
    EXPECT_EQ(endOffsetFor(fragment, entry.first), entry.second);
    EXPECT_EQ(endOffsetFor(fragment, entry.first - 0.5), entry.second);
    EXPECT_EQ(endOffsetFor(fragment, entry.first - 1799.0), entry.second);
    EXPECT_EQ(endOffsetFor(fragment, 5), fragment.firstOffset());
    EXPECT_EQ(endOffsetFor(fragment, 4e9), fragment.endOffset());
}

TEST_F(RecordCursorTest, ABoundThatIsNotANumberHasAnOffsetWithinTheFragment) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 9000, 10));
    const DataFragment &fragment = fragmentAt(source, 0);
    for (const std::uint64_t offset :
         {startOffsetFor(fragment, notANumber), endOffsetFor(fragment, notANumber)}) {
        EXPECT_GE(offset, fragment.firstOffset());
        EXPECT_LE(offset, fragment.endOffset());
    }
}

TEST_F(RecordCursorTest, AnEndBeforeTheFirstRecordGivesNoRecord) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 100, 10));
    EXPECT_TRUE(readAgain(fragmentAt(source, 0), wholeRangeStart, begin - 0.5).empty());
    EXPECT_TRUE(readAgain(fragmentAt(source, 0), 1, 2).empty());
    EXPECT_EQ(readAgain(fragmentAt(source, 0), 1, begin).size(), 1U);
    EXPECT_TRUE(readAgain(source, "Q", "DATA", 1, 2).empty());
}

TEST_F(RecordCursorTest, AStartBehindTheLatestRecordGivesNoRecord) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 100, 10));
    EXPECT_TRUE(readAgain(fragmentAt(source, 0), begin + 100.5, wholeRangeEnd).empty());
    EXPECT_EQ(readAgain(fragmentAt(source, 0), begin + 100, wholeRangeEnd).size(), 1U);
}

TEST_F(RecordCursorTest, BoundsThatAreNotNumbersOrTheWrongWayRoundGiveNoRecord) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 100, 10));
    for (const auto &[start, end] :
         {std::pair{notANumber, wholeRangeEnd}, std::pair{wholeRangeStart, notANumber},
          std::pair{notANumber, notANumber}, std::pair{begin + 50.0, begin + 40.0}}) {
        EXPECT_TRUE(readAgain(fragmentAt(source, 0), start, end).empty()) << start << " " << end;
    }
}

TEST_F(RecordCursorTest, FractionsOfASecondCountInTheBounds) {
    const DataSet source = load("DATAH\tSECONDS\tNANOSECONDS\tA\nDATA\t1000\t0\t1\nDATA\t1000\t500000000\t2\n"
                                "DATA\t1001\t0\t3\n");
    const DataFragment &fragment = fragmentAt(source, 0);
    EXPECT_EQ(firstValuesOf(readAgain(fragment, 1000.25, 1000.75)), std::vector<double>{2});
    EXPECT_EQ(firstValuesOf(readAgain(fragment, 1000.5, 1001)), (std::vector<double>{2, 3}));
}

TEST_F(RecordCursorTest, AStatusCursorIgnoresTheDataLinesOfTheSameSource) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATASTATH\tSECONDS\tA\nDATABIOH\tSECONDS\tA\n"
                                "DATA\t1000\t1\nDATASTAT\t1000\t2\nDATABIO\t1000\t3\nDATA\t1001\t4\n"
                                "DATASTAT\t1002\t5\nDATA\t1003\t6\n");
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATASTAT")), (std::vector<double>{2, 5}));
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATA")), (std::vector<double>{1, 4, 6}));
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATABIO")), std::vector<double>{3});
}

TEST_F(RecordCursorTest, AFragmentWithoutValueColumnsGivesNothing) {
    const DataSet source = load("DATAH\tSECONDS\tREMARK\nDATA\t1000\tx\n");
    EXPECT_EQ(fragmentAt(source, 0).recordCount(), 1U);
    EXPECT_TRUE(readAgain(fragmentAt(source, 0)).empty());
}

TEST_F(RecordCursorTest, LinesThatGiveNoRecordAreSkippedWithoutAMessage) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\tx\nDATA\t1000\t1\n\nDATA\nDATA\t\nDATAX\t1\njunk\n"
                                "DATA\t1001\t2\nDATA\t1002\n");
    const CapturedStandardError errors;
    EXPECT_EQ(firstValuesOf(readAgain(fragmentAt(source, 0))), (std::vector<double>{1, 2}));
    EXPECT_EQ(errors.text(), "");
}

TEST_F(RecordCursorTest, ReadingEndsAtTheFirstRecordBehindTheEnd) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t1000\t1\nDATA\t3000\t2\nDATA\t1500\t3\n");
    EXPECT_EQ(firstValuesOf(readAgain(fragmentAt(source, 0), 1000, 2000)), std::vector<double>{1});
}

TEST_F(RecordCursorTest, AClockThatStepsBackLosesNothingOnTheWholeRange) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t100000\t1\nDATA\t300000\t2\nDATA\t90000\t3\n"
                                "DATA\t100\t4\nDATA\t200000\t5\n");
    EXPECT_EQ(firstValuesOf(readAgain(fragmentAt(source, 0))), (std::vector<double>{1, 2, 3, 4, 5}));
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATA")), (std::vector<double>{1, 2, 3, 4, 5}));
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATA", -1, 1e10)), (std::vector<double>{1, 2, 3, 4, 5}));
}

TEST_F(RecordCursorTest, TheEndMarkerStandsForTheLatestRecordAlsoBeyondIt) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t2147483000\t1\nDATA\t2147483648\t2\n"
                                "DATA\t4294967295\t3\nDATA\t2147483649\t4\n");
    EXPECT_EQ(firstValuesOf(readAgain(fragmentAt(source, 0))), (std::vector<double>{1, 2, 3, 4}));
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATA", 2147483648.0, wholeRangeEnd)),
              (std::vector<double>{2, 3, 4}));
}

TEST_F(RecordCursorTest, TheStartMarkerStandsForTheFirstRecordAlsoAtTimeZero) {
    // The instrument's clock was not set yet when the first record came.
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t0\t1\nDATA\t1500000000\t2\nDATA\t1500009000\t3\n");
    EXPECT_EQ(firstValuesOf(readAgain(fragmentAt(source, 0))), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATA")), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATA", -1, 1600000000)), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(firstValuesOf(readAgain(source, "Q", "DATA", 1, 1600000000)), (std::vector<double>{2, 3}));
}

TEST_F(RecordCursorTest, RecordsAtTimeZeroOnlyAreReadAgain) {
    const DataSet source = load("DATAH\tA\nDATA\t1\nDATA\t2\n");
    EXPECT_EQ(firstValuesOf(readAgain(fragmentAt(source, 0))), (std::vector<double>{1, 2}));
}

TEST_F(RecordCursorTest, TwoBlocksOfOneTagAreReadWithTheirOwnColumnsEach) {
    const DataSet source = load("DATAH\tSECONDS\tA\tB\nDATA\t1000\t1\t10\nDATA\t2000\t2\t20\n"
                                "DATAH\tB\tSECONDS\tC\tA\nDATA\t30\t5000\t300\t3\nDATA\t40\t6000\t400\t4\n");
    const std::vector<Record> first = readAgain(fragmentAt(source, 0));
    const std::vector<Record> second = readAgain(fragmentAt(source, 1));
    ASSERT_EQ(first.size(), 2U);
    ASSERT_EQ(second.size(), 2U);
    EXPECT_EQ(first[1].values, (std::vector<double>{2, 20}));
    EXPECT_EQ(second[0].values, (std::vector<double>{30, 300, 3}));
    EXPECT_EQ(timesOf(readAgain(source, "Q", "DATA")), (std::vector<double>{1000, 2000, 5000, 6000}));
}

TEST_F(RecordCursorTest, TwoBlocksOfOneTagWhoseClocksOverlapKeepTheirRecordsApart) {
    // The second block's lines would read as good records of the first one's columns, at wrong times.
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t1000\t1\nDATA\t5000\t2\n"
                                "DATAH\tA\tSECONDS\nDATA\t3000\t1500\nDATA\t4000\t2500\n");
    const std::vector<Record> first = readAgain(fragmentAt(source, 0));
    EXPECT_EQ(timesOf(first), (std::vector<double>{1000, 5000}));
    const std::vector<Record> second = readAgain(fragmentAt(source, 1));
    EXPECT_EQ(timesOf(second), (std::vector<double>{1500, 2500}));
    EXPECT_EQ(firstValuesOf(second), (std::vector<double>{3000, 4000}));
    EXPECT_EQ(timesOf(readAgain(source, "Q", "DATA")), (std::vector<double>{1000, 5000, 1500, 2500}));
    EXPECT_EQ(timesOf(readAgain(source, "Q", "DATA", 1200, 2000)), std::vector<double>{1500});
    EXPECT_EQ(timesOf(readAgain(fragmentAt(source, 0), 2000, 6000)), std::vector<double>{5000});
}

TEST_F(RecordCursorTest, BlocksBehindARefillKeepTheirRecordsApartThoughOffsetsFallShort) {
    // A long line is carried over, so that all offsets behind it fall short by more than the lines between it
    // and the next header line hold: by its offset the second block seems to start within the first.
    constexpr std::size_t piece = 8 << 20U;
    std::string text = "DATAH\tSECONDS\tA\tREMARK\n";
    std::vector<double> first;
    const auto addFirst = [&](std::size_t remark) {
        first.push_back(begin + static_cast<double>(first.size()));
        text +=
            "DATA\t" + std::to_string(begin + first.size() - 1) + "\t1\t" + std::string(remark, 'x') + '\n';
    };
    while (text.size() < piece - 30000) {
        addFirst(9000);
    }
    addFirst(piece - text.size()); // from here on offsets fall short by 20,000 to 30,000
    for (int i = 0; i < 100; ++i) {
        addFirst(5);
    }
    text += "DATAH\tSECONDS\tREMARK\tA\n" + recordsOf("DATA", begin, begin + 99, 1, "\tx\t2");
    const DataSet source = load(text);
    ASSERT_EQ(source.fragments().size(), 2U);
    ASSERT_LT(fragmentAt(source, 1).firstOffset(), piece);
    const std::vector<Record> ofFirst = readAgain(fragmentAt(source, 0));
    EXPECT_EQ(timesOf(ofFirst), first);
    EXPECT_EQ(firstValuesOf(ofFirst), std::vector<double>(first.size(), 1));
    const std::vector<Record> ofSecond = readAgain(fragmentAt(source, 1));
    EXPECT_EQ(timesOf(ofSecond), numbers(begin, begin + 99, 1));
    EXPECT_EQ(firstValuesOf(ofSecond), std::vector<double>(100, 2));
}

TEST_F(RecordCursorTest, ABlockWhoseHeaderFailedBelongsToTheBlockBefore) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t1000\t1\nTimezone:\tNo/Such\nDATAH\tA\tSECONDS\n"
                                "DATA\t1100\t2\n");
    ASSERT_EQ(source.fragments().size(), 1U);
    EXPECT_EQ(firstValuesOf(readAgain(fragmentAt(source, 0))), (std::vector<double>{1, 2}));
}

TEST_F(RecordCursorTest, ShortOffsetsOfAFileLongerThanOneReadLoseNoRecord) {
    const DataSet source = load(fileLongerThanOneRead());
    const DataFragment &fragment = fragmentAt(source, 0);
    ASSERT_GT(fragment.endOffset(), std::uint64_t{8} << 20U);
    EXPECT_EQ(timesOf(readAgain(fragment)), numbers(begin, begin + 12000, 1));
    for (const auto &[key, offset] : fragment.halfHourIndex().entries()) {
        const double start = std::max(key, begin);
        EXPECT_EQ(timesOf(readAgain(fragment, start, start + 100)),
                  numbers(start, std::min(start + 100, begin + 12000.0), 1))
            << key;
    }
}

TEST_F(RecordCursorTest, AShortOffsetIntoTheMiddleOfALineMakesNoRecordOfItsRest) {
    // Every line holds, behind its last column, what reads as a whole record line. The first index entry
    // behind the line reader's first piece falls short by exactly so much that reading starts there.
    const std::string inner = "DATA\t" + std::to_string(begin + 9000) + "\t2\tnever loaded\n";
    const std::string outer = "\t1\t" + std::string(970, 'x') + '\t' + inner;
    const std::size_t length = std::string_view("DATA\t1500000000").size() + outer.size();
    constexpr std::size_t piece = 8 << 20U;
    std::string header = "DATAH\tSECONDS\tA\tREMARK\n";
    const std::size_t carried = inner.size();
    while ((piece - std::string_view("Instrument:\tQ\n").size() - header.size()) % length != carried) {
        header.insert(0, 1, '\n');
    }
    const DataSet source =
        load(header + recordsOf("DATA", begin, begin + 12000, 1, outer.substr(0, outer.size() - 1)));
    const DataFragment &fragment = fragmentAt(source, 0);
    ASSERT_EQ(fragment.recordCount(), 12001U);
    const auto &entries = fragment.halfHourIndex().entries();
    const auto entry =
        std::find_if(entries.begin(), entries.end(), [](const auto &e) { return e.second > piece; });
    ASSERT_NE(entry, entries.end());
    const std::vector<Record> records = readAgain(fragment, entry->first, wholeRangeEnd);
    EXPECT_EQ(timesOf(records), numbers(entry->first, begin + 12000, 1));
    EXPECT_EQ(firstValuesOf(records), std::vector<double>(records.size(), 1));
}

TEST_F(RecordCursorTest, ACursorGoesFromFragmentToFragmentInTheSetsOrder) {
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

TEST_F(RecordCursorTest, FragmentsThatYieldNothingArePassedOver) {
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

TEST_F(RecordCursorTest, ACursorOverNothingIsExhaustedAtOnceAndStaysSo) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t1000\t1\n");
    for (const char *const instrument : {"R", "q", ""}) {
        DataSet::_ContextType cursor(source, instrument, "DATA", wholeRangeStart, wholeRangeEnd);
        EXPECT_TRUE(cursor.isExhausted());
        EXPECT_TRUE(cursor.record().values.empty());
        cursor.advance();
        EXPECT_TRUE(cursor.isExhausted());
    }
}

TEST_F(RecordCursorTest, AnExhaustedCursorHasARecordWithoutValues) {
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

TEST_F(RecordCursorTest, ACursorReadsOnWhileItsSetChanges) {
    DataSet merged;
    merged.merge(load("DATAH\tSECONDS\tA\nDATA\t1000\t1\nDATA\t1001\t2\n", "a"));
    merged.merge(load("DATAH\tSECONDS\tA\nDATA\t2000\t3\n", "b"));
    DataSet::_ContextType cursor(merged, "Q", "DATA", wholeRangeStart, wholeRangeEnd);
    merged.removeFile(folder_.pathOf("a"));
    merged.removeFile(folder_.pathOf("b"));
    EXPECT_EQ(firstValuesOf(drain(cursor)), (std::vector<double>{1, 2, 3}));
}

TEST_F(RecordCursorTest, ReadingAgainCountsBadChecksumsOnceMore) {
    const DataSet source = load("DATAH\tSECONDS\tA\tCHK\n" + withChecksum("DATA\t1000\t1\t") +
                                "DATA\t1000\t2\t0\nDATA\tbad\t2\t0\n" + withChecksum("DATA\t1001\t3\t"));
    const DataFragment &fragment = fragmentAt(source, 0);
    ASSERT_EQ(fragment.recordCount(), 2U);
    ASSERT_EQ(fragment.checksumFailures(), 1U);
    for (std::uint32_t readings = 2; readings < 5; ++readings) {
        EXPECT_EQ(readAgain(fragment).size(), 2U);
        EXPECT_EQ(fragment.checksumFailures(), readings);
    }
    EXPECT_EQ(source.checksumFailures(), 4U);
    EXPECT_EQ(fragment.recordCount(), 2U);
}

TEST_F(RecordCursorTest, ASourceThatIsGoneGivesNoRecordsAndOneLineOnStandardError) {
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

TEST_F(RecordCursorTest, ASourceThatIsGoneLeavesTheOtherSourcesToBeRead) {
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

TEST_F(RecordCursorTest, AFragmentOutsideTheBoundsIsNotEvenOpened) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t1000\t1\n");
    ASSERT_EQ(std::remove(folder_.pathOf("a.data").c_str()), 0);
    const CapturedStandardError errors;
    EXPECT_TRUE(readAgain(fragmentAt(source, 0), 2000, 3000).empty());
    EXPECT_EQ(errors.text(), "");
}

TEST_F(RecordCursorTest, ASourceCutShortGivesTheRecordsItStillHolds) {
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 9000, 10));
    const std::string lines = recordsOf("DATA", begin, begin + 90, 10);
    folder_.write("a.data", "Instrument:\tQ\nDATAH\tSECONDS\tA\n" + lines);
    const CapturedStandardError errors;
    EXPECT_EQ(readAgain(fragmentAt(source, 0)).size(), 10U);
    EXPECT_TRUE(readAgain(fragmentAt(source, 0), begin + 5000, wholeRangeEnd).empty());
    EXPECT_EQ(errors.text(), "");
}

TEST_F(RecordCursorTest, ManyThreadsMayReadOneFragmentAtTheSameTime) {
    const DataSet source =
        load("Timezone:\tEurope/Berlin\nDATAH\tDATE\tTIME\tA\tCHK\n" +
             withChecksum("DATA\t2019-10-27\t02:30:00\t1\t") + "DATA\t2019-10-27\t02:35:00\t2\t0\n" +
             withChecksum("DATA\t2019-10-27\t02:40:00\t3\t"));
    const DataFragment &fragment = fragmentAt(source, 0);
    const std::vector<Record> expected = readAgain(fragment);
    ASSERT_EQ(expected.size(), 2U);
    std::vector<std::vector<Record>> found(4);
    std::vector<std::thread> threads;
    for (std::vector<Record> &records : found) {
        threads.emplace_back([&records, &fragment] { records = readAgain(fragment); });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    for (const std::vector<Record> &records : found) {
        EXPECT_TRUE(sameRecords(records, expected));
    }
    EXPECT_EQ(fragment.checksumFailures(), 6U);
}

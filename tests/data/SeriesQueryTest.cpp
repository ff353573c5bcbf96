#include "data/SeriesBatch.h"
#include "support/LoadedSource.h"
#include "support/RecordComparison.h"
#include "support/ScratchFolder.h"

#include <array>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr std::uint32_t begin = 1500001207; // on no period's end

// A DATA block of instrument Q with the column A, whose value counts the records, one every `step` seconds.
std::string blockOf(std::uint32_t first, std::uint32_t step, int records) {
    std::string text = "Instrument:\tQ\nDATAH\tSECONDS\tA\n";
    for (int i = 0; i < records; ++i) {
        text += "DATA\t" + std::to_string(first + static_cast<std::uint32_t>(i) * step) + '\t' +
                std::to_string(i) + '\n';
    }
    return text;
}

class SeriesQueryTest : public testing::Test {
protected:
    void load(const std::string &name, const std::string &text) {
        dataSet_.merge(loadSource(folder_.write(name, text)));
    }

    // What the averaged series of `fragment` holds between two times.
    static Points averagedPoints(const DataFragment &fragment, std::size_t level, Statistic statistic,
                                 double start, double end) {
        Points points;
        const AveragedSeries &series = fragment.series(level);
        for (std::size_t i = 0; i < series.size(); ++i) {
            const double time = series.stamps()[i].seconds;
            if (time >= start && time <= end) {
                points.times.push_back(time);
                points.values.push_back(series.value(statistic, i, 0));
            }
        }
        return points;
    }

    // The records of the block that blockOf() makes, between two times.
    static Points recordPoints(std::uint32_t first, std::uint32_t step, int records, double start,
                               double end) {
        Points points;
        for (int i = 0; i < records; ++i) {
            const double time = first + static_cast<std::uint32_t>(i) * step;
            if (time >= start && time <= end) {
                points.times.push_back(time);
                points.values.push_back(i);
            }
        }
        return points;
    }

    testing::AssertionResult gives(std::string_view selector, double start, double end,
                                   const Points &expected, std::string_view key = "Q:DATA:A") const {
        const Points points = pointsOf(dataSet_, key, selector, start, end);
        const auto times = sameNumbers(points.times, expected.times);
        if (!times) {
            return testing::AssertionFailure() << "times: " << times.message();
        }
        const auto values = sameNumbers(points.values, expected.values);
        if (!values) {
            return testing::AssertionFailure() << "values: " << values.message();
        }
        return testing::AssertionSuccess();
    }

    ScratchFolder folder_;
    DataSet dataSet_;
};

} // namespace

TEST_F(SeriesQueryTest, TheSpanAskedForChoosesTheLevel) {
    constexpr std::uint32_t step = 607;
    constexpr int records = 15200; // 107 days
    load("a.data", blockOf(begin, step, records));
    struct Row {
        double span = 0;
        std::optional<std::size_t> levelAt;
        std::size_t levelAbove = 0;
    };
    for (const Row &row :
         {Row{5000, std::nullopt, 0}, Row{300000, 0, 1}, Row{1500000, 1, 2}, Row{9000000, 2, 3}}) {
        for (const double start : {begin + 5.0, begin + 70000.0}) {
            const double at = start + row.span;
            const Points expectedAt = row.levelAt ? averagedPoints(dataSet_.fragments().front(), *row.levelAt,
                                                                   Statistic::average, start, at)
                                                  : recordPoints(begin, step, records, start, at);
            EXPECT_FALSE(expectedAt.times.empty());
            EXPECT_TRUE(gives("", start, at, expectedAt)) << "span " << row.span;
            for (const double above : {std::nextafter(at, 2 * at), at + 0.5}) {
                const Points expectedAbove = averagedPoints(dataSet_.fragments().front(), row.levelAbove,
                                                            Statistic::average, start, above);
                EXPECT_FALSE(expectedAbove.times.empty());
                EXPECT_TRUE(gives("", start, above, expectedAbove)) << "just above span " << row.span;
            }
        }
    }
}

TEST_F(SeriesQueryTest, ASpanOfExactly5000SecondsReadsRecordsAndALongerOneThe60SecondSeries) {
    load("a.data", blockOf(begin, 7, 2000));
    const Points records = pointsOf(dataSet_, "Q:DATA:A", "", begin, begin + 5000.0);
    EXPECT_EQ(records.times.size(), 715U);
    EXPECT_EQ(records.times.front(), begin);
    const Points minutes = pointsOf(dataSet_, "Q:DATA:A", "", begin, begin + 5000.5);
    EXPECT_EQ(minutes.times.size(), 83U);
    EXPECT_EQ(std::fmod(minutes.times.front(), 60), 0);
}

TEST_F(SeriesQueryTest, AWholeRangeOfTwoHoursUsesThe60SecondSeries) {
    load("a.data", blockOf(begin, 10, 721));
    const DataFragment &fragment = dataSet_.fragments().front();
    EXPECT_EQ(fragment.series(0).size(), 120U);
    EXPECT_TRUE(gives("", wholeRangeStart, wholeRangeEnd,
                      averagedPoints(fragment, 0, Statistic::average, begin, begin + 7200)));
}

TEST_F(SeriesQueryTest, AWholeRangeOfAFewMinutesGivesItsRecords) {
    load("a.data", blockOf(begin, 10, 30));
    EXPECT_TRUE(gives("", wholeRangeStart, wholeRangeEnd, recordPoints(begin, 10, 30, 0, 1e10)));
}

TEST_F(SeriesQueryTest, EitherBoundAloneMayStandForTheDatasOwn) {
    load("a.data", blockOf(begin, 10, 1000));
    EXPECT_TRUE(gives("", wholeRangeStart, begin + 4000.0, recordPoints(begin, 10, 1000, 0, begin + 4000.0)));
    EXPECT_TRUE(
        gives("", begin + 6000.0, wholeRangeEnd, recordPoints(begin, 10, 1000, begin + 6000.0, 1e10)));
}

TEST_F(SeriesQueryTest, OnlyTheExactMarkersStandForTheWholeRange) {
    load("a.data", blockOf(begin, 10, 30));
    // The span is that of the bounds, far beyond the coarsest level's, and no such period has ended.
    EXPECT_TRUE(gives("", 1, 2147483647, {}));
    EXPECT_TRUE(gives("", -1, 2147483649.0, {}));
}

TEST_F(SeriesQueryTest, TheLastMatchingFragmentInListOrderEndsTheWholeRange) {
    load("a.data", blockOf(begin, 10, 400));       // to begin + 3990
    load("b.data", blockOf(begin + 1000, 10, 51)); // to begin + 1500
    load("c.data", "Instrument:\tQ\nDATASTATH\tSECONDS\tA\nDATASTAT\t1500009000\t1\n");
    Points expected = recordPoints(begin, 10, 400, 0, begin + 1500.0);
    const Points second = recordPoints(begin + 1000, 10, 51, 0, 1e10);
    expected.times.insert(expected.times.end(), second.times.begin(), second.times.end());
    expected.values.insert(expected.values.end(), second.values.begin(), second.values.end());
    EXPECT_TRUE(gives("", wholeRangeStart, wholeRangeEnd, expected));
}

TEST_F(SeriesQueryTest, AStartStillZeroBecomesTheFirstTimeOfTheListWhateverItsInstrument) {
    // The set of one source stands in header order, so that a fragment at time 0 need not come first.
    const std::string zero = "Instrument:\tZ\nDATAH\tSECONDS\tA\nDATA\t0\t5\n";
    const std::string later = "Instrument:\tY\nDATAH\tSECONDS\tA\nDATA\t1000\t6\n";
    const DataSet behind = loadSource(folder_.write("behind.data", later + zero));
    EXPECT_TRUE(pointsOf(behind, "Z:DATA:A", "", wholeRangeStart, wholeRangeEnd).times.empty());
    EXPECT_TRUE(pointsOf(behind, "Z:DATA:A", "", wholeRangeStart, 900).times.empty());
    const DataSet inFront = loadSource(folder_.write("inFront.data", zero + later));
    EXPECT_EQ(pointsOf(inFront, "Z:DATA:A", "", wholeRangeStart, wholeRangeEnd).values,
              std::vector<double>{5});
}

TEST_F(SeriesQueryTest, AKeyThatMatchesNoFragmentGivesNoPointsOfOthers) {
    load("a.data", blockOf(begin, 10, 1000));
    for (const char *const key : {"R:DATA:A", "Q:DATASTAT:A", "Q:DATA:B", "Q:DATA", "Q", "",
                                  "Q:DATA:A:", "q:DATA:A", "Q:DATA:SECONDS"}) {
        EXPECT_TRUE(gives("", wholeRangeStart, wholeRangeEnd, {}, key)) << key;
        EXPECT_TRUE(gives("", begin, begin + 100, {}, key)) << key;
    }
}

TEST_F(SeriesQueryTest, TheSelectorPicksAveragesMaximaOrMinima) {
    load("a.data", blockOf(begin, 10, 2000));
    const DataFragment &fragment = dataSet_.fragments().front();
    const double end = begin + 20000.0;
    EXPECT_TRUE(gives("", begin, end, averagedPoints(fragment, 0, Statistic::average, begin, end)));
    EXPECT_TRUE(gives("max", begin, end, averagedPoints(fragment, 0, Statistic::maximum, begin, end)));
    EXPECT_TRUE(gives("min", begin, end, averagedPoints(fragment, 0, Statistic::minimum, begin, end)));
    const Points maxima = pointsOf(dataSet_, "Q:DATA:A", "max", begin, end);
    const Points minima = pointsOf(dataSet_, "Q:DATA:A", "min", begin, end);
    EXPECT_EQ(maxima.values[1] - minima.values[1], 5);
}

TEST_F(SeriesQueryTest, AnyOtherSelectorGivesNoPoints) {
    load("a.data", blockOf(begin, 10, 2000));
    for (const char *const selector : {"Max", "MIN", "avg", "average", " ", "max ", "minmax"}) {
        EXPECT_TRUE(gives(selector, begin, begin + 20000.0, {})) << selector;
    }
}

TEST_F(SeriesQueryTest, RecordsAreGivenWhateverTheSelector) {
    load("a.data", blockOf(begin, 10, 100));
    for (const char *const selector : {"", "max", "min", "any other"}) {
        EXPECT_TRUE(gives(selector, begin, begin + 5000.0, recordPoints(begin, 10, 100, 0, 1e10)))
            << selector;
    }
}

TEST_F(SeriesQueryTest, BothBoundsAreInclusive) {
    load("a.data", blockOf(begin, 10, 2000));
    EXPECT_TRUE(
        gives("", begin + 100.0, begin + 200.0, recordPoints(begin, 10, 2000, begin + 100.0, begin + 200.0)));
    EXPECT_EQ(pointsOf(dataSet_, "Q:DATA:A", "", begin + 100.0, begin + 200.0).times.size(), 11U);
    EXPECT_EQ(pointsOf(dataSet_, "Q:DATA:A", "", begin + 100.5, begin + 199.5).times.size(), 9U);
    EXPECT_EQ(pointsOf(dataSet_, "Q:DATA:A", "", begin + 100.0, begin + 100.0).times.size(), 1U);
    const double minute = std::ceil(begin / 60.0) * 60 + 600;
    EXPECT_EQ(pointsOf(dataSet_, "Q:DATA:A", "", minute, minute + 6000).times.size(), 101U);
    EXPECT_EQ(pointsOf(dataSet_, "Q:DATA:A", "", minute + 0.5, minute + 5999.5).times.size(), 99U);
}

TEST_F(SeriesQueryTest, PointsAreAppendedToWhatTheListsHold) {
    load("a.data", blockOf(begin, 10, 5));
    std::vector<double> times{1};
    std::vector<double> values{2, 3};
    dataSet_.series("Q:DATA:A", "", begin, begin + 10, times, values);
    EXPECT_EQ(times, (std::vector<double>{1, begin, begin + 10}));
    EXPECT_EQ(values, (std::vector<double>{2, 3, 0, 1}));
}

TEST_F(SeriesQueryTest, FragmentsAreGivenOneBehindTheOtherInListOrder) {
    load("late.data", blockOf(begin + 100000, 10, 1000));
    load("early.data", blockOf(begin, 10, 1000));
    const Points points = pointsOf(dataSet_, "Q:DATA:A", "", begin, begin + 120000.0);
    const Points early = averagedPoints(fragmentAt(dataSet_, 0), 0, Statistic::average, 0, 1e10);
    const Points late = averagedPoints(fragmentAt(dataSet_, 1), 0, Statistic::average, 0, 1e10);
    std::vector<double> times = early.times;
    times.insert(times.end(), late.times.begin(), late.times.end());
    EXPECT_EQ(points.times, times);
    EXPECT_EQ(fragmentAt(dataSet_, 0).firstTime(), begin);
}

TEST_F(SeriesQueryTest, TheFirstOfColumnsOfOneNameCountsInRecordsAndInAverages) {
    std::string text = "Instrument:\tQ\nDATAH\tSECONDS\tB\tA\tA\n";
    for (std::uint32_t i = 0; i < 1000; ++i) {
        text += "DATA\t" + std::to_string(begin + i * 10) + "\t1\t2\t3\n";
    }
    load("a.data", text);
    EXPECT_EQ(pointsOf(dataSet_, "Q:DATA:A", "", begin, begin).values, std::vector<double>{2});
    EXPECT_EQ(pointsOf(dataSet_, "Q:DATA:A", "", begin, begin + 9000).values[0], 2);
}

TEST_F(SeriesQueryTest, FragmentsWithoutTheColumnArePassedOver) {
    load("a.data", "Instrument:\tQ\nDATAH\tSECONDS\tB\nDATA\t100\t1\n");
    load("b.data", "Instrument:\tQ\nDATAH\tSECONDS\tB\tA\nDATA\t200\t2\t3\n");
    load("c.data", "Instrument:\tQ\nDATAH\tA\tSECONDS\nDATA\t4\t300\n");
    const Points points = pointsOf(dataSet_, "Q:DATA:A", "", wholeRangeStart, wholeRangeEnd);
    EXPECT_EQ(points.times, (std::vector<double>{200, 300}));
    EXPECT_EQ(points.values, (std::vector<double>{3, 4}));
}

TEST_F(SeriesQueryTest, AKeysColumnMayHoldColons) {
    load("a.data",
         "Instrument:\tQA330\nDATADIAGH\tF\tPUMPON\nDATAH\tSECONDS\tDIAG\nDATA\t100\t2\nDATA\t101\t1\n");
    EXPECT_EQ(pointsOf(dataSet_, "QA330:DATA:DIAG:PUMPON", "", 1, 1000).values, (std::vector<double>{2, 0}));
}

TEST_F(SeriesQueryTest, ABoundThatIsNotANumberGivesNoPoints) {
    load("a.data", blockOf(begin, 10, 2000));
    for (const auto &[start, end] : {std::pair{notANumber, notANumber}, std::pair{notANumber, begin + 100.0},
                                     std::pair{begin + 0.0, notANumber}, std::pair{notANumber, wholeRangeEnd},
                                     std::pair{wholeRangeStart, notANumber}}) {
        EXPECT_TRUE(gives("", start, end, {})) << start << " " << end;
    }
}

TEST_F(SeriesQueryTest, AStartBehindTheEndGivesNoPoints) {
    load("a.data", blockOf(begin, 10, 2000));
    EXPECT_TRUE(gives("", begin + 100.0, begin + 99.0, {}));
    EXPECT_TRUE(gives("", begin + 20000.0, begin, {}));
    EXPECT_TRUE(gives("", wholeRangeEnd + 1, wholeRangeEnd, {}));
    EXPECT_TRUE(gives("", wholeRangeStart, begin - 1.0, {}));
}

TEST_F(SeriesQueryTest, InfiniteBoundsTakeTheCoarsestLevel) {
    load("a.data", blockOf(begin, 600, 100));
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(
        gives("", -infinity, infinity,
              averagedPoints(dataSet_.fragments().front(), 3, Statistic::average, -infinity, infinity)));
}

TEST_F(SeriesQueryTest, AClockThatStepsBackLosesNothingOnTheWholeRange) {
    load("a.data",
         "Instrument:\tQ\nDATAH\tSECONDS\tA\nDATA\t1000\t1\nDATA\t3000\t2\nDATA\t900\t3\nDATA\t2000\t4\n");
    const Points points = pointsOf(dataSet_, "Q:DATA:A", "", wholeRangeStart, wholeRangeEnd);
    EXPECT_EQ(points.times, (std::vector<double>{1000, 3000, 900, 2000}));
    EXPECT_EQ(points.values, (std::vector<double>{1, 2, 3, 4}));
}

TEST_F(SeriesQueryTest, AClockThatStepsBackLosesNoPeriodOnTheWholeRange) {
    load("a.data", blockOf(begin, 10, 2000) + "DATA\t" + std::to_string(begin + 7000) + "\t1\n");
    const DataFragment &fragment = dataSet_.fragments().front();
    ASSERT_EQ(fragment.lastTime(), begin + 7000.0);
    EXPECT_TRUE(
        gives("", wholeRangeStart, wholeRangeEnd, averagedPoints(fragment, 0, Statistic::average, 0, 1e10)));
}

TEST_F(SeriesQueryTest, TheBlocksOfOneTagInOneFileAreReadWithTheirOwnColumnsEach) {
    // The second block's clock starts within the first block's time.
    load("a.data",
         "Instrument:\tQ\nDATAH\tSECONDS\tA\tB\nDATA\t1000\t1\t10\nDATA\t1100\t2\t20\nDATA\t1200\t3\t30\n"
         "DATAH\tB\tSECONDS\tC\tA\nDATA\t40\t1050\t400\t4\nDATA\t50\t1150\t500\t5\n");
    struct Row {
        const char *key;
        std::vector<double> times;
        std::vector<double> values;
    };
    for (const Row &row :
         {Row{"Q:DATA:A", {1000, 1100, 1050}, {1, 2, 4}}, Row{"Q:DATA:B", {1000, 1100, 1050}, {10, 20, 40}},
          Row{"Q:DATA:C", {1050}, {400}}}) {
        EXPECT_TRUE(gives("", 1000, 1149, {row.times, row.values}, row.key)) << row.key;
    }
    EXPECT_TRUE(gives("", wholeRangeStart, wholeRangeEnd, {{1000, 1100, 1050, 1150}, {1, 2, 4, 5}}));
}

TEST_F(SeriesQueryTest, PointsMayBeReadAfterTheSetChanged) {
    load("a.data", blockOf(begin, 10, 100));
    const SeriesBatch batch(dataSet_.fragments(), {{"Q:DATA:A", ""}}, begin, begin + 50.0);
    dataSet_.removeFile(folder_.pathOf("a.data"));
    ASSERT_TRUE(dataSet_.fragments().empty());
    EXPECT_EQ(batch.read().at(0).times->size(), 6U);
}

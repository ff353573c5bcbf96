#include "plot/PlotSeries.h"

#include "plot/PlotCurveData.h"
#include "plot/PlotData.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

void expectExtent(const Extent &extent, double low, double high) {
    EXPECT_EQ(extent.low, low);
    EXPECT_EQ(extent.high, high);
}

// Records with these texts as their only value, one a second.
PlotBlock blockOf(const std::vector<std::string> &values) {
    return {"GA", "X", static_cast<int>(values.size()),
            [values](int i) { return values[static_cast<std::size_t>(i)]; }};
}

// Six minutes around each value of X make a span that is shown by averages of a minute.
PlotBlock averagedBlockOf(const std::vector<std::string> &values) {
    PlotBlock block = blockOf(values);
    block.count = 36 * 40;
    block.step = 10;
    block.values = [values](int i) { return values[static_cast<std::size_t>(i / 36) % values.size()]; };
    return block;
}

class PlotSeriesTest : public testing::Test {
protected:
    PlotData data_;
};

} // namespace

TEST_F(PlotSeriesTest, AVariableWithNoPointsHasSize0AndALoadedWindowOf0To1) {
    for (const char *key : {"", "GA", "GA:DATA", "GA:DATA:X", "no key at all"}) {
        const PlotSeries series(data_.set, key, "");
        EXPECT_EQ(series.size(), 0U) << key;
        expectExtent(series.window(), 0, 1);
        EXPECT_TRUE(series.wholeRange().isEmpty()) << key;
        EXPECT_TRUE(series.loadedRange().isEmpty()) << key;
    }
}

TEST_F(PlotSeriesTest, ANewSeriesHasLoadedEverything) {
    data_.add(shortBlock());
    const PlotSeries series(data_.set, "GA:DATA:X", "");
    ASSERT_EQ(series.size(), 100U);
    EXPECT_EQ(series.times().size(), 100U);
    expectExtent(series.window(), plotStart, plotStart + 99);
    expectExtent(series.wholeRange(), 0, 99);
    expectExtent(series.loadedRange(), 0, 99);
}

TEST_F(PlotSeriesTest, AWindowHoldsBothItsBoundsAndIsRememberedAsAsked) {
    data_.add(shortBlock());
    PlotSeries series(data_.set, "GA:DATA:X", "");
    series.loadWindow(plotStart + 10, plotStart + 20.5);
    EXPECT_EQ(series.times().front(), plotStart + 10);
    EXPECT_EQ(series.times().back(), plotStart + 20);
    expectExtent(series.window(), plotStart + 10, plotStart + 20.5);
    expectExtent(series.loadedRange(), 10, 20);
    expectExtent(series.wholeRange(), 0, 99);
}

TEST_F(PlotSeriesTest, EverythingCanBeLoadedAgainAfterAWindow) {
    data_.add(shortBlock());
    PlotSeries series(data_.set, "GA:DATA:X", "");
    series.loadWindow(plotStart + 10, plotStart + 20);
    series.loadEverything();
    EXPECT_EQ(series.size(), 100U);
    expectExtent(series.window(), plotStart, plotStart + 99);
    expectExtent(series.loadedRange(), 0, 99);
}

TEST_F(PlotSeriesTest, ReloadingForAWindowWithoutPointsEmptiesItButKeepsItsBoundingRectanglesYExtent) {
    data_.add(shortBlock());
    PlotSeries series(data_.set, "GA:DATA:Y", "");
    const PlotDialog::_QwtPlotData shown(series);
    series.loadWindow(plotStart + 10.25, plotStart + 10.75);
    EXPECT_EQ(shown.size(), 0U);
    EXPECT_TRUE(series.times().empty());
    EXPECT_TRUE(series.loadedRange().isEmpty());
    EXPECT_EQ(shown.boundingRect(), QRectF(plotStart + 10.25, 401, 0.5, 99));
}

TEST_F(PlotSeriesTest, TheSeriesForSelectorMaxOfAVariableThatHasNoneHasSize0) {
    data_.add(longBlock());
    for (const char *selector : {"max", "min"}) {
        const PlotSeries series(data_.set, "LONG:DATA:absent", selector);
        EXPECT_EQ(series.size(), 0U);
        expectExtent(series.window(), 0, 1);
    }
    EXPECT_EQ(PlotSeries(data_.set, "LONG:DATA:X", "median").size(), 0U);
}

TEST_F(PlotSeriesTest, TheSelectorPicksTheExtremesOfEachPeriod) {
    data_.add(longBlock());
    const PlotSeries average(data_.set, "LONG:DATA:X", "");
    const PlotSeries highest(data_.set, "LONG:DATA:X", "max");
    const PlotSeries lowest(data_.set, "LONG:DATA:X", "min");
    ASSERT_GT(average.size(), 4000U);
    EXPECT_LT(average.size(), 4400U);
    ASSERT_EQ(highest.size(), average.size());
    ASSERT_EQ(lowest.size(), average.size());
    for (std::size_t i = 1; i + 1 < average.size(); ++i) {
        ASSERT_LE(lowest.values()[i], average.values()[i]) << i;
        ASSERT_LE(average.values()[i], highest.values()[i]) << i;
        ASSERT_GE(highest.values()[i] - lowest.values()[i], 5) << i;
    }
}

TEST_F(PlotSeriesTest, RecordsHaveNoExtremesOfTheirOwn) {
    data_.add(longBlock());
    PlotSeries average(data_.set, "LONG:DATA:X", "");
    PlotSeries highest(data_.set, "LONG:DATA:X", "max");
    for (PlotSeries *series : {&average, &highest}) {
        series->loadWindow(plotStart + 1000, plotStart + 6000);
    }
    ASSERT_EQ(average.size(), 501U);
    EXPECT_EQ(highest.values(), average.values());
}

TEST_F(PlotSeriesTest, TheWindowOfEverythingGoesFromTheEarliestToTheLatestPointAlsoWhereAClockSteppedBack) {
    std::string text = "Instrument:\tGA\nDATAH\tSECONDS\tNANOSECONDS\tX\n";
    for (const int second : {50, 51, 90, 20, 21}) {
        text += "DATA\t" + std::to_string(plotStart + second) + "\t0\t1\n";
    }
    data_.addText("GA", text);
    const PlotSeries series(data_.set, "GA:DATA:X", "");
    EXPECT_EQ(series.size(), 5U);
    expectExtent(series.window(), plotStart + 20, plotStart + 90);
}

TEST_F(PlotSeriesTest, ACurveIsGivenThePointsInOrderAndTheWholeVariableAsItsHeight) {
    data_.add(shortBlock());
    PlotSeries series(data_.set, "GA:DATA:X", "");
    const PlotDialog::_QwtPlotData shown(series);
    EXPECT_EQ(shown.size(), 100U);
    EXPECT_EQ(shown.sample(7), QPointF(plotStart + 7, 7));
    EXPECT_EQ(shown.boundingRect(), QRectF(plotStart, 0, 99, 99));
    series.loadWindow(plotStart + 10, plotStart + 20);
    EXPECT_EQ(shown.size(), 11U);
    EXPECT_EQ(shown.sample(0), QPointF(plotStart + 10, 10));
    EXPECT_EQ(shown.boundingRect(), QRectF(plotStart + 10, 0, 10, 99));
}

TEST_F(PlotSeriesTest, SeveralSeriesLoadedTogetherHoldWhatEachLoadsAlone) {
    data_.add(longBlock());
    data_.add(shortBlock());
    PlotSeries together[] = {{data_.set, "LONG:DATA:X", ""},    {data_.set, "LONG:DATA:X", "max"},
                             {data_.set, "LONG:DATA:X", "min"}, {data_.set, "GA:DATA:Y", ""},
                             {data_.set, "absent", ""},         {data_.set, "GA:DATA:X", "max"}};
    std::vector<PlotSeries *> all;
    for (PlotSeries &series : together) {
        all.push_back(&series);
    }
    const std::pair<double, double> windows[] = {
        {plotStart + 10, plotStart + 20}, {plotStart - 100, plotStart + 5000}, {plotStart, plotStart + 2e5}};
    for (const auto &[from, to] : windows) {
        loadWindow(data_.set, all, from, to);
        for (const PlotSeries &series : together) {
            PlotSeries alone(data_.set, series.request().key, series.request().selector);
            alone.loadWindow(from, to);
            EXPECT_EQ(series.times(), alone.times()) << series.request().key << ' ' << from;
            EXPECT_EQ(series.values(), alone.values()) << series.request().key << ' ' << from;
            EXPECT_EQ(series.size(), alone.size());
            expectExtent(series.window(), from, to);
            expectExtent(series.loadedRange(), alone.loadedRange().low, alone.loadedRange().high);
        }
    }
    loadEverything(data_.set, all);
    for (const PlotSeries &series : together) {
        const PlotSeries alone(data_.set, series.request().key, series.request().selector);
        EXPECT_EQ(series.values(), alone.values()) << series.request().key;
        expectExtent(series.window(), alone.window().low, alone.window().high);
    }
}

TEST_F(PlotSeriesTest, WhatCannotBeDrawnDoesNotCountForTheRanges) {
    data_.add(blockOf({"nan", "3", "inf", "-2", "-inf", "1", "nan"}));
    const PlotSeries series(data_.set, "GA:DATA:X", "");
    EXPECT_EQ(series.size(), 7U);
    expectExtent(series.loadedRange(), -2, 3);
    expectExtent(series.wholeRange(), -2, 3);
    expectExtent(series.window(), plotStart, plotStart + 6);
}

TEST_F(PlotSeriesTest, AVariableWithoutAnyNumberHasNoRange) {
    for (const char *value : {"nan", "inf", "-inf"}) {
        PlotData data;
        data.add(blockOf({value, value, value}));
        const PlotSeries series(data.set, "GA:DATA:X", "");
        EXPECT_EQ(series.size(), 3U);
        EXPECT_TRUE(series.wholeRange().isEmpty()) << value;
        EXPECT_TRUE(series.loadedRange().isEmpty()) << value;
    }
}

TEST_F(PlotSeriesTest, PeriodsWithoutANumberDoNotCountForTheRangesOfTheExtremes) {
    data_.add(averagedBlockOf({"5", "nan", "7"}));
    for (const char *selector : {"", "max", "min"}) {
        const PlotSeries series(data_.set, "GA:DATA:X", selector);
        ASSERT_GT(series.size(), 200U) << selector;
        expectExtent(series.loadedRange(), 5, 7);
        expectExtent(series.wholeRange(), 5, 7);
    }
}

TEST_F(PlotSeriesTest, FloatsBeyondAllMeasuresAreStillDrawn) {
    data_.add(blockOf({"1e38", "-3.4e38"}));
    const PlotSeries series(data_.set, "GA:DATA:X", "");
    expectExtent(series.wholeRange(), static_cast<double>(-3.4e38F), static_cast<double>(1e38F));
}

TEST(IsDrawable, IsFalseForWhatHasNoPlaceOnAScale) {
    const double largest = std::numeric_limits<double>::max();
    for (const double value : {0.0, -0.0, 1e-300, -3.4e38, 1e307}) {
        EXPECT_TRUE(isDrawable(value)) << value;
    }
    for (const double value : {noNumber, -noNumber, infinity, -infinity, largest, -largest}) {
        EXPECT_FALSE(isDrawable(value)) << value;
    }
}

TEST(Extent, IsEmptyUntilItHasANumber) {
    Extent extent;
    EXPECT_TRUE(extent.isEmpty());
    extent.include(Extent());
    EXPECT_TRUE(extent.isEmpty());
    extent.include(3);
    EXPECT_FALSE(extent.isEmpty());
    EXPECT_EQ(extent.width(), 0);
    extent.include(Extent{-1, 2});
    expectExtent(extent, -1, 3);
}

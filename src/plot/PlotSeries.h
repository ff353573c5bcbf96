#pragma once

#include "data/SeriesPoints.h"
#include "plot/Extent.h"

#include <cmath>
#include <limits>
#include <span>
#include <vector>

class QDataSet;

// The points that one curve of a plot draws: one variable, one statistic, one window of time.
//
// Holds what the data set gives for the window and asks again whenever the window changes. The data set must
// outlive it. For the interface thread.
class PlotSeries {
public:
    // `selector` is empty for the values, "max" or "min" for the extremes of each period. Loads everything.
    PlotSeries(const QDataSet &dataSet, const std::string &key, const std::string &selector);
    // The same, over points that were read already: `everything` is the answer for the whole range of time.
    PlotSeries(const QDataSet &dataSet, const SeriesRequest &request, SeriesPoints everything);

    void loadEverything();
    // The points from `from` to `to`, UTC seconds, both included.
    void loadWindow(double from, double to);

    const SeriesRequest &request() const { return request_; }
    const std::vector<double> &times() const { return *points_.times; } // UTC seconds
    const std::vector<double> &values() const { return *points_.values; }
    std::size_t size() const { return points_.values->size(); }

    // The window that was asked for; after loading everything, from the earliest to the latest point, or 0 to
    // 1 without points.
    const Extent &window() const { return window_; }
    // Of the whole variable, whatever the window. A bound that the data give as infinite is that of the
    // points which can be drawn.
    const Extent &wholeRange() const { return wholeRange_; }
    // Of the loaded points that can be drawn; looks at each of them.
    Extent loadedRange() const;

    // Takes the points of the whole range or of a window from a reading that serves several series.
    void takeEverything(SeriesPoints points);
    void takeWindow(double from, double to, SeriesPoints points);

private:
    const QDataSet *dataSet_;
    SeriesRequest request_;
    SeriesPoints points_;
    Extent window_;
    Extent wholeRange_;
};

// False for what no curve can show: not-a-number, infinities, and the extremes of a period without a number.
inline bool isDrawable(double value) {
    return std::abs(value) < std::numeric_limits<double>::max();
}

// Load all the series in one reading of the sources.
void loadEverything(const QDataSet &dataSet, std::span<PlotSeries *const> series);
void loadWindow(const QDataSet &dataSet, std::span<PlotSeries *const> series, double from, double to);

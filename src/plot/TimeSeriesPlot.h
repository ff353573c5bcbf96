#pragma once

#include "plot/PlotSeries.h"
#include "time/Timezone.h"

#include <qwt_plot.h>

#include <cstdint>
#include <map>
#include <memory>
#include <utility>
#include <vector>

class QwtLegend;
class QwtPlotCurve;

// The curves of some variables against time, with their axes and legend: what a plot window shows and what
// the companion draws.
//
// Each variable has three curves: its values, and the highest and lowest value of each period as a dashed
// band around them. The data set must outlive it. For the interface thread.
class TimeSeriesPlot : public QwtPlot {
    Q_OBJECT

public:
    enum class Side { left, right };
    enum class Curves { all, visible };

    // With the variable `key`, on the left axis unless told otherwise. The time axis shows that variable's
    // time zone. Throws Timezone::Error when the zone's file has become unreadable.
    TimeSeriesPlot(const QDataSet &dataSet, const QString &key, QWidget *parent = nullptr,
                   Side side = Side::left);
    ~TimeSeriesPlot() override;

    // Adds the curves of a variable, in the next colour; those of a variable that is there already are
    // replaced. Loads everything of them. A key that no data have gives curves without points.
    void addVariable(const QString &key, Side side);

    // Lets the labels of the time axis begin with a date, as on a new axis. What a label says depends on
    // those before, also on those of an earlier scale.
    void restartLabels();

    // Load the points of all curves. Nothing is drawn before replot().
    void loadEverything();
    void loadWindow(double from, double to);

    // Unions over the series, UTC seconds and values. Those without a number that can be drawn count for
    // none of them, and those without points, for instance of a file that was removed, not for the times.
    Extent windows(Curves which) const;
    Extent wholeRange() const;
    Extent loadedRange(Curves which) const;
    // All there is, as a rectangle of time by values: 0 to 1 where there is nothing.
    QRectF wholeRect() const;
    // `rect`, widened by the windows and whole ranges of all series.
    QRectF widened(const QRectF &rect) const;

    // What stands in the middle while the curves that are shown have no point; nothing unless set. Only on
    // the screen: pictures and prints do not have it.
    void setEmptyHint(const QString &text) { emptyHint_ = text; }
    bool hasNothingToDraw() const;

    bool isEveryCurveHidden() const;
    void setLegendChecked(QwtPlotItem &curve, bool checked);
    QwtLegend &checkableLegend() { return *legend_; }
    // Series and curves in the order of their keys: the values before the extremes.
    struct Entry {
        std::unique_ptr<PlotSeries> series;
        QwtPlotCurve *curve; // owned by the plot
    };
    const auto &entries() const { return entries_; }
    const Timezone &timezone() const { return timezone_; }

protected:
    void drawCanvas(QPainter *painter) override;

private:
    using EntryKey = std::pair<std::string, std::string>; // variable key, selector

    void setUpAxis(const std::string &key);
    void addCurve(std::unique_ptr<PlotSeries> series, const QString &title, const QPen &pen, Side side);
    void removeVariable(const std::string &key);
    std::vector<PlotSeries *> allSeries() const;
    Extent timesOfData() const;

    const QDataSet &dataSet_;
    Timezone timezone_;
    QwtLegend *legend_; // owned by the plot
    std::map<EntryKey, Entry> entries_;
    std::uint64_t addedVariables_ = 0;
    QString emptyHint_;
};

// `rect` with other times or values. Not by moving one border after the other, for a very large border would
// swallow the digits of a small one.
QRectF withTimes(const QRectF &rect, const Extent &times);
QRectF withValues(const QRectF &rect, const Extent &values);

// A rectangle of no width or height has no scale to draw on: gives it some, around where it lies.
QRectF withArea(const QRectF &rect);

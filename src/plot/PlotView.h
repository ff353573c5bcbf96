#pragma once

#include "plot/TimeSeriesPlot.h"

#include <QCoreApplication>

class PlotZoomer;
class QRectF;
class QwtPlotItem;
class YRangeEdits;

// What a plot window looks at: keeps the points that are loaded, the zoom history and the edits of the left
// axis's range in step.
//
// Whoever takes the zoomer's zoomed() calls showZoomed(). Plot, zoomer and edits must outlive it.
class PlotView {
    Q_DECLARE_TR_FUNCTIONS(PlotView)

public:
    PlotView(TimeSeriesPlot &plot, PlotZoomer &zoomer, YRangeEdits &yRange);

    // Shows all there is, as the base of a new history, with the labels of a new axis.
    void start();

    // Shows what has been zoomed to.
    void showZoomed(const QRectF &rect);

    // Whether the history goes on to either side of what is in view.
    bool hasPrevious() const;
    bool hasNext() const;
    void goBack();
    void goOn();

    // The automatic scales. The full one is of every curve, hidden or not: this is where hidden curves are
    // found again. The vertical one tells whether there was a value to scale to.
    void scaleFully();
    void scaleHorizontally();
    bool scaleVertically();

    // Zooms to other values over the same times, unless they are in view or too far apart for a number.
    void showValues(const Extent &values);

    // Shows or hides a curve, but not the last visible one, and scales to the values of the visible ones.
    void setCurveVisible(QwtPlotItem &curve, bool visible);

    // Adds a variable's curves and widens the base by them; what is in view stays, unless that was the base.
    void addVariable(const QString &key, TimeSeriesPlot::Side side);

private:
    void extendBase(bool wasEmpty);
    void zoomTo(const QRectF &rect);
    void load();
    void updateHint();

    TimeSeriesPlot &plot_;
    PlotZoomer &zoomer_;
    YRangeEdits &yRange_;
    bool isLoaded_ = false; // by the last zoom
};

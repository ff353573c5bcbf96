#pragma once

#include "plot/QwtCurve.h"

class PlotSeries;

// A line through those points of a series that can be drawn. The others leave a gap, and a point between two
// gaps shows as a dot. The series must outlive it.
class GappedCurve : public QwtPlotCurve {
public:
    GappedCurve(const QwtText &title, const PlotSeries &series);

    // Called by the plot to draw the points `from` to `to`, or to the last one when that is negative.
    void drawSeries(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
                    const QRectF &canvasRect, int from, int to) const override;

protected:
    void drawLines(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
                   const QRectF &canvasRect, int from, int to) const override;

private:
    void drawDot(QPainter *painter, const QPointF &at) const;

    const PlotSeries *series_;
};

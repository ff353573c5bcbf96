#pragma once

#include "plot/QwtCurve.h"

// A line through those points that can be drawn. The others leave a gap, and a point between two gaps shows
// as a dot.
class GappedCurve : public QwtPlotCurve {
public:
    explicit GappedCurve(const QwtText &title);

    // Called by the plot to draw the points `from` to `to`.
    void drawSeries(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
                    const QRectF &canvasRect, int from, int to) const override;

private:
    void drawDot(QPainter *painter, const QPointF &at) const;
};

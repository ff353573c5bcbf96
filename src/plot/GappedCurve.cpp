#include "plot/GappedCurve.h"

#include "plot/PlotSeries.h"

#include <QPainter>
#include <qwt_painter.h>
#include <qwt_scale_map.h>

GappedCurve::GappedCurve(const QwtText &title) : QwtPlotCurve(title) {
    setStyle(Lines);
    setPaintAttribute(FilterPoints);
}

void GappedCurve::drawSeries(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
                             const QRectF &canvasRect, int from, int to) const {
    const int end = to < 0 ? static_cast<int>(dataSize()) : to + 1;
    for (int first = from; first < end;) {
        if (!isDrawable(sample(first).y())) {
            ++first;
            continue;
        }
        int behind = first + 1;
        while (behind < end && isDrawable(sample(behind).y())) {
            ++behind;
        }
        if (behind - first > 1) {
            QwtPlotCurve::drawSeries(painter, xMap, yMap, canvasRect, first, behind - 1);
        } else {
            const QPointF point = sample(first);
            drawDot(painter, {xMap.transform(point.x()), yMap.transform(point.y())});
        }
        first = behind;
    }
}

void GappedCurve::drawDot(QPainter *painter, const QPointF &at) const {
    constexpr double size = 3;
    painter->save();
    painter->setPen(QPen(pen().color(), size, Qt::SolidLine, Qt::RoundCap));
    QwtPainter::drawPoint(painter, at);
    painter->restore();
}

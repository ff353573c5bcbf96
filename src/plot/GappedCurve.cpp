#include "plot/GappedCurve.h"

#include "plot/DensePolyline.h"
#include "plot/PlotCurveData.h"
#include "plot/PlotSeries.h"

#include <QPainter>
#include <qwt_clipper.h>
#include <qwt_painter.h>
#include <qwt_scale_map.h>

#include <algorithm>

namespace {

// The thinnest line that a screen can draw is a hair where its pixels are small.
void widenHairline(QPainter &painter) {
    QPen pen = painter.pen();
    if (pen.widthF() == 0 && painter.device()->devicePixelRatioF() > 1) {
        pen.setWidthF(1);
        painter.setPen(pen);
    }
}

} // namespace

GappedCurve::GappedCurve(const QwtText &title, const PlotSeries &series)
    : QwtPlotCurve(title), series_(&series) {
    setStyle(Lines);
    setPaintAttribute(FilterPoints);
    setData(new PlotDialog::_QwtPlotData(series));
}

void GappedCurve::drawSeries(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
                             const QRectF &canvasRect, int from, int to) const {
    const std::vector<double> &values = series_->values();
    const auto begin = values.begin();
    const auto end = to < 0 ? values.end() : begin + to + 1;
    for (auto first = std::find_if(begin + from, end, isDrawable); first != end;) {
        const auto behind = std::find_if_not(first, end, isDrawable);
        const auto index = static_cast<int>(first - begin);
        if (behind - first > 1) {
            QwtPlotCurve::drawSeries(painter, xMap, yMap, canvasRect, index,
                                     static_cast<int>(behind - begin) - 1);
        } else {
            const QPointF point = sample(index);
            drawDot(painter, {xMap.transform(point.x()), yMap.transform(point.y())});
        }
        first = std::find_if(behind, end, isDrawable);
    }
}

void GappedCurve::drawLines(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
                            const QRectF &canvasRect, int from, int to) const {
    widenHairline(*painter);
    constexpr double dense = 8; // points to a pixel
    if (to - from < dense * canvasRect.width()) {
        QwtPlotCurve::drawLines(painter, xMap, yMap, canvasRect, from, to);
        return;
    }
    const auto first = static_cast<std::size_t>(from);
    const auto count = static_cast<std::size_t>(to) - first + 1;
    const QPolygonF line = densePolyline(std::span(series_->times()).subspan(first, count),
                                         std::span(series_->values()).subspan(first, count), xMap, yMap);
    // As far beyond the canvas as the thickest line may reach.
    constexpr double margin = 10;
    const QRectF clip = canvasRect.adjusted(-margin, -margin, margin, margin);
    QwtPainter::drawPolyline(painter, QwtClipper::clipPolygonF(clip, line));
}

void GappedCurve::drawDot(QPainter *painter, const QPointF &at) const {
    constexpr double size = 3;
    painter->save();
    painter->setPen(QPen(pen().color(), size, Qt::SolidLine, Qt::RoundCap));
    QwtPainter::drawPoint(painter, at);
    painter->restore();
}

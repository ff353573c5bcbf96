#pragma once

#include "time/Timezone.h"

#include <qwt_plot_zoomer.h>

// Zooms the time axis and the left axis with the mouse, keeps the history of what was looked at, and shows
// time and value under the mouse.
//
// The history holds the base, which shows everything, at index 0. Scales are set but nothing is drawn: who
// takes zoomed() loads the points that the new window asks for, and then draws once.
class PlotZoomer : public QwtPlotZoomer {
    Q_OBJECT

public:
    // On the canvas of a plot. `zone` is for the time under the mouse.
    PlotZoomer(QWidget *canvas, const Timezone &zone);

    // Gives up the rectangle that is being drawn.
    void abandon() { reset(); }

    bool isAtBase() const { return zoomRectIndex() == 0; }

    // Make the history anew, without a signal: of the base alone, which is then shown, or of the base and the
    // rectangle that is shown above it.
    void restart(const QRectF &base);
    void restart(const QRectF &base, const QRectF &shown);

protected:
    void rescale() override;
    QSizeF minZoomSize() const override;
    QwtText trackerTextF(const QPointF &at) const override;
    QRect trackerRect(const QFont &font) const override;

private:
    QString timeText(double utcSeconds) const;
    QString valueText(double value) const;

    mutable Timezone timezone_;
};

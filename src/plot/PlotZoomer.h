#pragma once

#include "time/Timezone.h"

#include <qwt_plot_zoomer.h>

#include <optional>

// Zooms the time axis and the left axis with the mouse, keeps the history of what was looked at, and shows
// time and value under the mouse.
//
// By keys it zooms to a range of time: the arrow keys, Home and End move a mark, Return fixes it at one end
// of the range and, moved on, at the other.
//
// The history holds the base, which shows everything, at index 0. Scales are set but nothing is drawn: who
// takes zoomed() loads the points that the new window asks for, and then draws once.
class PlotZoomer : public QwtPlotZoomer {
    Q_OBJECT

public:
    // On the canvas of a plot. `zone` is for the time under the mouse.
    PlotZoomer(QWidget *canvas, const Timezone &zone);

    // Gives up the rectangle that is being drawn, or the mark.
    void abandon() { reset(); }

    bool isAtBase() const { return zoomRectIndex() == 0; }

    // Make the history anew, without a signal: of the base alone, which is then shown, or of the base and the
    // rectangle that is shown above it.
    void restart(const QRectF &base);
    void restart(const QRectF &base, const QRectF &shown);

    // Takes the keys of the mark, which come to the plot.
    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void rescale() override;
    void reset() override;
    void widgetMousePressEvent(QMouseEvent *event) override;
    void widgetMouseMoveEvent(QMouseEvent *event) override;
    QSizeF minZoomSize() const override;
    QwtText trackerTextF(const QPointF &at) const override;
    QRect trackerRect(const QFont &font) const override;

private:
    // What Return is to fix.
    enum class Mark { none, oneEnd, otherEnd };

    bool takeKey(const QKeyEvent &key);
    std::optional<double> markMovedBy(const QKeyEvent &key) const;
    void showMark();
    void fixMark();
    QString timeText(double utcSeconds) const;
    QString valueText(double value) const;

    mutable Timezone timezone_;
    Mark mark_ = Mark::none;
    double markedTime_ = 0; // UTC seconds, where the mark is
    double fixedTime_ = 0;  // where the other end was fixed
};

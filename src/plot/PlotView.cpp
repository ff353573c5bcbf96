#include "plot/PlotView.h"

#include "plot/PlotZoomer.h"
#include "plot/YRangeEdits.h"

#include <cmath>

PlotView::PlotView(TimeSeriesPlot &plot, PlotZoomer &zoomer, YRangeEdits &yRange)
    : plot_(plot), zoomer_(zoomer), yRange_(yRange) {}

void PlotView::start() {
    zoomer_.restart(withArea(plot_.wholeRect()));
    plot_.restartLabels();
    updateHint();
    yRange_.show(zoomer_.zoomRect());
    plot_.replot();
}

void PlotView::showZoomed(const QRectF &rect) {
    load();
    if (!zoomer_.zoomStack().isEmpty()) {
        yRange_.show(rect);
    }
    plot_.replot();
}

// At the base everything is in view.
void PlotView::load() {
    isLoaded_ = true;
    updateHint();
    if (zoomer_.zoomStack().isEmpty() || zoomer_.isAtBase()) {
        plot_.loadEverything();
        return;
    }
    const QRectF rect = zoomer_.zoomRect();
    plot_.loadWindow(rect.left(), rect.right());
}

// What to do where nothing is drawn. At the base the right button leads no further.
void PlotView::updateHint() {
    if (plot_.wholeRange().isEmpty()) {
        plot_.setEmptyHint(tr("Nothing to draw: there is no value"));
    } else if (zoomer_.isAtBase()) {
        plot_.setEmptyHint(tr("Nothing to draw in this view: draw a rectangle to see single records"));
    } else {
        plot_.setEmptyHint(tr("Nothing to draw in this view: click the right button to see everything"));
    }
}

bool PlotView::hasPrevious() const {
    return !zoomer_.zoomStack().isEmpty() && !zoomer_.isAtBase();
}

bool PlotView::hasNext() const {
    return static_cast<int>(zoomer_.zoomRectIndex()) < zoomer_.zoomStack().size() - 1;
}

void PlotView::goBack() {
    if (!zoomer_.isAtBase()) {
        zoomer_.zoom(-1);
    }
}

void PlotView::goOn() {
    if (hasNext()) {
        zoomer_.zoom(1);
    }
}

// Zooms to a rectangle that has been chosen after loading other points than those in view.
void PlotView::zoomTo(const QRectF &rect) {
    isLoaded_ = false;
    zoomer_.zoom(withArea(rect));
    if (!isLoaded_) {
        load();
        plot_.replot();
    }
    yRange_.show(zoomer_.zoomRect());
}

void PlotView::scaleFully() {
    plot_.loadEverything();
    zoomTo(plot_.wholeRect());
}

void PlotView::scaleHorizontally() {
    plot_.loadEverything();
    const Extent times = plot_.windows(TimeSeriesPlot::Curves::visible);
    const QRectF rect = zoomer_.zoomRect();
    zoomTo(times.isEmpty() ? rect : withTimes(rect, times));
}

bool PlotView::scaleVertically() {
    const Extent values = plot_.loadedRange(TimeSeriesPlot::Curves::visible);
    if (values.isEmpty()) {
        return false;
    }
    zoomTo(withValues(zoomer_.zoomRect(), values));
    return true;
}

void PlotView::showValues(const Extent &values) {
    const QRectF rect = zoomer_.zoomRect();
    const bool isShown = rect.top() == values.low && rect.height() == values.width();
    if (!isShown && std::isfinite(values.width())) {
        zoomer_.zoom(withArea(withValues(rect, values)));
    }
}

void PlotView::setCurveVisible(QwtPlotItem &curve, bool visible) {
    curve.setVisible(visible);
    if (!visible && plot_.isEveryCurveHidden()) {
        curve.setVisible(true);
        plot_.setLegendChecked(curve, true);
        return;
    }
    if (!scaleVertically()) {
        plot_.replot();
    }
}

void PlotView::addVariable(const QString &key, TimeSeriesPlot::Side side) {
    const bool wasEmpty = plot_.wholeRange().isEmpty();
    plot_.addVariable(key, side);
    extendBase(wasEmpty);
    load();
    plot_.replot();
}

// The base of a plot that had nothing to draw shows no data: it gives way instead of being widened.
void PlotView::extendBase(bool wasEmpty) {
    const QRectF base = zoomer_.zoomBase();
    const QRectF widened = wasEmpty ? withArea(plot_.wholeRect()) : plot_.widened(base);
    if (widened == base) {
        return;
    }
    if (zoomer_.isAtBase()) {
        zoomer_.restart(widened);
    } else {
        zoomer_.restart(widened, zoomer_.zoomRect());
    }
    yRange_.show(widened);
}

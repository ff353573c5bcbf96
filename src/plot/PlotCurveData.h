#pragma once

#include "plot/PlotDialog.h"
#include "plot/PlotSeries.h"

#include <qwt_series_data.h>

// Shows a series to its curve. The series must outlive it.
class PlotDialog::_QwtPlotData : public QwtSeriesData<QPointF> {
public:
    explicit _QwtPlotData(const PlotSeries &series) : series_(&series) {}

    std::size_t size() const override { return series_->size(); }
    QPointF sample(std::size_t index) const override {
        return {series_->times()[index], series_->values()[index]};
    }
    // As high as the whole variable, not as the loaded points, so that an axis that follows it does not jump
    // while the window moves. Of negative height, which no axis follows, when the variable has no number.
    QRectF boundingRect() const override {
        const Extent &times = series_->window();
        const Extent &values = series_->wholeRange();
        return {times.low, values.low, times.width(), values.width()};
    }

private:
    const PlotSeries *series_;
};

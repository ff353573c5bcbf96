#include "plot/PlotSeries.h"

#include "data/Record.h"
#include "loading/QDataSet.h"

namespace {

std::vector<SeriesRequest> requestsOf(std::span<PlotSeries *const> series) {
    std::vector<SeriesRequest> requests;
    requests.reserve(series.size());
    for (const PlotSeries *one : series) {
        requests.push_back(one->request());
    }
    return requests;
}

SeriesPoints readOne(const QDataSet &dataSet, const SeriesRequest &request, double from, double to) {
    return std::move(dataSet.seriesOf({request}, from, to, ShortBlocks::atAFinerLevel).front());
}

} // namespace

PlotSeries::PlotSeries(const QDataSet &dataSet, const std::string &key, const std::string &selector)
    : PlotSeries(dataSet, {key, selector},
                 readOne(dataSet, {key, selector}, wholeRangeStart, wholeRangeEnd)) {}

PlotSeries::PlotSeries(const QDataSet &dataSet, const SeriesRequest &request, SeriesPoints everything)
    : dataSet_(&dataSet), request_(request) {
    takeEverything(std::move(everything));
    dataSet.valueRange(request.key, wholeRange_.low, wholeRange_.high);
    const bool isFinite = isDrawable(wholeRange_.low) && isDrawable(wholeRange_.high);
    if (!wholeRange_.isEmpty() && !isFinite) {
        const Extent loaded = loadedRange();
        wholeRange_.low = isDrawable(wholeRange_.low) ? wholeRange_.low : loaded.low;
        wholeRange_.high = isDrawable(wholeRange_.high) ? wholeRange_.high : loaded.high;
    }
}

void PlotSeries::loadEverything() {
    takeEverything(readOne(*dataSet_, request_, wholeRangeStart, wholeRangeEnd));
}

void PlotSeries::loadWindow(double from, double to) {
    takeWindow(from, to, readOne(*dataSet_, request_, from, to));
}

void PlotSeries::takeEverything(SeriesPoints points) {
    points_ = std::move(points);
    window_ = {};
    // A clock may have stepped back: the last point is not always the latest.
    for (const double time : times()) {
        window_.include(time);
    }
    if (window_.isEmpty()) {
        window_ = {0, 1};
    }
}

void PlotSeries::takeWindow(double from, double to, SeriesPoints points) {
    points_ = std::move(points);
    window_ = {from, to};
}

Extent PlotSeries::loadedRange() const {
    Extent range;
    for (const double value : values()) {
        if (isDrawable(value)) {
            range.include(value);
        }
    }
    return range;
}

void loadEverything(const QDataSet &dataSet, std::span<PlotSeries *const> series) {
    std::vector<SeriesPoints> points =
        dataSet.seriesOf(requestsOf(series), wholeRangeStart, wholeRangeEnd, ShortBlocks::atAFinerLevel);
    for (std::size_t i = 0; i < series.size(); ++i) {
        series[i]->takeEverything(std::move(points[i]));
    }
}

void loadWindow(const QDataSet &dataSet, std::span<PlotSeries *const> series, double from, double to) {
    std::vector<SeriesPoints> points =
        dataSet.seriesOf(requestsOf(series), from, to, ShortBlocks::atAFinerLevel);
    for (std::size_t i = 0; i < series.size(); ++i) {
        series[i]->takeWindow(from, to, std::move(points[i]));
    }
}

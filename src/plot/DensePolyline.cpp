#include "plot/DensePolyline.h"

#include <qwt_scale_map.h>

#include <algorithm>
#include <cmath>

namespace {

// A map of Qwt's asks its transformation for every number; this one only multiplies.
class LinearMap {
public:
    explicit LinearMap(const QwtScaleMap &map)
        : from_(map.s1()), to_(map.p1()), factor_((map.p2() - map.p1()) / (map.s2() - map.s1())) {}

    double operator()(double number) const { return to_ + (number - from_) * factor_; }
    double inverse(double pixel) const { return from_ + (pixel - to_) / factor_; }

private:
    double from_;
    double to_;
    double factor_;
};

// The points that share half a pixel's width, by their indices, and the times between which that lies.
struct Column {
    std::size_t first;
    std::size_t lowest;
    std::size_t highest;
    double begin;
    double end;

    // Around the point `index` at `time`.
    Column(std::size_t index, double time, const LinearMap &pixelX)
        : first(index), lowest(index), highest(index) {
        constexpr double columnsPerPixel = 2;
        const double number = std::floor(pixelX(time) * columnsPerPixel);
        begin = pixelX.inverse(number / columnsPerPixel);
        end = pixelX.inverse((number + 1) / columnsPerPixel);
    }

    bool holds(double time) const { return time >= begin && time < end; }
};

} // namespace

QPolygonF densePolyline(std::span<const double> times, std::span<const double> values,
                        const QwtScaleMap &xMap, const QwtScaleMap &yMap) {
    const LinearMap pixelX(xMap);
    const LinearMap pixelY(yMap);
    QPolygonF line;
    std::size_t behind = 0; // the points before this one have been seen to
    const auto keep = [&](std::size_t index) {
        if (index >= behind) {
            line += QPointF(pixelX(times[index]), pixelY(values[index]));
            behind = index + 1;
        }
    };
    const auto finish = [&](const Column &column, std::size_t end) {
        keep(column.first);
        keep(std::min(column.lowest, column.highest));
        keep(std::max(column.lowest, column.highest));
        keep(end - 1);
    };
    Column column(0, times.front(), pixelX);
    for (std::size_t i = 1; i < times.size(); ++i) {
        if (!column.holds(times[i])) {
            finish(column, i);
            column = Column(i, times[i], pixelX);
        } else if (values[i] < values[column.lowest]) {
            column.lowest = i;
        } else if (values[i] > values[column.highest]) {
            column.highest = i;
        }
    }
    finish(column, times.size());
    return line;
}

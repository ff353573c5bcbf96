#include "plot/DensePolyline.h"

#include <qwt_scale_map.h>

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <vector>

namespace {

constexpr double firstTime = 1.6e9;

QwtScaleMap mapOf(double s1, double s2, double p1, double p2) {
    QwtScaleMap map;
    map.setScaleInterval(s1, s2);
    map.setPaintInterval(p1, p2);
    return map;
}

// 5000 s on 600 pixels, and values 0 to 10 upwards on 300.
const QwtScaleMap xMap = mapOf(firstTime, firstTime + 5000, 10, 610);
const QwtScaleMap yMap = mapOf(0, 10, 300, 0);

struct Points {
    std::vector<double> times;
    std::vector<double> values;
};

Points noise(std::size_t count, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> value(1, 9);
    Points points;
    for (std::size_t i = 0; i < count; ++i) {
        points.times.push_back(firstTime + 5000.0 * static_cast<double>(i) / static_cast<double>(count));
        points.values.push_back(value(random));
    }
    return points;
}

QPolygonF fullLine(const Points &points) {
    QPolygonF line;
    for (std::size_t i = 0; i < points.times.size(); ++i) {
        line += QPointF(xMap.transform(points.times[i]), yMap.transform(points.values[i]));
    }
    return line;
}

QPolygonF thinned(const Points &points) {
    return densePolyline(points.times, points.values, xMap, yMap);
}

struct Range {
    double low;
    double high;
};

// What the line's corners cover in each half pixel's width.
std::map<int, Range> rangesOf(const QPolygonF &line) {
    std::map<int, Range> ranges;
    for (const QPointF &point : line) {
        const auto column = static_cast<int>(std::floor(point.x() * 2));
        const auto [found, isNew] = ranges.try_emplace(column, Range{point.y(), point.y()});
        found->second.low = std::min(found->second.low, point.y());
        found->second.high = std::max(found->second.high, point.y());
    }
    return ranges;
}

// Corners of the thinned line that are, in order, corners of the full one.
std::size_t cornersInOrder(const QPolygonF &line, const QPolygonF &full) {
    std::size_t found = 0;
    auto at = full.begin();
    for (const QPointF &corner : line) {
        at = std::find_if(at, full.end(), [&corner](const QPointF &point) {
            return std::abs(point.x() - corner.x()) < 1e-6 && std::abs(point.y() - corner.y()) < 1e-9;
        });
        found += at != full.end() ? 1U : 0U;
    }
    return found;
}

} // namespace

TEST(DensePolyline, CoversWhatTheWholeLineCovers) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const Points points = noise(50000, seed);
        const auto full = rangesOf(fullLine(points));
        const auto thin = rangesOf(thinned(points));
        ASSERT_EQ(thin.size(), full.size()) << "seed " << seed;
        for (const auto &[column, range] : full) {
            EXPECT_NEAR(thin.at(column).low, range.low, 1e-9) << "seed " << seed << ", column " << column;
            EXPECT_NEAR(thin.at(column).high, range.high, 1e-9) << "seed " << seed << ", column " << column;
        }
    }
}

TEST(DensePolyline, KeepsFourPointsOfAColumnAtMost) {
    const Points points = noise(100000, 7);
    EXPECT_LE(thinned(points).size(), 4 * 1201);
}

TEST(DensePolyline, KeepsTheOrderOfThePoints) {
    const Points points = noise(20000, 3);
    const QPolygonF line = thinned(points);
    EXPECT_EQ(cornersInOrder(line, fullLine(points)), static_cast<std::size_t>(line.size()));
}

TEST(DensePolyline, BeginsAndEndsWithTheFirstAndTheLastPoint) {
    const Points points = noise(20000, 4);
    const QPolygonF line = thinned(points);
    const QPolygonF full = fullLine(points);
    EXPECT_NEAR(line.front().x(), full.front().x(), 1e-6);
    EXPECT_NEAR(line.front().y(), full.front().y(), 1e-9);
    EXPECT_NEAR(line.back().x(), full.back().x(), 1e-6);
    EXPECT_NEAR(line.back().y(), full.back().y(), 1e-9);
}

TEST(DensePolyline, ASpikeOfOneRecordIsKept) {
    Points points = noise(100000, 5);
    points.values[41234] = 9.99;
    points.values[77777] = 0.01;
    const QPolygonF line = thinned(points);
    const auto [highest, lowest] = std::minmax_element(
        line.begin(), line.end(), [](const QPointF &a, const QPointF &b) { return a.y() < b.y(); });
    EXPECT_NEAR(highest->y(), yMap.transform(9.99), 1e-9);
    EXPECT_NEAR(lowest->y(), yMap.transform(0.01), 1e-9);
}

TEST(DensePolyline, FewPointsAreAllKept) {
    const Points points = noise(500, 6);
    EXPECT_EQ(thinned(points).size(), 500);
    EXPECT_EQ(thinned(noise(1, 6)).size(), 1);
}

TEST(DensePolyline, AClockThatStepsBackIsDrawnBack) {
    Points points = noise(40000, 8);
    const Points again = noise(40000, 9);
    points.times.insert(points.times.end(), again.times.begin(), again.times.end());
    points.values.insert(points.values.end(), again.values.begin(), again.values.end());
    const QPolygonF line = thinned(points);
    EXPECT_EQ(cornersInOrder(line, fullLine(points)), static_cast<std::size_t>(line.size()));
    EXPECT_EQ(rangesOf(line).size(), rangesOf(fullLine(points)).size());
}

TEST(DensePolyline, EqualTimesAndValuesGiveOneColumn) {
    const Points points{std::vector<double>(10000, firstTime + 1), std::vector<double>(10000, 5.0)};
    EXPECT_LE(thinned(points).size(), 4);
    EXPECT_GE(thinned(points).size(), 1);
}

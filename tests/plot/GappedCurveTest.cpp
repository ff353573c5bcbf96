#include "plot/GappedCurve.h"

#include "loading/QDataSet.h"
#include "plot/PlotPixels.h"
#include "plot/PlotSeries.h"

#include <QtTest>
#include <qwt_scale_map.h>

#include <algorithm>
#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double largest = std::numeric_limits<double>::max();

// Ten pixels from one value to the next; the value is the height in pixels.
constexpr int spacing = 10;
constexpr int height = 60;

QwtScaleMap mapTo(double from, double to, double end) {
    QwtScaleMap map;
    map.setScaleInterval(0, end);
    map.setPaintInterval(from, to);
    return map;
}

// Points at x = 0, 10, 20 ...
PlotSeries seriesOf(const std::vector<double> &values) {
    static const QDataSet nothing;
    std::vector<double> times;
    for (std::size_t i = 0; i < values.size(); ++i) {
        times.push_back(static_cast<double>(i) * spacing);
    }
    return {nothing,
            {"", ""},
            {std::make_shared<const std::vector<double>>(times),
             std::make_shared<const std::vector<double>>(values)}};
}

// A red line through the values.
QImage drawn(const std::vector<double> &values, int from = 0, int to = -1) {
    const int width = static_cast<int>(values.size() + 1) * spacing;
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::white);
    const PlotSeries series = seriesOf(values);
    GappedCurve curve(QwtText("curve"), series);
    curve.setPen(QPen(Qt::red, 0));
    QPainter painter(&image);
    curve.drawSeries(&painter, mapTo(0, width, width), mapTo(height, 0, height), QRectF(image.rect()), from,
                     to);
    return image;
}

} // namespace

class GappedCurveTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isALineThatFiltersPointsOfTheSamePixel() {
        const PlotSeries series = seriesOf({});
        const GappedCurve curve(QwtText("curve"), series);
        QCOMPARE(curve.style(), QwtPlotCurve::Lines);
        QVERIFY(curve.testPaintAttribute(QwtPlotCurve::FilterPoints));
    }

    void numbersAreJoinedByOneLine() {
        QCOMPARE(inkedColumns(drawn({30, 30, 30, 30}), Qt::red), (ColumnRanges{{0, 30}}));
    }

    void theLineIsOnePixelWideAndTwoWherePixelsAreHalfAsLarge() {
        const std::vector<double> values{30, 30, 30, 30};
        const PlotSeries series = seriesOf(values);
        GappedCurve curve(QwtText("curve"), series);
        curve.setPen(QPen(Qt::red, 0));
        for (const int ratio : {1, 2}) {
            QImage image(QSize(50, height) * ratio, QImage::Format_RGB32);
            image.fill(Qt::white);
            image.setDevicePixelRatio(ratio);
            QPainter painter(&image);
            curve.drawSeries(&painter, mapTo(0, 50, 50), mapTo(height, 0, height), QRectF(0, 0, 50, height),
                             0, -1);
            int inked = 0;
            for (int y = 0; y < image.height(); ++y) {
                inked += image.pixelColor(15 * ratio, y) == QColor(Qt::red) ? 1 : 0;
            }
            QCOMPARE(inked, ratio);
        }
        QCOMPARE(curve.pen().widthF(), 0.0);
    }

    void aPointThatCannotBeDrawnLeavesAGap_data() {
        QTest::addColumn<double>("value");
        QTest::newRow("not a number") << noNumber;
        QTest::newRow("infinity") << infinity;
        QTest::newRow("minus infinity") << -infinity;
        QTest::newRow("highest of a period without a number") << -largest;
        QTest::newRow("lowest of a period without a number") << largest;
    }
    void aPointThatCannotBeDrawnLeavesAGap() {
        QFETCH(double, value);
        QCOMPARE(inkedColumns(drawn({30, 30, value, 30, 30}), Qt::red), (ColumnRanges{{0, 10}, {30, 40}}));
    }

    void severalSuchPointsLeaveOneGap() {
        QCOMPARE(
            inkedColumns(drawn({noNumber, 30, 30, noNumber, infinity, noNumber, 30, 30, -infinity}), Qt::red),
            (ColumnRanges{{10, 20}, {60, 70}}));
    }

    void aPointBetweenTwoGapsIsADot() {
        const ColumnRanges ranges = inkedColumns(drawn({30, 30, noNumber, 30, noNumber, 30, 30}), Qt::red);
        QCOMPARE(ranges.size(), 3);
        QVERIFY(ranges[1].first >= 28 && ranges[1].first < 30);
        QVERIFY(ranges[1].second > ranges[1].first && ranges[1].second <= 32);
    }

    void aSinglePointIsADot() {
        const ColumnRanges ranges = inkedColumns(drawn({noNumber, 30}), Qt::red);
        QCOMPARE(ranges.size(), 1);
        QVERIFY(ranges[0].second - ranges[0].first <= 3);
    }

    void theLineAndItsDotsAreInThePensColour() {
        const QImage image = drawn({30, 30, noNumber, 30, noNumber});
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor colour = image.pixelColor(x, y);
                QVERIFY(colour == Qt::white || colour.red() == 255);
            }
        }
    }

    void nothingButGapsDrawsNothing() {
        QVERIFY(inkedColumns(drawn({noNumber, infinity, largest}), Qt::red).isEmpty());
        QVERIFY(inkedColumns(drawn({}), Qt::red).isEmpty());
    }

    void aGapStaysInALineOfManyPointsToAPixel() {
        std::vector<double> values(20000, 30);
        std::fill(values.begin() + 8000, values.begin() + 12000, noNumber);
        QImage image(100, height, QImage::Format_RGB32);
        image.fill(Qt::white);
        const PlotSeries series = seriesOf(values);
        GappedCurve curve(QwtText("curve"), series);
        curve.setPen(QPen(Qt::red, 0));
        QPainter painter(&image);
        curve.draw(&painter, mapTo(0, 100, 20000 * spacing), mapTo(height, 0, height), QRectF(image.rect()));
        const ColumnRanges ranges = inkedColumns(image, Qt::red);
        QCOMPARE(ranges.size(), 2);
        QVERIFY(qAbs(ranges[0].second - 40) <= 1);
        QVERIFY(qAbs(ranges[1].first - 60) <= 1);
    }

    void aPartOfTheCurveCanBeDrawnAlone() {
        QCOMPARE(inkedColumns(drawn({30, 30, 30, noNumber, 30, 30, 30}, 1, 5), Qt::red),
                 (ColumnRanges{{10, 20}, {40, 50}}));
    }
};

QTEST_MAIN(GappedCurveTest)
#include "GappedCurveTest.moc"

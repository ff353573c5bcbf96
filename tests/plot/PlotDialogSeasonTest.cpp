// Many short files, as analysers write them: a season of half hours.

#include "plot/PlotWindow.h"

#include <algorithm>

namespace {

constexpr int halfHour = 1800;

// Files of half an hour, each some hours behind the one before. Records come each 10 s, the first one
// `offset` seconds into its half hour; X is the number of the file.
void addSeason(PlotData &data, int files, int hoursApart, int offset) {
    for (int i = 0; i < files; ++i) {
        const std::string value = std::to_string(i);
        std::string text = textOf({"GA", "X", halfHour / 10, [&value](int) { return value; }, "UTC",
                                   plotStart / halfHour * halfHour + i * hoursApart * 3600 + offset, 10});
        data.addText("file" + value, text);
    }
}

const PlotSeries &averagesOf(const PlotWindow &window) {
    return *window.plot().entries().begin()->second.series;
}

} // namespace

class PlotDialogSeasonTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyFileShowsAtAGlance_data() {
        QTest::addColumn<int>("hoursApart");
        QTest::addColumn<int>("offset");
        QTest::newRow("three weeks, between boundaries") << 13 << 5;
        QTest::newRow("three weeks, on boundaries") << 13 << 0;
        QTest::newRow("half a year, between boundaries") << 110 << 5;
        QTest::newRow("half a year, on boundaries") << 110 << 0;
    }
    void everyFileShowsAtAGlance() {
        QFETCH(int, hoursApart);
        QFETCH(int, offset);
        constexpr int files = 40;
        PlotData data;
        addSeason(data, files, hoursApart, offset);
        const PlotWindow window(data, "GA:DATA:X");
        const PlotSeries &series = averagesOf(window);
        for (int i = 0; i < files; ++i) {
            // More than one point each, for a period of several is shown.
            QVERIFY2(std::count(series.values().begin(), series.values().end(), i) >= 3,
                     qPrintable(QString::number(i)));
        }
        QVERIFY(window.zoomer().zoomBase().left() >= plotStart - halfHour);
    }

    void whatTheDataSetGivesForASpanIsLeftAsItIs() {
        PlotData data;
        addSeason(data, 40, 13, 5);
        std::vector<double> times;
        std::vector<double> values;
        data.set.series("GA:DATA:X", "", 0, 2147483648.0, times, values);
        QVERIFY(times.empty());
    }

    void oneLongFileKeepsToTheLevelOfItsSpan() {
        PlotData data;
        data.add({"GA", "X", 40000, [](int i) { return std::to_string(i % 7); }, "UTC", plotStart, 60});
        const PlotWindow window(data, "GA:DATA:X");
        std::vector<double> times;
        std::vector<double> values;
        data.set.series("GA:DATA:X", "", 0, 2147483648.0, times, values);
        QVERIFY(!times.empty());
        QCOMPARE(averagesOf(window).times(), times);
    }

    // Too short for a single average, but far apart.
    void filesOfSecondsShowWhereTheyAre() {
        PlotData data;
        for (int i = 0; i < 3; ++i) {
            data.addText("file" + std::to_string(i),
                         textOf({"GA", "X", 5, [](int k) { return std::to_string(k); }, "UTC",
                                 plotStart + i * 7200, 1}));
        }
        const PlotWindow window(data, "GA:DATA:X");
        QCOMPARE(averagesOf(window).size(), std::size_t{0});
        QCOMPARE(window.zoomer().zoomBase(), QRectF(plotStart, 0, 2 * 7200 + 4, 4));
        window.zoom(plotStart - 10, plotStart + 10, 0, 4);
        QCOMPARE(averagesOf(window).size(), std::size_t{5});
    }

    void aVariableDroppedBesideFilesOfSecondsLeaves1970Alone() {
        PlotData data;
        for (int i = 0; i < 3; ++i) {
            data.addText("file" + std::to_string(i),
                         textOf({"GA", "X\tY", 5, [](int k) { return std::to_string(k) + "\t9"; }, "UTC",
                                 plotStart + i * 7200, 1}));
        }
        const PlotWindow window(data, "GA:DATA:X");
        window.drop("GA:DATA:Y");
        QCOMPARE(window.zoomer().zoomBase(), QRectF(plotStart, 0, 2 * 7200 + 4, 9));
    }

    void aSmallRangeIsFoundAgainFromAHugeOne() {
        PlotData data;
        data.add(
            {"GA", "X", 200, [](int i) { return i == 150 ? "-9.99e29" : std::to_string(401 + i % 100); }});
        const PlotWindow window(data, "GA:DATA:X");
        const QRectF base = window.zoomer().zoomBase();
        window.zoom(plotStart, plotStart + 100, base.top(), base.bottom());
        window.vertical().click();
        QCOMPARE(window.zoomer().zoomRect(), QRectF(plotStart, 401, 100, 99));

        window.previous().click();
        window.enterYRange("401", "500");
        window.yRange().click();
        QCOMPARE(window.zoomer().zoomRect(), QRectF(plotStart, 401, 100, 99));
    }
};

QTEST_MAIN(PlotDialogSeasonTest)
#include "PlotDialogSeasonTest.moc"

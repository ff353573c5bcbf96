#include "plot/TimeSeriesPlot.h"

#include "plot/GappedCurve.h"
#include "plot/PlotData.h"
#include "plot/TimeScaleDraw.h"
#include "plot/TimeScaleEngine.h"

#include <QtTest>
#include <qwt_legend.h>
#include <qwt_legend_label.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_layout.h>

namespace {

using Side = TimeSeriesPlot::Side;
using Curves = TimeSeriesPlot::Curves;

const std::string x = "GA:DATA:X";
const std::string y = "GA:DATA:Y";

PlotBlock blockIn(const std::string &zone) {
    PlotBlock block = shortBlock();
    block.zone = zone;
    return block;
}

QwtPlotCurve &curveOf(const TimeSeriesPlot &plot, const std::string &key, const std::string &selector = "") {
    return *plot.entries().at({key, selector}).curve;
}

QString axisTitle(const PlotData &data, const QString &key) {
    return TimeSeriesPlot(data.set, key).axisTitle(QwtPlot::xBottom).text();
}

QwtLegendLabel *labelOf(TimeSeriesPlot &plot, QwtPlotCurve &curve) {
    return qobject_cast<QwtLegendLabel *>(plot.checkableLegend().legendWidget(plot.itemToInfo(&curve)));
}

void compareExtents(const Extent &extent, double low, double high) {
    QCOMPARE(extent.low, low);
    QCOMPARE(extent.high, high);
}

} // namespace

class TimeSeriesPlotTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theTimeAxisIsTitledWithTheVariablesZone_data() {
        QTest::addColumn<QString>("zone");
        QTest::addColumn<QString>("title");
        QTest::newRow("named") << "Europe/Berlin"
                               << "Time (Europe/Berlin)";
        QTest::newRow("UTC") << "UTC"
                             << "Time (UTC)";
        QTest::newRow("a time zone named \"Unknown\"") << "Unknown"
                                                       << "Time";
        QTest::newRow("no zone in the file") << ""
                                             << "Time";
    }
    void theTimeAxisIsTitledWithTheVariablesZone() {
        QFETCH(QString, zone);
        PlotData data;
        data.add(blockIn(zone.toStdString()));
        QTEST(axisTitle(data, "GA:DATA:X"), "title");
    }

    void theZoneIsThatOfTheKeysInstrument() {
        PlotData data;
        data.add(blockIn("Europe/Berlin"));
        PlotBlock other = shortBlock("GB");
        other.zone = "Asia/Kathmandu";
        data.add(other);
        QCOMPARE(axisTitle(data, "GB:DATA:X"), "Time (Asia/Kathmandu)");
        QCOMPARE(axisTitle(data, "GA:DATA:absent"), "Time (Europe/Berlin)");
        QCOMPARE(axisTitle(data, "GC:DATA:X"), "Time");
        QCOMPARE(axisTitle(data, ""), "Time");
    }

    void theTimeAxisHasLocalTimes() {
        PlotData data;
        data.add(shortBlock());
        TimeSeriesPlot plot(data.set, "GA:DATA:X");
        QVERIFY(dynamic_cast<TimeScaleEngine *>(plot.axisScaleEngine(QwtPlot::xBottom)) != nullptr);
        const QwtScaleDraw *labels = plot.axisScaleDraw(QwtPlot::xBottom);
        QVERIFY(dynamic_cast<const TimeScaleDraw *>(labels) != nullptr);
        plot.restartLabels();
        QVERIFY(dynamic_cast<const TimeScaleDraw *>(plot.axisScaleDraw(QwtPlot::xBottom)) != nullptr);
    }

    void theCanvasIsWhiteWithADottedGridThatHasMinorLinesForTimesOnly() {
        PlotData data;
        data.add(shortBlock());
        const TimeSeriesPlot plot(data.set, "GA:DATA:X");
        QCOMPARE(plot.canvasBackground(), QBrush(Qt::white));
        const QwtPlotItemList grids = plot.itemList(QwtPlotItem::Rtti_PlotGrid);
        QCOMPARE(grids.size(), 1);
        const auto *grid = static_cast<const QwtPlotGrid *>(grids.first());
        QVERIFY(grid->xEnabled() && grid->yEnabled());
        QVERIFY(grid->xMinEnabled());
        QVERIFY(!grid->yMinEnabled());
        QCOMPARE(grid->majorPen(), QPen(Qt::black, 0, Qt::DotLine, Qt::SquareCap, Qt::BevelJoin));
        QCOMPARE(grid->minorPen(), QPen(Qt::gray, 0, Qt::DotLine, Qt::SquareCap, Qt::BevelJoin));
    }

    void aVariableHasItsCurveAndTwoOfItsExtremes() {
        PlotData data;
        data.add(longBlock());
        const TimeSeriesPlot plot(data.set, "LONG:DATA:X");
        const QwtPlotItemList curves = plot.itemList(QwtPlotItem::Rtti_PlotCurve);
        QCOMPARE(curves.size(), 3);
        const QStringList titles{"LONG:DATA:X", "MAX", "MIN"};
        const QColor red(Qt::red);
        for (int i = 0; i < 3; ++i) {
            const auto *curve = static_cast<const QwtPlotCurve *>(curves[i]);
            QCOMPARE(curve->title().text(), titles[i]);
            QCOMPARE(curve->title().color(), red);
            QCOMPARE(curve->pen(),
                     i == 0 ? QPen(red, 0) : QPen(red, 1, Qt::DashLine, Qt::RoundCap, Qt::RoundJoin));
            QCOMPARE(curve->style(), QwtPlotCurve::Lines);
            QVERIFY(curve->testPaintAttribute(QwtPlotCurve::FilterPoints));
            QCOMPARE(curve->yAxis(), int(QwtPlot::yLeft));
            QVERIFY(curve->dataSize() > 4000);
        }
        QCOMPARE(curves[0], &curveOf(plot, "LONG:DATA:X"));
        QCOMPARE(curves[1], &curveOf(plot, "LONG:DATA:X", "max"));
        QCOMPARE(curves[2], &curveOf(plot, "LONG:DATA:X", "min"));
    }

    void aNameIsNeverReadAsMarkup() {
        PlotData data;
        const TimeSeriesPlot plot(data.set, "<b>GA</b>:DATA:CO<sub>2</sub>");
        QwtText plain("<b>GA</b>:DATA:CO<sub>2</sub>", QwtText::PlainText);
        plain.setColor(Qt::red);
        QVERIFY(curveOf(plot, "<b>GA</b>:DATA:CO<sub>2</sub>").title() == plain);
    }

    void theLegendStandsAtTheTopWithACheckedEntryForEveryCurve() {
        PlotData data;
        data.add(shortBlock());
        TimeSeriesPlot plot(data.set, "GA:DATA:X");
        plot.addVariable("GA:DATA:Y", Side::right);
        const QwtLegend &legend = plot.checkableLegend();
        QCOMPARE(plot.legend(), &legend);
        QCOMPARE(plot.plotLayout()->legendPosition(), QwtPlot::TopLegend);
        QCOMPARE(legend.defaultItemMode(), QwtLegendData::Checkable);
        for (const auto &[key, entry] : plot.entries()) {
            const QwtLegendLabel *label = labelOf(plot, *entry.curve);
            QVERIFY(label != nullptr);
            QCOMPARE(label->itemMode(), QwtLegendData::Checkable);
            QVERIFY(label->isChecked());
            QCOMPARE(label->text().text(), entry.curve->title().text());
        }
        plot.setLegendChecked(curveOf(plot, x), false);
        QVERIFY(!labelOf(plot, curveOf(plot, x))->isChecked());
    }

    void theEleventhVariableIsRedAgain() {
        PlotData data;
        TimeSeriesPlot plot(data.set, "key 1");
        for (int i = 2; i <= 11; ++i) {
            plot.addVariable(QStringLiteral("key %1").arg(i), Side::left);
        }
        QCOMPARE(curveOf(plot, "key 1").pen().color(), QColor(Qt::red));
        QCOMPARE(curveOf(plot, "key 2", "max").pen().color(), QColor(Qt::blue));
        QCOMPARE(curveOf(plot, "key 10", "min").pen().color(), QColor(Qt::darkMagenta));
        for (const char *selector : {"", "max", "min"}) {
            QCOMPARE(curveOf(plot, "key 11", selector).pen().color(), QColor(Qt::red));
        }
    }

    void aVariableThatIsAddedAgainReplacesItsCurvesInTheNextColour() {
        PlotData data;
        data.add(shortBlock());
        TimeSeriesPlot plot(data.set, "GA:DATA:X");
        plot.addVariable("GA:DATA:Y", Side::left);
        plot.addVariable("GA:DATA:X", Side::right);
        QCOMPARE(plot.itemList(QwtPlotItem::Rtti_PlotCurve).size(), 6);
        QCOMPARE(plot.entries().size(), std::size_t{6});
        QCOMPARE(curveOf(plot, x).pen().color(), QColor(Qt::magenta));
        QCOMPARE(curveOf(plot, x).yAxis(), int(QwtPlot::yRight));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(plot.legend()->findChildren<QwtLegendLabel *>().size(), 6);
        plot.loadWindow(plotStart, plotStart + 10);
        plot.replot();
        QVERIFY(plot.grab().width() > 0);
    }

    void theRightAxisIsThereWhileACurveUsesIt() {
        PlotData data;
        data.add(shortBlock());
        TimeSeriesPlot plot(data.set, "GA:DATA:X");
        QVERIFY(!plot.axisEnabled(QwtPlot::yRight));
        plot.addVariable("GA:DATA:Y", Side::right);
        QVERIFY(plot.axisEnabled(QwtPlot::yRight));
        for (const char *selector : {"", "max", "min"}) {
            QCOMPARE(curveOf(plot, y, selector).yAxis(), int(QwtPlot::yRight));
        }
        plot.addVariable("GA:DATA:Y", Side::left);
        QVERIFY(!plot.axisEnabled(QwtPlot::yRight));
    }

    void variablesWhoseNamesEndLikeAnExtremeStayApart() {
        PlotData data;
        data.add({"GA", "X\tX-max", 10, [](int i) { return std::to_string(i) + "\t7"; }});
        TimeSeriesPlot plot(data.set, "GA:DATA:X");
        plot.addVariable("GA:DATA:X-max", Side::left);
        QCOMPARE(plot.entries().size(), std::size_t{6});
        QCOMPARE(plot.entries().at({"GA:DATA:X", "max"}).series->values().at(3), 3.0);
        QCOMPARE(plot.entries().at({"GA:DATA:X-max", ""}).series->values().at(3), 7.0);
    }

    void aNameWhoseBytesAreNotUtf8IsFoundByItsText() {
        PlotData data;
        data.add({"GA", "\xb5mol", 10, [](int i) { return std::to_string(i); }});
        const TimeSeriesPlot plot(data.set, QString::fromStdString("GA:DATA:\xb5mol"));
        QCOMPARE(curveOf(plot, "GA:DATA:\xb5mol").dataSize(), std::size_t{10});
    }

    void unionsAreOverAllOrOverTheVisibleCurves() {
        PlotData data;
        data.add(shortBlock());
        PlotBlock later = shortBlock("GB");
        later.first = plotStart + 1000;
        data.add(later);
        TimeSeriesPlot plot(data.set, "GA:DATA:X");
        plot.addVariable("GB:DATA:Y", Side::right);
        for (const auto &[key, entry] : plot.entries()) {
            entry.curve->setVisible(key.first == x);
        }
        compareExtents(plot.windows(Curves::all), plotStart, plotStart + 1099);
        compareExtents(plot.windows(Curves::visible), plotStart, plotStart + 99);
        compareExtents(plot.loadedRange(Curves::all), 0, 500);
        compareExtents(plot.loadedRange(Curves::visible), 0, 99);
        compareExtents(plot.wholeRange(), 0, 500);
        QCOMPARE(plot.wholeRect(), QRectF(plotStart, 0, 1099, 500));
        plot.loadWindow(plotStart + 10, plotStart + 20);
        compareExtents(plot.loadedRange(Curves::all), 10, 20);
        compareExtents(plot.wholeRange(), 0, 500);
    }

    void aPlotIsWidenedByItsVariables() {
        PlotData data;
        data.add(shortBlock());
        const TimeSeriesPlot plot(data.set, "GA:DATA:X");
        const QRectF inside(plotStart, 0, 99, 99);
        QCOMPARE(plot.widened(QRectF(plotStart + 10, 3, 2, 2)), inside);
        const QRectF around(plotStart - 5, -5, 200, 200);
        QCOMPARE(plot.widened(around), around);
    }

    void nothingHiddenIsHidden() {
        PlotData data;
        data.add(shortBlock());
        const TimeSeriesPlot plot(data.set, "GA:DATA:X");
        QVERIFY(!plot.isEveryCurveHidden());
        curveOf(plot, x).setVisible(false);
        curveOf(plot, x, "max").setVisible(false);
        QVERIFY(!plot.isEveryCurveHidden());
        curveOf(plot, x, "min").setVisible(false);
        QVERIFY(plot.isEveryCurveHidden());
    }

    void aRectangleWithoutAreaGetsSomeAroundItself_data() {
        QTest::addColumn<QRectF>("rect");
        QTest::addColumn<QRectF>("expected");
        QTest::newRow("with area") << QRectF(1, 2, 3, 4) << QRectF(1, 2, 3, 4);
        QTest::newRow("one record") << QRectF(10, 4, 0, 0) << QRectF(9.5, 2, 1, 4);
        QTest::newRow("constant") << QRectF(10, -4, 7, 0) << QRectF(10, -6, 7, 4);
        QTest::newRow("constant zero") << QRectF(10, 0, 7, 0) << QRectF(10, -0.5, 7, 1);
        QTest::newRow("one time") << QRectF(10, 3, 0, 2) << QRectF(9.5, 3, 1, 2);
    }
    void aRectangleWithoutAreaGetsSomeAroundItself() {
        QFETCH(QRectF, rect);
        QTEST(withArea(rect), "expected");
    }
};

QTEST_MAIN(TimeSeriesPlotTest)
#include "TimeSeriesPlotTest.moc"

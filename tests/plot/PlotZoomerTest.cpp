#include "plot/PlotZoomer.h"

#include "plot/AxisTimes.h"
#include "ui/MetaObjectLists.h"

#include <QtTest>
#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_scale_div.h>

namespace {

const QRectF base(1000, 0, 1000, 100);
const QRectF inner(1200, 20, 100, 10);

// The zoomer with its read-out and the smallest zoom within reach.
class ReachableZoomer : public PlotZoomer {
public:
    using PlotZoomer::minZoomSize;
    using PlotZoomer::PlotZoomer;
    using PlotZoomer::trackerRect;
    using PlotZoomer::trackerText;
    using PlotZoomer::trackerTextF;

    QString readOut(double utcSeconds, double value = 0) const {
        return trackerTextF({utcSeconds, value}).text();
    }
};

class ZoomedPlot {
public:
    explicit ZoomedPlot(const std::string &zone = "UTC") : zoomer(plot.canvas(), zoneNamed(zone)) {
        plot.resize(500, 300);
        zoomer.restart(base);
    }

    QRectF shown() const {
        const QwtScaleDiv &x = plot.axisScaleDiv(QwtPlot::xBottom);
        const QwtScaleDiv &y = plot.axisScaleDiv(QwtPlot::yLeft);
        return {QPointF(x.lowerBound(), y.lowerBound()), QPointF(x.upperBound(), y.upperBound())};
    }

    QwtPlot plot;
    // Deleted before the plot, which would delete it with its canvas.
    ReachableZoomer zoomer;
};

} // namespace

class PlotZoomerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isAZoomerWithoutSignalsOfItsOwnThatAlwaysTellsWhereTheMouseIs() {
        const ZoomedPlot plot;
        QCOMPARE(PlotZoomer::staticMetaObject.className(), "PlotZoomer");
        QCOMPARE(PlotZoomer::staticMetaObject.superClass()->className(), "QwtPlotZoomer");
        QCOMPARE(ownSignals(PlotZoomer::staticMetaObject), QStringList());
        QCOMPARE(plot.zoomer.trackerMode(), QwtPicker::AlwaysOn);
    }

    void aNewHistoryHoldsExactlyTheBaseAndShowsIt() {
        ZoomedPlot plot;
        const QRectF wide(-5000.125, -3, 123456, 7);
        QSignalSpy zoomed(&plot.zoomer, SIGNAL(zoomed(QRectF)));
        plot.zoomer.restart(wide);
        QCOMPARE(plot.zoomer.zoomStack(), (QVector<QRectF>{wide}));
        QCOMPARE(plot.zoomer.zoomRectIndex(), 0U);
        QCOMPARE(plot.zoomer.zoomBase(), wide);
        QCOMPARE(plot.shown(), wide);
        QVERIFY(plot.zoomer.isAtBase());
        QVERIFY(zoomed.isEmpty());
    }

    void aNewHistoryCanKeepWhatIsShownAboveItsBase() {
        ZoomedPlot plot;
        plot.zoomer.zoom(inner);
        QSignalSpy zoomed(&plot.zoomer, SIGNAL(zoomed(QRectF)));
        const QRectF wide(0, 0, 5000, 200);
        plot.zoomer.restart(wide, inner);
        QCOMPARE(plot.zoomer.zoomStack(), (QVector<QRectF>{wide, inner}));
        QCOMPARE(plot.zoomer.zoomRectIndex(), 1U);
        QCOMPARE(plot.shown(), inner);
        QVERIFY(!plot.zoomer.isAtBase());
        QVERIFY(zoomed.isEmpty());
    }

    void aNewHistoryEndsTheAxesOwnScalingEvenWhenTheyShowTheBaseAlready() {
        QwtPlot plot;
        ReachableZoomer zoomer(plot.canvas(), zoneNamed("UTC"));
        zoomer.restart(zoomer.zoomRect());
        QVERIFY(!plot.axisAutoScale(QwtPlot::xBottom));
        QVERIFY(!plot.axisAutoScale(QwtPlot::yLeft));
    }

    void aNewHistoryForgetsTheOldOne() {
        ZoomedPlot plot;
        plot.zoomer.zoom(inner);
        plot.zoomer.zoom(-1);
        plot.zoomer.restart(base);
        QCOMPARE(plot.zoomer.zoomStack().size(), 1);
    }

    void aZoomSetsBothScalesAndLeavesTheDrawingToWhoTakesTheSignal() {
        ZoomedPlot plot;
        QVERIFY(plot.plot.grab().width() > 0);
        QRectF shownAtSignal;
        connect(&plot.zoomer, &QwtPlotZoomer::zoomed, this, [&] { shownAtSignal = plot.shown(); });
        plot.zoomer.zoom(inner);
        QCOMPARE(shownAtSignal, inner);
        plot.zoomer.zoom(-1);
        QCOMPARE(shownAtSignal, base);
    }

    void theSmallestZoomIsAHundredthOfASecond() {
        const ZoomedPlot plot;
        QCOMPARE(plot.zoomer.minZoomSize(), QSizeF(0.01, 100e-9));
    }

    void theReadOutIsTheLocalDateAndTimeAndTheValue_data() {
        QTest::addColumn<QString>("zone");
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        const auto summer = static_cast<double>(utc(2021, 7, 4, 13, 5, 9));
        QTest::newRow("UTC") << "UTC" << summer << "2021-07-04 13:05:09   0";
        QTest::newRow("summer time") << "Europe/Berlin" << summer << "2021-07-04 15:05:09   0";
        QTest::newRow("winter time") << "Europe/Berlin" << static_cast<double>(utc(2021, 1, 4, 23, 5, 9))
                                     << "2021-01-05 00:05:09   0";
        QTest::newRow("quarter of an hour") << "Asia/Kathmandu" << summer << "2021-07-04 18:50:09   0";
        QTest::newRow("within a second") << "UTC" << summer + 0.99 << "2021-07-04 13:05:09   0";
        QTest::newRow("before 1970") << "UTC" << -0.5 << "1969-12-31 23:59:59   0";
    }
    void theReadOutIsTheLocalDateAndTimeAndTheValue() {
        QFETCH(QString, zone);
        QFETCH(double, seconds);
        const ZoomedPlot plot(zone.toStdString());
        QTEST(plot.zoomer.readOut(seconds), "text");
    }

    void theReadOutShowsHundredthsOfASecondInAViewShorterThanTenMinutes_data() {
        QTest::addColumn<double>("width");
        QTest::addColumn<QString>("text");
        QTest::newRow("ten minutes") << 600.0 << "1970-01-01 00:20:00   0";
        QTest::newRow("shorter") << 599.75 << "1970-01-01 00:20:00.25   0";
    }
    void theReadOutShowsHundredthsOfASecondInAViewShorterThanTenMinutes() {
        QFETCH(double, width);
        ZoomedPlot plot;
        plot.zoomer.zoom(QRectF(1100, 0, width, 100));
        QTEST(plot.zoomer.readOut(1200.25), "text");
        QVERIFY(plot.zoomer.readOut(1200.0625).startsWith(width < 600 ? "1970-01-01 00:20:00.06 "
                                                                      : "1970-01-01 00:20:00 "));
    }

    void theReadOutOfAValueHasTheDigitsThatTellAPixelFromTheNext() {
        ZoomedPlot plot;
        QCOMPARE(plot.zoomer.readOut(0, 12.34567891), "1970-01-01 00:00:00   12.3457");
        QCOMPARE(plot.zoomer.readOut(0, -0.5), "1970-01-01 00:00:00   -0.5");
        plot.zoomer.zoom(QRectF(1000, 4000, 1000, 0.01));
        QCOMPARE(plot.zoomer.readOut(0, 4000.001234), "1970-01-01 00:00:00   4000.00123");
    }

    void theReadOutHasRoomForItsLastDigitAlsoAtTheEdgeOfTheCanvas() {
        ZoomedPlot plot;
        plot.plot.show();
        QVERIFY(QTest::qWaitForWindowExposed(&plot.plot));
        QWidget &canvas = *plot.plot.canvas();
        const QPoint middle(canvas.width() / 2, canvas.height() / 2);
        for (const QPoint &at : {middle, QPoint(canvas.width() - 5, 5), QPoint(5, canvas.height() - 5)}) {
            QMouseEvent move(QEvent::MouseMove, at, canvas.mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                             Qt::NoModifier);
            QCoreApplication::sendEvent(&canvas, &move);
            const QRect rect = plot.zoomer.trackerRect(canvas.font());
            const QString text = plot.zoomer.trackerText(at).text();
            QVERIFY2(rect.isValid(), qPrintable(QString::number(at.x())));
            QVERIFY(rect.width() >= QFontMetrics(canvas.font()).horizontalAdvance(text) + 8);
            QVERIFY(canvas.rect().contains(rect));
        }
    }

    void givingUpARectangleLeavesTheHistoryAlone() {
        ZoomedPlot plot;
        plot.plot.show();
        QTest::mousePress(plot.plot.canvas(), Qt::LeftButton, {}, QPoint(100, 100));
        QVERIFY(plot.zoomer.isActive());
        plot.zoomer.abandon();
        QVERIFY(!plot.zoomer.isActive());
        QTest::mouseRelease(plot.plot.canvas(), Qt::LeftButton, {}, QPoint(200, 150));
        QCOMPARE(plot.zoomer.zoomStack().size(), 1);
    }
};

QTEST_MAIN(PlotZoomerTest)
#include "PlotZoomerTest.moc"

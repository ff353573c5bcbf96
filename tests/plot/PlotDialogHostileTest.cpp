#include "loading/FileLoading.h"
#include "plot/PlotPixels.h"
#include "plot/PlotWindow.h"
#include "support/CapturedStandardError.h"

#include <QFile>
#include <QFileInfo>

#include <atomic>

namespace {

const double start = plotStart;
using Side = TimeSeriesPlot::Side;

bool isFinite(const QRectF &rect) {
    return std::isfinite(rect.left()) && std::isfinite(rect.right()) && std::isfinite(rect.top()) &&
           std::isfinite(rect.bottom());
}

} // namespace

// What no one would ask for, and data that go away.
class PlotDialogHostileTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        data_.emplace();
        data_->add(shortBlock());
    }

    void aWindowWithoutWidthOrHeightIsDrawn_data() {
        QTest::addColumn<QRectF>("rect");
        QTest::newRow("no width") << QRectF(start + 10, 0, 0, 50);
        QTest::newRow("no height") << QRectF(start + 10, 7, 10, 0);
        QTest::newRow("neither") << QRectF(start + 10, 7, 0, 0);
        QTest::newRow("negative width") << QRectF(start + 20, 0, -10, 50);
        QTest::newRow("negative height") << QRectF(start + 10, 50, 10, -50);
        QTest::newRow("a hundredth of a second") << QRectF(start + 10.5, 0, 0.01, 50);
        QTest::newRow("a microsecond") << QRectF(start + 10.5, 0, 1e-6, 50);
        QTest::newRow("less than doubles tell apart") << QRectF(start + 10.5, 0, 1e-12, 50);
        QTest::newRow("before all data") << QRectF(0, 0, 100, 1);
        QTest::newRow("before 1970") << QRectF(-1e9, 0, 100, 1);
        QTest::newRow("all of time") << QRectF(-1e15, 0, 2e15, 1);
        QTest::newRow("a million years") << QRectF(0, 0, 3e13, 1);
        QTest::newRow("huge values") << QRectF(start, -1e38, 10, 2e38);
        QTest::newRow("the whole range's bounds") << QRectF(0, 0, 2147483648.0, 100);
    }
    void aWindowWithoutWidthOrHeightIsDrawn() {
        QFETCH(QRectF, rect);
        PlotWindow window(*data_, "GA:DATA:X");
        QVERIFY(window.show());
        const QRectF base = window.stack().first();
        window.zoomer().zoom(rect);
        QVERIFY(window.dialog().grab().width() > 0);
        QVERIFY(isFinite(window.shown()));
        QCOMPARE(window.usableButtons(), "previous full horizontal vertical");
        window.vertical().click();
        window.horizontal().click();
        window.full().click();
        QCOMPARE(window.shown(), base);
        QCOMPARE(window.series("GA:DATA:X").size(), std::size_t{100});
    }

    void aZoomToAHundredthOfASecondShowsTheRecordInIt() {
        PlotWindow window(*data_, "GA:DATA:X");
        QVERIFY(window.show());
        window.zoom(start + 9.995, start + 10.005, 0, 50);
        QCOMPARE(window.series("GA:DATA:X").size(), std::size_t{1});
        QCOMPARE(inkedColumns(window.canvas().grab().toImage(), Qt::red).size(), 1);
    }

    void valuesNearTheLargestFloatsAreDrawn() {
        data_->add({"BIG", "X", 50, [](int i) { return std::string(i % 2 == 0 ? "3.4e38" : "-3.4e38"); }});
        PlotWindow window(*data_, "BIG:DATA:X");
        QVERIFY(isFinite(window.stack().first()));
        QVERIFY(window.drop("GA:DATA:X", Side::right));
        QVERIFY(window.drop("BIG:DATA:X", Side::right));
        QVERIFY(window.show());
        QCOMPARE(inkedColumns(window.canvas().grab().toImage(), Qt::magenta).size(), 1);
        window.zoom(start, start + 10, -1, 1);
        QVERIFY(window.dialog().grab().width() > 0);
        window.vertical().click();
        QCOMPARE(window.shown().height(), 2 * static_cast<double>(3.4e38F));
    }

    void tinyValuesAreDrawn() {
        data_->add({"TINY", "X", 50, [](int i) { return std::string(i % 2 == 0 ? "1e-45" : "0"); }});
        PlotWindow window(*data_, "TINY:DATA:X");
        QVERIFY(window.show());
        QVERIFY(window.shown().height() > 0);
        QCOMPARE(inkedColumns(window.canvas().grab().toImage(), Qt::red).size(), 1);
    }

    void aFileThatIsRemovedWhileItsPlotIsOpenLeavesAnEmptyPlot() {
        PlotWindow window(*data_, "GA:DATA:X");
        QVERIFY(window.show());
        window.zoom(start + 10, start + 20, 0, 50);
        const QVector<QRectF> history = window.stack();
        data_->remove("GA");
        window.dialog().OnZoomLeft();
        QCOMPARE(window.shown(), history.first());
        QCOMPARE(window.series("GA:DATA:X").size(), std::size_t{0});
        QCOMPARE(inkedColumns(window.canvas().grab().toImage(), Qt::red), ColumnRanges());
        window.dialog().OnZoomRight();
        for (QToolButton *button : {&window.vertical(), &window.horizontal()}) {
            button->click();
            QCOMPARE(window.shown(), history.last());
        }
        window.full().click();
        QVERIFY(isFinite(window.shown()));
        QVERIFY(window.dialog().grab().width() > 0);
        window.clickLegend("GA:DATA:X");
        QVERIFY(window.drop("GA:DATA:X"));
    }

    void aVariableWhoseFileIsRemovedNoLongerCountsForTheTimesOfTheOthers() {
        data_->add(shortBlock("GB"));
        PlotWindow window(*data_, "GA:DATA:X");
        QVERIFY(window.drop("GB:DATA:X"));
        window.zoom(start + 10, start + 20, 0, 50);
        data_->remove("GB");
        window.horizontal().click();
        QCOMPARE(window.shown(), QRectF(start, 0, 99, 50));
        window.full().click();
        QCOMPARE(window.shown(), QRectF(start, 0, 99, 99));
        window.zoomer().zoom(0);
        QVERIFY(window.drop("GA:DATA:Y"));
        QCOMPARE(window.stack().first(), QRectF(start, 0, 99, 500));
    }

    void aFileThatIsReplacedWhileItsPlotIsOpenShowsItsNewPoints() {
        PlotWindow window(*data_, "GA:DATA:X");
        data_->remove("GA");
        PlotBlock later = shortBlock();
        later.first = plotStart + 50;
        data_->add(later);
        window.zoom(start + 10, start + 60, 0, 50);
        QCOMPARE(window.series("GA:DATA:X").size(), std::size_t{11});
        window.full().click();
        QCOMPARE(window.shown(), QRectF(start + 50, 0, 99, 99));
    }

    void aFileThatVanishesFromTheDiskLeavesAnEmptyPlot() {
        PlotWindow window(*data_, "GA:DATA:X");
        QVERIFY(window.show());
        QVERIFY(QFile::remove(QString::fromStdString(data_->pathOf("GA"))));
        window.zoom(start + 10, start + 20, 0, 50);
        QCOMPARE(window.series("GA:DATA:X").size(), std::size_t{0});
        window.vertical().click();
        window.horizontal().click();
        window.full().click();
        QVERIFY(isFinite(window.shown()));
        QVERIFY(window.dialog().grab().width() > 0);
    }

    void aFileThatIsOverwrittenOnTheDiskIsReadAsFarAsItGoes() {
        PlotWindow window(*data_, "GA:DATA:X");
        QVERIFY(window.show());
        QFile file(QString::fromStdString(data_->pathOf("GA")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        const QByteArray other("DATA\t\0\xff\tnot what it was\n", 23);
        QCOMPARE(file.write(other), other.size());
        file.close();
        window.zoom(start + 10, start + 20, 0, 50);
        QVERIFY(window.dialog().grab().width() > 0);
        QVERIFY(window.series("GA:DATA:X").size() <= 11U);
    }

    void aFileThatWasCutShortSaysSoAtEachZoomAndNotForEachCurve() {
        const std::string path = data_->pathOf("GA");
        data_->remove("GA");
        DataSet source(path);
        loadFile(QString::fromStdString(path), source, std::atomic<bool>(false), [](int, qint64) {});
        data_->set.addLoaded(source);
        PlotWindow window(*data_, "GA:DATA:X");
        QVERIFY(window.drop("GA:DATA:Y"));
        QVERIFY(window.show());
        const auto size = QFileInfo(QString::fromStdString(path)).size();
        QVERIFY(QFile::resize(QString::fromStdString(path), size / 2));
        for (int zoom = 1; zoom <= 3; ++zoom) {
            const CapturedStandardError errors;
            window.zoom(start + 10, start + 20 + zoom, 0, 50);
            QCOMPARE(window.series("GA:DATA:X").size(), static_cast<std::size_t>(11 + zoom));
            const QString said = QString::fromStdString(errors.text());
            QVERIFY2(said.startsWith(QString::fromStdString(path) + ": The file has changed since"),
                     qPrintable(said));
            QCOMPARE(said.count('\n'), 1);
        }
    }

    void anEmptyKeyOpensAnEmptyWindow() {
        PlotWindow window(*data_, "");
        QVERIFY(window.show());
        QCOMPARE(window.plot().axisTitle(QwtPlot::xBottom).text(), "Time");
        QVERIFY(window.dialog().grab().width() > 0);
    }

    void aWindowWithManyCurvesIsDrawnAndDeleted() {
        PlotWindow window(*data_, "GA:DATA:X");
        for (int i = 0; i < 100; ++i) {
            QVERIFY(window.drop(QStringLiteral("variable %1").arg(i), i % 2 == 0 ? Side::left : Side::right));
        }
        QVERIFY(window.show());
        QCOMPARE(window.plot().entries().size(), std::size_t{303});
        QVERIFY(window.dialog().grab().width() > 0);
    }

private:
    std::optional<PlotData> data_;
};

QTEST_MAIN(PlotDialogHostileTest)
#include "PlotDialogHostileTest.moc"

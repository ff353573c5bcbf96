// From the table of variables to a plot window, by double-click and by drag.

#include "loading/QDataSet.h"
#include "plot/PlotDialog.h"
#include "time/Timezone.h"
#include "ui/DataFiles.h"
#include "ui/MetaObjectLists.h"
#include "ui/SummaryTableWidget.h"
#include "ui/SummaryWidget.h"

#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>
#include <qwt_plot.h>
#include <qwt_plot_item.h>

#include <iostream>
#include <sstream>

namespace {

struct Scene {
    explicit Scene(const QByteArray &columns = "CH4\tTEMP") : widget(nullptr, &dataSet) {
        QSignalSpy loaded(&dataSet, SIGNAL(FileLoaded(QString)));
        dataSet.AddFile(files.writeData("1.data", "QA330", columns));
        dataSet.AddFile(files.writeData("2.data", "QA340", "CO2"));
        while (loaded.count() < 2) {
            loaded.wait();
        }
        widget.Update();
        widget.resize(500, 300);
        widget.show();
    }

    SummaryTableWidget *table() const { return widget.findChild<SummaryTableWidget *>(); }
    QList<PlotDialog *> plots() const { return widget.findChildren<PlotDialog *>(); }
    QPoint cellCentre(int row, int column) const {
        return table()->visualRect(table()->model()->index(row, column)).center();
    }
    void doubleClick(int row, int column) const {
        const QPoint at = cellCentre(row, column);
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(table()->viewport(), Qt::LeftButton, {}, at);
    }
    void press(int row, int column) const {
        QCursor::setPos(pressedAt);
        QTest::mousePress(table()->viewport(), Qt::LeftButton, {}, cellCentre(row, column));
    }
    // The mouse is seen this far from where it was pressed.
    void move(const QPointF &way, Qt::MouseButtons buttons = Qt::LeftButton) {
        QMouseEvent event(QEvent::MouseMove, QPointF(), QPointF(), pressedAt + way, Qt::NoButton, buttons,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(table()->viewport(), &event);
    }
    // What the drag that was started carries; null when none was.
    QDrag *drag() const { return widget.findChild<QDrag *>(); }

    DataFiles files;
    QDataSet dataSet;
    SummaryWidget widget;
    const QPoint pressedAt{300, 200};
};

QStringList curveTitles(const PlotDialog &plot) {
    QStringList titles;
    for (const QwtPlotItem *item : plot.findChild<QwtPlot *>()->itemList(QwtPlotItem::Rtti_PlotCurve)) {
        titles += item->title().text();
    }
    return titles;
}

} // namespace

class VariablePlottingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    void hasItsSlotsAndTheTablesSignal() {
        const QStringList slotNames = ownSlots(SummaryWidget::staticMetaObject);
        for (const char *name : {"Update()", "OnCellPressed(int,int)", "OnCellDoubleClicked(int,int)",
                                 "OnCellMouseMoved(QMouseEvent*)", "OnTargetChanged(QWidget*)"}) {
            QVERIFY2(slotNames.contains(name), name);
        }
        QCOMPARE(ownSignals(SummaryTableWidget::staticMetaObject),
                 QStringList{"GotMouseMoveEvent(QMouseEvent*)"});
    }

    void aDoubleClickOpensAPlotOfTheVariable() {
        const Scene scene;
        scene.doubleClick(1, 0);
        QCOMPARE(scene.plots().size(), 1);
        const PlotDialog *plot = scene.plots().front();
        QVERIFY(plot->isVisible());
        QVERIFY(!plot->isModal());
        QCOMPARE(curveTitles(*plot), (QStringList{"QA330:DATA:TEMP", "MAX", "MIN"}));
    }

    void everyDoubleClickOpensAFurtherPlot() {
        const Scene scene;
        scene.doubleClick(0, 0);
        scene.doubleClick(0, 0);
        scene.doubleClick(0, 1);
        QCOMPARE(scene.plots().size(), 3);
        QCOMPARE(curveTitles(*scene.plots().back()).front(), "QA340:DATA:CO2");
    }

    void closingOnePlotLeavesTheOthers() {
        const Scene scene;
        scene.doubleClick(0, 0);
        scene.doubleClick(1, 0);
        const QPointer<PlotDialog> first = scene.plots().front();
        first->close();
        QTRY_VERIFY(first.isNull());
        QCOMPARE(scene.plots().size(), 1);
        QVERIFY(scene.plots().front()->isVisible());
    }

    void aCellWithoutAVariableGivesTheKeyNone() {
        const Scene scene;
        QVERIFY(scene.table()->item(1, 1) == nullptr);
        scene.doubleClick(1, 1);
        QCOMPARE(scene.plots().size(), 1);
        QCOMPARE(curveTitles(*scene.plots().front()).front(), "NONE");
    }

    void aNameThatIsNotUtf8IsPlotted() {
        const Scene scene("CH\xff\tTEMP");
        scene.doubleClick(0, 0);
        const auto *plot = scene.plots().front()->findChild<QwtPlot *>();
        const QRectF curve = plot->itemList(QwtPlotItem::Rtti_PlotCurve).front()->boundingRect();
        QCOMPARE(curve.left(), 1600000000.0);
        QCOMPARE(curve.width(), 1.0);
    }

    void aZoneFileThatIsGoneGivesAMessageAndNoPlot() {
        const Scene scene;
        zoneDirectory = "/nowhere";
        std::ostringstream messages;
        std::streambuf *previous = std::cerr.rdbuf(messages.rdbuf());
        scene.doubleClick(0, 0);
        std::cerr.rdbuf(previous);
        zoneDirectory = FVQA_ZONEINFO_DIR;
        QCOMPARE(scene.plots().size(), 0);
        QCOMPARE(messages.str(), "Unable to open file: /nowhere/UTC\n");
    }

    void aDragCarriesTheKeyOfThePressedCellAsText() {
        Scene scene;
        scene.press(1, 0);
        scene.move(QPointF(3 * QApplication::startDragDistance(), 0));
        QVERIFY(scene.drag() != nullptr);
        QCOMPARE(scene.drag()->mimeData()->text(), "QA330:DATA:TEMP");
        QVERIFY(scene.drag()->mimeData()->hasFormat("text/plain"));
    }

    void aMoveOfLessThanThreeStartDragDistancesStartsNothing() {
        Scene scene;
        scene.press(1, 0);
        const int enough = 3 * QApplication::startDragDistance();
        scene.move(QPointF(enough - 1, 0));
        scene.move(QPointF(-enough / 2.0, enough / 2.0 - 1));
        QVERIFY(scene.drag() == nullptr);
        scene.move(QPointF(-enough / 2.0, enough / 2.0));
        QVERIFY(scene.drag() != nullptr);
    }

    void fractionsOfAPixelAreRounded() {
        Scene scene;
        scene.press(1, 0);
        const int enough = 3 * QApplication::startDragDistance();
        scene.move(QPointF(enough - 0.6, 0));
        QVERIFY(scene.drag() == nullptr);
        scene.move(QPointF(enough - 0.4, 0));
        QVERIFY(scene.drag() != nullptr);
    }

    void aPressBesideTheCellsDragsNothing() {
        Scene scene;
        scene.move(QPointF(500, 0)); // nothing was pressed yet
        QVERIFY(scene.drag() == nullptr);
        scene.press(1, 0);
        const QRect viewport = scene.table()->viewport()->rect();
        QVERIFY(!scene.table()->indexAt(viewport.bottomRight()).isValid());
        QTest::mousePress(scene.table()->viewport(), Qt::LeftButton, {}, viewport.bottomRight());
        scene.move(QPointF(500, 0));
        QVERIFY(scene.drag() == nullptr);
    }

    void onlyTheLeftButtonDrags() {
        Scene scene;
        scene.press(1, 0);
        scene.move(QPointF(500, 0), Qt::NoButton);
        scene.move(QPointF(500, 0), Qt::RightButton);
        QVERIFY(scene.drag() == nullptr);
    }

    void draggingOutSelectsNoFurtherCells() {
        Scene scene;
        scene.press(0, 0);
        scene.move(QPointF(5, 20));
        QCOMPARE(scene.table()->selectedItems(), QList<QTableWidgetItem *>{scene.table()->item(0, 0)});
    }
};

QTEST_MAIN(VariablePlottingTest)
#include "VariablePlottingTest.moc"

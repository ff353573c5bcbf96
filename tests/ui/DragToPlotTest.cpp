// A real drag of a variable out of the table into an open plot window.

#include "loading/QDataSet.h"
#include "plot/PlotDialog.h"
#include "time/Timezone.h"
#include "ui/DataFiles.h"
#include "ui/SummaryTableWidget.h"
#include "ui/SummaryWidget.h"

#include <QDrag>
#include <QSignalSpy>
#include <QTimer>
#include <QWindow>
#include <QtTest>
#include <qwt_plot.h>
#include <qwt_plot_item.h>

#include <functional>

namespace {

struct Scene {
    Scene() : widget(nullptr, &dataSet) {
        QSignalSpy loaded(&dataSet, SIGNAL(FileLoaded(QString)));
        dataSet.AddFile(files.writeData("1.data", "QA330", "CH4\tTEMP"));
        loaded.wait();
        widget.Update();
        widget.setGeometry(0, 0, 400, 300);
        widget.show();
        plot = new PlotDialog(&widget, &dataSet, "QA330:DATA:CH4");
        plot->move(500, 100);
        plot->show();
    }

    DataFiles files;
    QDataSet dataSet;
    SummaryWidget widget;
    PlotDialog *plot;
};

QList<QwtPlotItem *> curvesOf(const PlotDialog &plot) {
    return plot.findChild<QwtPlot *>()->itemList(QwtPlotItem::Rtti_PlotCurve);
}

// Lets the steps follow each other, one at each turn of whatever event loop runs.
void playWhileDragging(QObject *context, std::vector<std::function<void()>> steps) {
    auto *timer = new QTimer(context);
    timer->setInterval(20);
    QObject::connect(timer, &QTimer::timeout, context,
                     [timer, steps = std::move(steps), next = 0U]() mutable {
                         if (next == steps.size()) {
                             timer->deleteLater();
                             return;
                         }
                         steps[next++]();
                     });
    timer->start();
}

// Drags the variable in the second row of the table to where the plot is `x` pixels from the left.
void dragToPlot(Scene &scene, int x) {
    auto *table = scene.widget.findChild<SummaryTableWidget *>();
    const QPoint inTable = table->visualRect(table->model()->index(1, 0)).center();
    const QPoint onScreen = table->viewport()->mapToGlobal(inTable);
    QWindow *from = scene.widget.windowHandle();
    QWindow *to = scene.plot->windowHandle();
    const QPoint inWindow = scene.widget.mapFromGlobal(onScreen);
    const QPoint target(x, 120);
    QCursor::setPos(onScreen);
    QTest::mousePress(from, Qt::LeftButton, {}, inWindow);
    playWhileDragging(&scene.widget, {
                                         [=] { QTest::mouseMove(to, target - QPoint(20, 10)); },
                                         [=] { QTest::mouseMove(to, target); },
                                         [=] { QTest::mouseRelease(to, Qt::LeftButton, {}, target); },
                                     });
    // This one starts the drag and comes back when it has ended.
    QTest::mouseMove(from, inWindow + QPoint(60, 60));
}

} // namespace

class DragToPlotTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    void droppedOnTheRightHalfItIsOnTheRightAxis() {
        Scene scene;
        QVERIFY(QTest::qWaitForWindowExposed(scene.plot));
        dragToPlot(scene, scene.plot->width() * 3 / 4);
        QTRY_COMPARE(curvesOf(*scene.plot).size(), 6);
        QCOMPARE(curvesOf(*scene.plot)[3]->title().text(), "QA330:DATA:TEMP");
        QCOMPARE(curvesOf(*scene.plot)[3]->yAxis(), int{QwtPlot::yRight});
        QVERIFY(scene.plot->findChild<QwtPlot *>()->axisEnabled(QwtPlot::yRight));
    }

    void droppedOnTheLeftHalfItIsOnTheLeftAxis() {
        Scene scene;
        QVERIFY(QTest::qWaitForWindowExposed(scene.plot));
        dragToPlot(scene, scene.plot->width() / 4);
        QTRY_COMPARE(curvesOf(*scene.plot).size(), 6);
        QCOMPARE(curvesOf(*scene.plot)[3]->yAxis(), int{QwtPlot::yLeft});
        QVERIFY(!scene.plot->findChild<QwtPlot *>()->axisEnabled(QwtPlot::yRight));
    }
};

QTEST_MAIN(DragToPlotTest)
#include "DragToPlotTest.moc"

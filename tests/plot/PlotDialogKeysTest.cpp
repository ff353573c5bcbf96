#include "plot/PlotWindowTest.h"

#include <QClipboard>
#include <QSignalSpy>

namespace {

const double start = plotStart;

} // namespace

// The window's keys, and how it closes.
class PlotDialogKeysTest : public PlotWindowTest {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        PlotWindowTest::init();
        QVERIFY(window_->showActive());
    }

    void altLeftAndAltRightWalkTheHistory() {
        window_->zoom(start, start + 50, 0, 50);
        window_->zoom(start, start + 20, 0, 20);
        press(Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(window_->index(), 1);
        press(Qt::Key_Left, Qt::AltModifier);
        press(Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(window_->index(), 0);
        press(Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(window_->index(), 1);
    }

    void theyDoSoWhileAnEditHasTheFocus() {
        window_->zoom(start, start + 50, 0, 50);
        window_->yMinimum().setFocus();
        QTest::keyClick(&window_->yMinimum(), Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(window_->index(), 0);
    }

    void minusAndPlusOnThePlotWalkTheHistoryToo() {
        window_->zoom(start, start + 50, 0, 50);
        window_->zoom(start, start + 20, 0, 20);
        QTest::keyClick(&window_->canvas(), Qt::Key_Minus);
        QCOMPARE(window_->index(), 1);
        QTest::keyClick(&window_->canvas(), Qt::Key_Plus);
        QCOMPARE(window_->index(), 2);
    }

    void escapeClosesAndDeletesTheWindow() {
        press(Qt::Key_Escape);
        QVERIFY(!window_->dialog().isVisible());
        expectDeleted();
    }

    void escapeClosesTheWindowFromAnEditToo() {
        window_->yMinimum().setFocus();
        QTest::keyClick(&window_->yMinimum(), Qt::Key_Escape);
        expectDeleted();
    }

    void escapeWhileARectangleIsDrawnOnlyGivesItUp() {
        QTest::mousePress(&window_->canvas(), Qt::LeftButton, {}, QPoint(100, 50));
        QVERIFY(window_->zoomer().isActive());
        press(Qt::Key_Escape);
        QVERIFY(!window_->zoomer().isActive());
        QVERIFY(window_->dialog().isVisible());
        QTest::mouseRelease(&window_->canvas(), Qt::LeftButton, {}, QPoint(300, 150));
        QCOMPARE(window_->stack().size(), 1);
        press(Qt::Key_Escape);
        expectDeleted();
    }

    void theCloseButtonDeletesTheWindow() {
        window_->closeButton().click();
        expectDeleted();
    }

    void theWindowsOwnCloseButtonDeletesItEvenWhileARectangleIsDrawn() {
        QTest::mousePress(&window_->canvas(), Qt::LeftButton, {}, QPoint(100, 50));
        QVERIFY(window_->zoomer().isActive());
        QVERIFY(window_->dialog().close());
        expectDeleted();
    }

    void aWindowThatWasNeverShownCanBeClosed() {
        PlotWindow window(*data_, "GA:DATA:X");
        window.dialog().close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(window.pointer().isNull());
    }

    void aWindowOfManyCurvesIsDeletedWithThem() {
        QVERIFY(window_->drop("GA:DATA:Y", TimeSeriesPlot::Side::right));
        QVERIFY(window_->drop("GA:DATA:X"));
        QVERIFY(window_->drop("absent"));
        const QPointer<TimeSeriesPlot> plot = &window_->plot();
        window_->zoom(start, start + 50, 0, 50);
        press(Qt::Key_Escape);
        expectDeleted();
        QVERIFY(plot.isNull());
    }

    void aWindowWithAParentIsDeletedOnceWhicheverGoesFirst() {
        QWidget parent;
        QPointer<PlotDialog> dialog = new PlotDialog(&parent, &data_->set, "GA:DATA:X");
        dialog->show();
        dialog->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(dialog.isNull());
        {
            QWidget other;
            dialog = new PlotDialog(&other, &data_->set, "GA:DATA:X");
        }
        QVERIFY(dialog.isNull());
    }

    void ctrlCCopiesThePlotAsAPicture() {
        QApplication::clipboard()->clear();
        press(Qt::Key_C, Qt::ControlModifier);
        const QImage picture = QApplication::clipboard()->image();
        QVERIFY(picture.width() >= window_->plot().width());
        QVERIFY(picture.height() >= window_->plot().height());
    }

    void ctrlCInAnEditCopiesItsText() {
        window_->yMaximum().setFocus();
        window_->yMaximum().selectAll();
        QTest::keyClick(&window_->yMaximum(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), "99");
    }

    void returnOnThePlotAppliesTheRangeThatTheEditsHold() {
        window_->enterYRange("20", "30");
        press(Qt::Key_Return);
        QVERIFY(window_->dialog().isVisible());
        QCOMPARE(window_->shown(), QRectF(start, 20, 99, 10));
    }

private:
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        QTest::keyClick(&window_->plot(), key, modifiers);
    }

    void expectDeleted() {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(window_->pointer().isNull());
    }
};

QTEST_MAIN(PlotDialogKeysTest)
#include "PlotDialogKeysTest.moc"

#include "plot/PlotWindowTest.h"

#include <QSignalSpy>

namespace {

const double start = plotStart;

} // namespace

// A range of time chosen by keys. The view spans 99 seconds.
class PlotKeyRangeTest : public PlotWindowTest {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        PlotWindowTest::init();
        QVERIFY(window_->showActive());
        window_->canvas().setFocus();
    }

    void returnAtBothEndsShowsTheTimeBetweenThemAndLeavesTheValues() {
        const QRectF base = window_->stack().first();
        press(Qt::Key_Home);
        press(Qt::Key_Right, 10);
        press(Qt::Key_Return);
        press(Qt::Key_Right, 30);
        QCOMPARE(window_->stack().size(), 1);
        press(Qt::Key_Return);
        QVERIFY(isShown(0.10, 0.40));
        QCOMPARE(window_->shown().top(), base.top());
        QCOMPARE(window_->shown().height(), base.height());
        QCOMPARE(window_->index(), 1);
        QCOMPARE(window_->stack().size(), 2);
        QCOMPARE(window_->series("GA:DATA:X").size(), std::size_t{30}); // records from 9.9 to 39.6 s
        QVERIFY(!window_->zoomer().isActive());
        press(Qt::Key_Minus);
        QCOMPARE(window_->shown(), base);
    }

    void theFirstArrowKeyPutsTheMarkInTheMiddle() {
        press(Qt::Key_Left);
        press(Qt::Key_Return);
        press(Qt::Key_End);
        press(Qt::Key_Return);
        QVERIFY(isShown(0.5, 1));
    }

    void ctrlMakesTheStepsATenthOfTheView() {
        press(Qt::Key_Right);
        press(Qt::Key_Right, 2, Qt::ControlModifier);
        press(Qt::Key_Return);
        press(Qt::Key_Left, 5, Qt::ControlModifier);
        press(Qt::Key_Enter, 1, Qt::KeypadModifier);
        QVERIFY(isShown(0.2, 0.7));
    }

    void theMarkStaysInTheView() {
        press(Qt::Key_Home);
        press(Qt::Key_Left, 3);
        press(Qt::Key_Return);
        press(Qt::Key_Right, 12, Qt::ControlModifier);
        press(Qt::Key_Left, 1, Qt::ControlModifier);
        press(Qt::Key_Return);
        QVERIFY(isShown(0, 0.9));
    }

    void rangesOfRangesAreChosenTheSameWay() {
        for (int i = 0; i < 2; ++i) {
            press(Qt::Key_Home);
            press(Qt::Key_Return);
            press(Qt::Key_Right, 2, Qt::ControlModifier);
            press(Qt::Key_Return);
        }
        QVERIFY(isShown(0, 0.04));
        QCOMPARE(window_->index(), 2);
    }

    void theKeysWorkOnThePlotAsOnItsCanvas() {
        window_->plot().setFocus();
        for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Return, Qt::Key_Right, Qt::Key_Return}) {
            QTest::keyClick(&window_->plot(), key);
        }
        QVERIFY(isShown(0, 0.01));
    }

    void noKeyMovesTheMousesPointer() {
        const QPoint before = QCursor::pos();
        for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_Return}) {
            press(key);
        }
        QCOMPARE(QCursor::pos(), before);
    }

    void bothEndsInOnePlaceAreNoRange() {
        QSignalSpy zooms(&window_->zoomer(), SIGNAL(zoomed(QRectF)));
        press(Qt::Key_Right);
        press(Qt::Key_Return, 3);
        QCOMPARE(zooms.size(), 0);
        press(Qt::Key_Right);
        press(Qt::Key_Return);
        QVERIFY(isShown(0.5, 0.51));
    }

    void aReturnKeyHeldDownFixesNothingMore() {
        press(Qt::Key_Right);
        press(Qt::Key_Return);
        press(Qt::Key_Right);
        QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(&window_->canvas(), &repeated);
        QCOMPARE(window_->stack().size(), 1);
    }

    void escapeGivesTheMarkUpAndThenClosesTheWindow() {
        press(Qt::Key_Right);
        press(Qt::Key_Return);
        press(Qt::Key_Escape);
        QVERIFY(!window_->zoomer().isActive());
        QVERIFY(window_->dialog().isVisible());
        QCOMPARE(window_->stack().size(), 1);
        press(Qt::Key_Escape);
        QVERIFY(!window_->dialog().isVisible());
    }

    void aMouseButtonGivesTheMarkUpAndDrawsItsOwnRectangle() {
        press(Qt::Key_Home);
        press(Qt::Key_Return);
        press(Qt::Key_Right);
        QWindow *handle = window_->dialog().windowHandle();
        const QPoint canvas = window_->canvas().mapTo(&window_->dialog(), QPoint());
        QTest::mousePress(handle, Qt::LeftButton, {}, canvas + QPoint(200, 50));
        QTest::mouseMove(handle, canvas + QPoint(300, 100));
        press(Qt::Key_Right);
        QTest::mouseRelease(handle, Qt::LeftButton, {}, canvas + QPoint(300, 100));
        QCOMPARE(window_->stack().size(), 2);
        const double pixel = 99.0 / window_->canvas().width();
        QVERIFY(qAbs(window_->shown().left() - start - 200 * pixel) < 3 * pixel);
        QVERIFY(qAbs(window_->shown().right() - start - 300 * pixel) < 3 * pixel);
    }

    void anotherViewForgetsTheMark() {
        press(Qt::Key_Right);
        press(Qt::Key_Return);
        window_->zoom(start, start + 50, 0, 50);
        QVERIFY(!window_->zoomer().isActive());
        press(Qt::Key_Home);
        press(Qt::Key_Return);
        press(Qt::Key_Right, 5, Qt::ControlModifier);
        QVERIFY(window_->drop("GA:DATA:Y"));
        QVERIFY(!window_->zoomer().isActive());
    }

    void theShortestViewTakesNoMark() {
        window_->zoom(start, start + 0.01, 0, 1e-8);
        press(Qt::Key_Right);
        press(Qt::Key_Return, 2);
        QCOMPARE(window_->index(), 1);
    }

    void theMarkIsALineAndTheRangeARectangleOfTheWholeHeight() {
        const QImage before = window_->canvas().grab().toImage();
        press(Qt::Key_Right);
        const QRect line = changed(before);
        press(Qt::Key_Return);
        press(Qt::Key_Right, 3, Qt::ControlModifier);
        const QRect range = changed(before);
        QVERIFY(line.height() > window_->canvas().height() * 0.9);
        QVERIFY(range.height() > window_->canvas().height() * 0.9);
        QVERIFY(range.width() >= window_->canvas().width() * 3 / 10);
        press(Qt::Key_Escape);
        QCOMPARE(changed(before), QRect());
    }

private:
    void press(Qt::Key key, int times = 1, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        for (int i = 0; i < times; ++i) {
            QTest::keyClick(&window_->canvas(), key, modifiers);
        }
    }

    // Whether the time axis shows these parts of all the time.
    bool isShown(double from, double to) const {
        constexpr double whole = 99;
        const QRectF shown = window_->shown();
        return qAbs(shown.left() - start - from * whole) < 1e-3 &&
               qAbs(shown.right() - start - to * whole) < 1e-3;
    }

    // The smallest rectangle around what differs from `before` on the canvas.
    QRect changed(const QImage &before) const {
        const QImage now = window_->canvas().grab().toImage();
        QRect found;
        for (int y = 0; y < now.height(); ++y) {
            for (int x = 0; x < now.width(); ++x) {
                if (now.pixel(x, y) != before.pixel(x, y)) {
                    found |= QRect(x, y, 1, 1);
                }
            }
        }
        return found;
    }
};

QTEST_MAIN(PlotKeyRangeTest)
#include "PlotKeyRangeTest.moc"

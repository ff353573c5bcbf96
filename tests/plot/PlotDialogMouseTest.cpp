#include "plot/PlotWindowTest.h"

#include <QMenu>
#include <QSignalSpy>

namespace {

const double start = plotStart;

QMenu *openMenu() {
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

} // namespace

// The window under a real mouse.
class PlotDialogMouseTest : public PlotWindowTest {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        PlotWindowTest::init();
        QVERIFY(window_->show());
    }

    void aDragOnTheCanvasZoomsToItsRectangle() {
        const QRectF base = window_->stack().first();
        drag(at(start + 20, 30), at(start + 60, 80));
        QCOMPARE(window_->stack().size(), 2);
        QCOMPARE(window_->index(), 1);
        const QRectF shown = window_->shown();
        const double pixel = 99.0 / window_->canvas().width();
        QVERIFY(qAbs(shown.left() - (start + 20)) <= 2 * pixel);
        QVERIFY(qAbs(shown.right() - (start + 60)) <= 2 * pixel);
        const double row = 99.0 / window_->canvas().height();
        QVERIFY(qAbs(shown.top() - 30) <= 2 * row);
        QVERIFY(qAbs(shown.bottom() - 80) <= 2 * row);
        QCOMPARE(window_->stack().last(), shown);
        QCOMPARE(window_->stack().first(), base);
        QVERIFY(window_->series("GA:DATA:X").size() < 43U);
        QCOMPARE(window_->usableButtons(), "previous full horizontal vertical");
    }

    void aDragFromTheLowerRightZoomsAllTheSame() {
        drag(at(start + 60, 30), at(start + 20, 80));
        QVERIFY(window_->shown().left() < start + 21);
        QVERIFY(window_->shown().width() > 38 && window_->shown().width() < 42);
    }

    void aClickZoomsNowhere() {
        QTest::mouseClick(window_->dialog().windowHandle(), Qt::LeftButton, {}, at(start + 20, 30));
        QCOMPARE(window_->stack().size(), 1);
    }

    void theRightButtonGoesBackToTheBaseAndOpensNoMenu() {
        window_->zoom(start, start + 50, 0, 50);
        window_->zoom(start, start + 20, 0, 20);
        rightClick(at(start + 10, 10));
        QCOMPARE(window_->index(), 0);
        QVERIFY(openMenu() == nullptr);
        QCOMPARE(window_->usableButtons(), "next");
        QCOMPARE(window_->shown(), window_->stack().first());
        QCOMPARE(window_->series("GA:DATA:X").size(), std::size_t{100});
    }

    void theMiddleButtonGoesBackOneZoomAndForwardWithShift() {
        window_->zoom(start, start + 50, 0, 50);
        window_->zoom(start, start + 20, 0, 20);
        QWindow *handle = window_->dialog().windowHandle();
        QTest::mouseClick(handle, Qt::MiddleButton, {}, at(start + 10, 10));
        QCOMPARE(window_->index(), 1);
        QCOMPARE(window_->series("GA:DATA:X").size(), std::size_t{51});
        QTest::mouseClick(handle, Qt::MiddleButton, {}, at(start + 10, 10));
        QCOMPARE(window_->index(), 0);
        QTest::mouseClick(handle, Qt::MiddleButton, Qt::ShiftModifier, at(start + 10, 10));
        QCOMPARE(window_->index(), 1);
        QCOMPARE(window_->series("GA:DATA:X").size(), std::size_t{51});
    }

    void atTheBaseTheRightButtonOpensTheMenuOnTheCanvas() {
        QVERIFY(menuAt(window_->canvas().rect().center(), &window_->canvas()));
    }

    void zoomedInTheRightButtonOpensTheMenuOnlyBesideTheCanvas() {
        window_->zoom(start, start + 50, 0, 50);
        QVERIFY(!menuAt(window_->canvas().rect().center(), &window_->canvas()));
        QVERIFY(menuAt(QPoint(2, 2), &window_->plot()));
        QVERIFY(menuAt(QPoint(1, 1), &window_->dialog()));
    }

    void theMenuKeyOpensTheMenuEverywhere() {
        window_->zoom(start, start + 50, 0, 50);
        QVERIFY(menuAt(window_->canvas().rect().center(), &window_->canvas(), QContextMenuEvent::Keyboard));
    }

    void anEditHasItsOwnMenu() {
        QVERIFY(menuAt(window_->yMinimum().rect().center(), &window_->yMinimum()));
        QVERIFY(!menuTexts_.contains("Copy picture"));
    }

    void theMenuOffersTheActionsWithTheirKeys() {
        QVERIFY(menuAt(window_->canvas().rect().center(), &window_->canvas()));
        QCOMPARE(menuTexts_,
                 (QStringList{"Copy picture", "Save picture...", "Print...", "", "Go to previous zoom level",
                              "Go to next zoom level", "Auto scale to view entire data set",
                              "Auto scale horizontally", "Auto scale vertically", "", "Close"}));
        QHash<QString, QString> keys;
        for (const QAction *action : window_->dialog().actions()) {
            keys[action->text()] = action->shortcut().toString();
        }
        QCOMPARE(keys["Copy picture"], "Ctrl+C");
        QCOMPARE(keys["Save picture..."], "Ctrl+S");
        QCOMPARE(keys["Print..."], "Ctrl+P");
        QCOMPARE(keys["Go to previous zoom level"], "Alt+Left");
        QCOMPARE(keys["Go to next zoom level"], "Alt+Right");
        QCOMPARE(keys["Close"], "Esc");
    }

    void theMenusZoomEntriesCanBeUsedWhenTheButtonsCan() {
        const auto compare = [this] {
            for (const QToolButton *button : {&window_->previous(), &window_->next(), &window_->full(),
                                              &window_->horizontal(), &window_->vertical()}) {
                QCOMPARE(action(button->toolTip())->isEnabled(), button->isEnabled());
            }
        };
        compare();
        window_->zoom(start, start + 50, 0, 50);
        compare();
        window_->zoom(start, start + 20, 0, 20);
        action("Go to previous zoom level")->trigger();
        QCOMPARE(window_->index(), 1);
        compare();
        action("Go to next zoom level")->trigger();
        QCOMPARE(window_->index(), 2);
        action("Auto scale to view entire data set")->trigger();
        QCOMPARE(window_->shown(), window_->stack().first());
        window_->zoomer().zoom(0);
        compare();
    }

    void theMenuIsGoneOnceItIsClosed() {
        QVERIFY(menuAt(window_->canvas().rect().center(), &window_->canvas()));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(window_->dialog().findChildren<QMenu *>(QString(), Qt::FindDirectChildrenOnly).isEmpty());
    }

private:
    // Where a point of the plot lies in the window.
    QPoint at(double time, double value) const {
        const QPointF onCanvas(window_->plot().transform(QwtPlot::xBottom, time),
                               window_->plot().transform(QwtPlot::yLeft, value));
        return window_->canvas().mapTo(&window_->dialog(), onCanvas.toPoint());
    }

    void drag(const QPoint &from, const QPoint &to) const {
        QWindow *handle = window_->dialog().windowHandle();
        QTest::mousePress(handle, Qt::LeftButton, {}, from);
        QTest::mouseMove(handle, (from + to) / 2);
        QTest::mouseMove(handle, to);
        QTest::mouseRelease(handle, Qt::LeftButton, {}, to);
    }

    // As the window system does: the menu is asked for while the button is down.
    void rightClick(const QPoint &where) const {
        QTest::mousePress(window_->dialog().windowHandle(), Qt::RightButton, {}, where);
        QWidget *under = window_->dialog().childAt(where);
        QContextMenuEvent event(QContextMenuEvent::Mouse, under->mapFrom(&window_->dialog(), where),
                                window_->dialog().mapToGlobal(where));
        QApplication::sendEvent(under, &event);
        QTest::mouseRelease(window_->dialog().windowHandle(), Qt::RightButton, {}, where);
    }

    // Asks for the menu there, notes its texts and closes it; false when none opened.
    bool menuAt(const QPoint &where, QWidget *widget,
                QContextMenuEvent::Reason reason = QContextMenuEvent::Mouse) {
        menuTexts_.clear();
        QContextMenuEvent event(reason, where, widget->mapToGlobal(where));
        QApplication::sendEvent(widget, &event);
        QMenu *menu = openMenu();
        if (menu == nullptr) {
            return false;
        }
        for (const QAction *action : menu->actions()) {
            menuTexts_ += action->text();
        }
        menu->close();
        return true;
    }

    QAction *action(const QString &text) const {
        for (QAction *action : window_->dialog().actions()) {
            if (action->text() == text) {
                return action;
            }
        }
        return nullptr;
    }

    QStringList menuTexts_;
};

QTEST_MAIN(PlotDialogMouseTest)
#include "PlotDialogMouseTest.moc"

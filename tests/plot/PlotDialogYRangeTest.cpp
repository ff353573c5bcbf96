#include "plot/PlotWindowTest.h"

#include <QSignalSpy>

namespace {

const double start = plotStart;

} // namespace

// The range of the left axis that is entered by hand. Runs in two locales.
class PlotDialogYRangeTest : public PlotWindowTest {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        PlotWindowTest::init();
        base_ = window_->stack().first();
    }

    void anEnteredRangeIsZoomedToWithTheTimesThatAreShown() {
        window_->zoom(start + 10, start + 20, 0, 50);
        window_->enterYRange("2.5", "7.25");
        QCOMPARE(window_->stack().size(), 2);
        window_->yRange().click();
        QCOMPARE(window_->stack().size(), 3);
        QCOMPARE(window_->stack().last(), QRectF(start + 10, 2.5, 10, 4.75));
        QCOMPARE(window_->shown(), QRectF(start + 10, 2.5, 10, 4.75));
    }

    void entering10AsMinimumAnd2AsMaximumAndApplyingGivesTheRange2To10() {
        window_->enterYRange("10", "2");
        window_->yRange().click();
        QCOMPARE(window_->shown(), QRectF(start, 2, 99, 8));
        QCOMPARE(window_->yTexts(), "10 to 2");
    }

    void aNumberIsReadWithAPointInEveryLocale() {
        window_->enterYRange("-1.5", "1e2");
        QCOMPARE(window_->yTexts(), "-1.5 to 1e2");
        window_->yRange().click();
        QCOMPARE(window_->shown(), QRectF(start, -1.5, 99, 101.5));
    }

    void aCommaCannotBeTyped() {
        window_->enterYRange("1,5", "7");
        QCOMPARE(window_->yTexts(), "15 to 7");
    }

    void onceTheUserHasEnteredARangeZoomingNoLongerRewritesTheEdits() {
        window_->enterYRange("2", "7");
        window_->zoom(start + 10, start + 20, 0, 50);
        QCOMPARE(window_->yTexts(), "2 to 7");
        window_->yRange().click();
        window_->dialog().OnZoomLeft();
        window_->dialog().OnZoomLeft();
        window_->dialog().OnAutoScaleFull();
        window_->dialog().OnAutoScaleVertical();
        QVERIFY(window_->drop("GA:DATA:Y"));
        QCOMPARE(window_->yTexts(), "2 to 7");
        window_->yRange().click();
        QCOMPARE(window_->shown().top(), 2.0);
        QCOMPARE(window_->shown().bottom(), 7.0);
    }

    void oneOfTheEditsIsEnoughForTheUsersRange() {
        window_->yMaximum().selectAll();
        QTest::keyClicks(&window_->yMaximum(), "50");
        Q_EMIT window_->yMaximum().editingFinished();
        window_->zoom(start + 10, start + 20, 3, 8);
        QCOMPARE(window_->yTexts(), "0 to 50");
    }

    void anUnparsableEditIsNoInputOfTheUsers() {
        for (const char *text : {"", "-", "1e", ".", "+", "1e999"}) {
            window_->yMinimum().setText(text);
            window_->dialog().OnYMinMaxEditChanged();
            QSignalSpy zoomed(&window_->zoomer(), SIGNAL(zoomed(QRectF)));
            window_->yRange().click();
            QVERIFY2(zoomed.isEmpty(), text);
            window_->zoom(start + 10, start + 20, 3, 8);
            QCOMPARE(window_->yTexts(), "3 to 8");
            window_->dialog().OnZoomLeft();
            QCOMPARE(window_->yTexts(), "0 to 99");
        }
    }

    void applyingTheRangeThatIsShownDoesNothing() {
        QSignalSpy zoomed(&window_->zoomer(), SIGNAL(zoomed(QRectF)));
        window_->yRange().click();
        window_->enterYRange("0", "99");
        window_->yRange().click();
        window_->enterYRange("99", "0");
        window_->yRange().click();
        QVERIFY(zoomed.isEmpty());
        QCOMPARE(window_->stack(), (QVector<QRectF>{base_}));
    }

    void whatTheProgramWroteCanBeApplied() {
        window_->zoom(start + 10, start + 20, 0.123456789, 8);
        window_->yRange().click();
        QCOMPARE(window_->shown(), QRectF(start + 10, 0.123457, 10, 8 - 0.123457));
        window_->dialog().OnZoomLeft();
        window_->dialog().OnZoomLeft();
        QCOMPARE(window_->yTexts(), "0 to 99");
    }

    void applyingAtTheBaseCanBeUndone() {
        window_->enterYRange("20", "30");
        window_->yRange().click();
        QCOMPARE(window_->usableButtons(), "previous full horizontal vertical");
        window_->previous().click();
        QCOMPARE(window_->shown(), base_);
    }

    void returnInAnEditEntersAndAppliesTheRangeOnce() {
        QVERIFY(window_->show());
        window_->yMinimum().setFocus();
        window_->yMinimum().selectAll();
        QTest::keyClicks(&window_->yMinimum(), "20");
        QSignalSpy zoomed(&window_->zoomer(), SIGNAL(zoomed(QRectF)));
        QTest::keyClick(&window_->yMinimum(), Qt::Key_Return);
        QCOMPARE(zoomed.size(), 1);
        QCOMPARE(window_->shown(), QRectF(start, 20, 99, 79));
        QVERIFY(window_->dialog().isVisible());
        window_->dialog().OnZoomLeft();
        QCOMPARE(window_->yTexts(), "20 to 99");
    }

    void returnInAnUnfinishedNumberDoesNothing() {
        QVERIFY(window_->show());
        window_->yMinimum().setFocus();
        window_->yMinimum().selectAll();
        QTest::keyClicks(&window_->yMinimum(), "1e");
        QSignalSpy zoomed(&window_->zoomer(), SIGNAL(zoomed(QRectF)));
        QTest::keyClick(&window_->yMinimum(), Qt::Key_Return);
        QVERIFY(zoomed.isEmpty());
        QVERIFY(window_->dialog().isVisible());
    }

    void leavingAnEditEntersTheRange() {
        QVERIFY(window_->show());
        window_->dialog().activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window_->dialog()));
        window_->yMinimum().setFocus();
        window_->yMinimum().selectAll();
        QTest::keyClicks(&window_->yMinimum(), "20");
        QTest::keyClick(&window_->yMinimum(), Qt::Key_Tab);
        window_->zoom(start + 10, start + 20, 3, 8);
        QCOMPARE(window_->yTexts(), "20 to 99");
    }

    void oneValueAsBothBoundsGetsSomeRangeAroundIt() {
        window_->enterYRange("8", "8");
        window_->yRange().click();
        QCOMPARE(window_->shown(), QRectF(start, 4, 99, 8));
    }

    void aRangeThatNoScaleCanShowDoesNothing() {
        window_->enterYRange("-1.7e308", "1.7e308");
        window_->yRange().click();
        QCOMPARE(window_->shown(), base_);
    }

    void hugeAndTinyRangesAreDrawn_data() {
        QTest::addColumn<QString>("low");
        QTest::addColumn<QString>("high");
        QTest::newRow("huge") << "-1e38"
                              << "1e38";
        QTest::newRow("beyond floats") << "-8e307"
                                       << "8e307";
        QTest::newRow("tiny") << "0"
                              << "1e-300";
        QTest::newRow("denormal") << "0"
                                  << "1e-320";
        QTest::newRow("next double") << "1"
                                     << "1.0000000000000002";
        QTest::newRow("huge value, no width") << "1e308"
                                              << "1e308";
        QTest::newRow("tiny value, no width") << "4.9e-324"
                                              << "4.9e-324";
    }
    void hugeAndTinyRangesAreDrawn() {
        QFETCH(QString, low);
        QFETCH(QString, high);
        QVERIFY(window_->show());
        window_->enterYRange(low, high);
        window_->yRange().click();
        QVERIFY(window_->shown().height() >= 0);
        QVERIFY(std::isfinite(window_->shown().height()));
        QVERIFY(window_->dialog().grab().width() > 0);
    }

private:
    QRectF base_;
};

QTEST_MAIN(PlotDialogYRangeTest)
#include "PlotDialogYRangeTest.moc"

#include "plot/PlotWindow.h"

#include <QSignalSpy>

namespace {

const std::string key = "LONG:DATA:X";
const double start = plotStart;

} // namespace

class PlotDialogZoomTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        data_.emplace();
        data_->add(longBlock());
    }
    void init() {
        window_.emplace(*data_, QString::fromStdString(key));
        base_ = window_->stack().first();
    }
    void cleanup() { window_.reset(); }

    void atTheBaseEverythingIsShownAndNeitherPreviousNorAnyAutoScaleCanBeUsed() {
        QCOMPARE(window_->usableButtons(), "");
        window_->zoom(start, start + 3600, 0, 500);
        window_->zoomer().zoom(0);
        QCOMPARE(window_->usableButtons(), "next");
        QCOMPARE(window_->shown(), base_);
        QVERIFY(window_->series(key).times().back() - window_->series(key).times().front() > 259000);
    }

    void aZoomCanBeLeftAndScaledButHasNoNext() {
        window_->zoom(start, start + 3600, 0, 500);
        QCOMPARE(window_->usableButtons(), "previous full horizontal vertical");
        QCOMPARE(window_->shown(), QRectF(start, 0, 3600, 500));
    }

    void betweenBaseAndLastZoomEverythingCanBeUsed() {
        window_->zoom(start, start + 36000, 0, 500);
        window_->zoom(start, start + 3600, 0, 500);
        window_->previous().click();
        QCOMPARE(window_->index(), 1);
        QCOMPARE(window_->usableButtons(), "previous next full horizontal vertical");
    }

    void leftAndRightWalkTheHistoryStepByStepAndStopAtItsEnds() {
        const QRectF first(start + 1000, 0, 36000, 500);
        const QRectF second(start + 2000, 100, 3600, 300);
        window_->zoomer().zoom(first);
        window_->zoomer().zoom(second);
        const QVector<QRectF> history{base_, first, second};
        QCOMPARE(window_->stack(), history);
        for (const int index : {1, 0, 0}) {
            window_->dialog().OnZoomLeft();
            QCOMPARE(window_->index(), index);
            QCOMPARE(window_->shown(), history[index]);
        }
        for (const int index : {1, 2, 2}) {
            window_->dialog().OnZoomRight();
            QCOMPARE(window_->index(), index);
            QCOMPARE(window_->shown(), history[index]);
        }
        QCOMPARE(window_->stack(), history);
    }

    void atTheHistorysEndsLeftAndRightDoNothingAtAll() {
        QSignalSpy zoomed(&window_->zoomer(), SIGNAL(zoomed(QRectF)));
        window_->dialog().OnZoomLeft();
        window_->dialog().OnZoomRight();
        QVERIFY(zoomed.isEmpty());
    }

    void theButtonsWalkTheHistory() {
        window_->zoom(start, start + 3600, 0, 500);
        window_->previous().click();
        QCOMPARE(window_->index(), 0);
        window_->next().click();
        QCOMPARE(window_->index(), 1);
        QCOMPARE(window_->usableButtons(), "previous full horizontal vertical");
    }

    void aNewZoomCutsWhatWasAhead() {
        window_->zoom(start, start + 36000, 0, 500);
        window_->zoom(start, start + 3600, 0, 500);
        window_->dialog().OnZoomLeft();
        window_->zoom(start + 500, start + 900, 0, 400);
        QCOMPARE(window_->stack(),
                 (QVector<QRectF>{base_, QRectF(start, 0, 36000, 500), QRectF(start + 500, 0, 400, 400)}));
        QVERIFY(!window_->next().isEnabled());
    }

    void everyZoomFetchesThePointsOfItsWindow() {
        for (const char *selector : {"", "max", "min"}) {
            QVERIFY(window_->series(key, selector).size() > 4000U);
        }
        window_->zoom(start + 1000, start + 1600, 0, 500);
        for (const char *selector : {"", "max", "min"}) {
            const PlotSeries &records = window_->series(key, selector);
            QCOMPARE(records.size(), std::size_t{61});
            QCOMPARE(records.times().front(), start + 1000);
            QCOMPARE(records.times().back(), start + 1600);
            QCOMPARE(records.window().low, start + 1000);
            QCOMPARE(records.window().high, start + 1600);
        }
        window_->zoom(start, start + 5000, 0, 500);
        QCOMPARE(window_->series(key).size(), std::size_t{501});
        window_->zoom(start, start + 6000, 0, 500);
        QCOMPARE(window_->series(key).size(), std::size_t{100});
    }

    void backAtTheBaseEverythingIsLoadedAgain() {
        const std::size_t all = window_->series(key).size();
        window_->zoom(start + 1000, start + 1600, 0, 500);
        window_->dialog().OnZoomLeft();
        QCOMPARE(window_->series(key).size(), all);
        QCOMPARE(window_->series(key).window().low, base_.left());
        QCOMPARE(window_->series(key).window().high, base_.right());
    }

    void everyZoomWritesItsRangeIntoTheEdits() {
        QCOMPARE(window_->yTexts(), "0 to 7105");
        window_->zoom(start, start + 3600, -2.5, 500.125);
        QCOMPARE(window_->yTexts(), "-2.5 to 500.125");
        window_->dialog().OnZoomLeft();
        QCOMPARE(window_->yTexts(), "0 to 7105");
        window_->dialog().OnZoomRight();
        QCOMPARE(window_->yTexts(), "-2.5 to 500.125");
    }

    void theEditsHaveSixDigits() {
        window_->zoom(start, start + 3600, 0.000123456789, 1234567.8);
        QCOMPARE(window_->yTexts(), "0.000123457 to 1.23457e+06");
    }

    void theSameZoomAgainChangesNothing() {
        const QRectF rect(start, 0, 3600, 500);
        window_->zoomer().zoom(rect);
        QSignalSpy zoomed(&window_->zoomer(), SIGNAL(zoomed(QRectF)));
        window_->zoomer().zoom(rect);
        QVERIFY(zoomed.isEmpty());
        QCOMPARE(window_->stack().size(), 2);
    }

    void theReadOutOfTheWindowFollowsItsZoneAndLeftAxis() {
        data_->add(zoned());
        PlotWindow window(*data_, "BERLIN:DATA:X");
        QVERIFY(window.show());
        window.zoom(start, start + 300, 0, 0.5);
        const QPoint middle(qRound(window.plot().transform(QwtPlot::xBottom, start + 150)),
                            qRound(window.plot().transform(QwtPlot::yLeft, 0.25)));
        const QwtPicker &picker = window.zoomer();
        const QString text = picker.trackerText(middle).text();
        const QRegularExpression expected("^2020-09-13 14:29:(09|10)\\.\\d\\d   0\\.2[45]\\d*$");
        QVERIFY2(expected.match(text).hasMatch(), qPrintable(text));
    }

private:
    static PlotBlock zoned() {
        PlotBlock block = shortBlock("BERLIN");
        block.zone = "Europe/Berlin";
        return block;
    }

    std::optional<PlotData> data_;
    std::optional<PlotWindow> window_;
    QRectF base_;
};

QTEST_MAIN(PlotDialogZoomTest)
#include "PlotDialogZoomTest.moc"

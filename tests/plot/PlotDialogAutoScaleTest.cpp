#include "plot/PlotWindow.h"

#include <QSignalSpy>

namespace {

const std::string rising = "GA:DATA:X";  // 0 to 99
const std::string falling = "GA:DATA:Y"; // 500 to 401
const std::string later = "GB:DATA:X";   // a thousand seconds later, -10 to 89
const double start = plotStart;

} // namespace

// A window over three variables, zoomed in.
class PlotDialogAutoScaleTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        data_.emplace();
        data_->add(shortBlock());
        PlotBlock block{"GB", "X", 100, [](int i) { return std::to_string(i - 10); }};
        block.first = plotStart + 1000;
        data_->add(block);
    }
    void init() {
        window_.emplace(*data_, QString::fromStdString(rising));
        QVERIFY(window_->drop(QString::fromStdString(falling)));
        QVERIFY(window_->drop(QString::fromStdString(later), TimeSeriesPlot::Side::right));
        window_->zoomer().zoom(view_);
        QCOMPARE(window_->index(), 1);
    }
    void cleanup() { window_.reset(); }

    void theFullAutoScaleShowsEveryVariableAndGoesOnTheHistory() {
        window_->full().click();
        QCOMPARE(window_->shown(), all_);
        QCOMPARE(window_->stack(), (QVector<QRectF>{all_, view_, all_}));
        QCOMPARE(window_->index(), 2);
        QCOMPARE(window_->yTexts(), "-10 to 500");
        QCOMPARE(window_->usableButtons(), "previous full horizontal vertical");
        QCOMPARE(window_->series(later).size(), std::size_t{100});
    }

    void theFullAutoScaleIgnoresHiding() {
        hide(falling);
        hide(later);
        window_->full().click();
        QCOMPARE(window_->shown(), all_);
    }

    void theHorizontalAutoScaleShowsAllTimesAndKeepsTheValues() {
        window_->horizontal().click();
        QCOMPARE(window_->shown(), QRectF(start, 20, 1099, 30));
        QCOMPARE(window_->stack().size(), 3);
        QCOMPARE(window_->yTexts(), "20 to 50");
        QCOMPARE(window_->series(rising).size(), std::size_t{100});
    }

    void theHorizontalAutoScaleHonoursHiding() {
        hide(later);
        window_->zoomer().zoom(view_);
        window_->horizontal().click();
        QCOMPARE(window_->shown(), QRectF(start, 20, 99, 30));
        show(later);
        hide(rising);
        hide(falling);
        QVERIFY(window_->curve(later).isVisible() && !window_->curve(rising).isVisible());
        window_->zoomer().zoom(view_);
        window_->horizontal().click();
        QCOMPARE(window_->shown(), QRectF(start + 1000, 20, 99, 30));
    }

    void theVerticalAutoScaleShowsTheValuesOfTheTimesInViewAndKeepsTheTimes() {
        window_->vertical().click();
        QCOMPARE(window_->shown(), QRectF(start + 10, 10, 50, 480));
        QCOMPARE(window_->stack().size(), 3);
        QCOMPARE(window_->yTexts(), "10 to 490");
    }

    void theVerticalAutoScaleHonoursHiding() {
        hide(falling);
        window_->zoomer().zoom(view_);
        window_->vertical().click();
        QCOMPARE(window_->shown(), QRectF(start + 10, 10, 50, 50));
    }

    void eachKindCountsACurveOfOneStatisticAlone() {
        for (const char *selector : {"", "max"}) {
            window_->clickLegend(falling, selector);
        }
        window_->zoomer().zoom(view_);
        window_->vertical().click();
        QCOMPARE(window_->shown().bottom(), 490.0);
        window_->clickLegend(falling, "min");
        window_->zoomer().zoom(view_);
        window_->vertical().click();
        QCOMPARE(window_->shown().bottom(), 60.0);
    }

    void theVerticalAutoScaleOfTimesWithoutPointsDoesNothing() {
        window_->zoom(start + 200, start + 300, 20, 50);
        QSignalSpy zoomed(&window_->zoomer(), SIGNAL(zoomed(QRectF)));
        window_->vertical().click();
        QVERIFY(zoomed.isEmpty());
        QCOMPARE(window_->shown(), QRectF(start + 200, 20, 100, 30));
    }

    void aScaleThatIsShownAlreadyIsNotPushedAgain() {
        window_->full().click();
        const QVector<QRectF> history = window_->stack();
        window_->full().click();
        window_->horizontal().click();
        window_->vertical().click();
        QCOMPARE(window_->stack(), history);
        QCOMPARE(window_->index(), 2);
        QCOMPARE(window_->yTexts(), "-10 to 500");
    }

    void aHorizontalScaleThatIsShownAlreadyStillLoadsThePointsOfItsWindow() {
        data_->add(longBlock());
        PlotWindow window(*data_, "LONG:DATA:X");
        window.zoom(start + 10, start + 20, 0, 50);
        window.horizontal().click();
        const std::size_t all = window.series("LONG:DATA:X").size();
        window.horizontal().click();
        QCOMPARE(window.series("LONG:DATA:X").size(), all);
        QCOMPARE(window.series("LONG:DATA:X").window().low, window.shown().left());
    }

    void theScalesCanBeUndoneAndRedone() {
        window_->full().click();
        window_->previous().click();
        QCOMPARE(window_->shown(), view_);
        QCOMPARE(window_->series(rising).size(), std::size_t{51});
        window_->next().click();
        QCOMPARE(window_->shown(), all_);
        QCOMPARE(window_->series(rising).size(), std::size_t{100});
    }

    void theEditsOfTheUserAreLeftAlone() {
        window_->enterYRange("1", "2");
        for (QToolButton *button : {&window_->full(), &window_->horizontal(), &window_->vertical()}) {
            button->click();
            QCOMPARE(window_->yTexts(), "1 to 2");
        }
    }

    void theRightAxisShowsItsVariablesAsAWhole() {
        const auto rightAxis = [this] { return window_->plot().axisScaleDiv(QwtPlot::yRight).interval(); };
        const QwtInterval whole = rightAxis();
        QVERIFY(whole.contains(-10) && whole.contains(89));
        window_->zoom(start + 1000, start + 1010, 20, 50);
        QCOMPARE(rightAxis(), whole);
        window_->full().click();
        QCOMPARE(rightAxis(), whole);
    }

private:
    void hide(const std::string &key) const { setShown(key, false); }
    void show(const std::string &key) const { setShown(key, true); }
    void setShown(const std::string &key, bool shown) const {
        for (const char *selector : {"", "max", "min"}) {
            if (window_->curve(key, selector).isVisible() != shown) {
                window_->clickLegend(key, selector);
            }
        }
    }

    const QRectF view_{start + 10, 20, 50, 30};
    const QRectF all_{start, -10, 1099, 510};
    std::optional<PlotData> data_;
    std::optional<PlotWindow> window_;
};

QTEST_MAIN(PlotDialogAutoScaleTest)
#include "PlotDialogAutoScaleTest.moc"

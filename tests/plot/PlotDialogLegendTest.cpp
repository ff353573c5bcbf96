#include "plot/PlotPixels.h"
#include "plot/PlotWindowTest.h"

#include <QSignalSpy>

namespace {

const std::string rising = "GA:DATA:X";
const std::string falling = "GA:DATA:Y";
const double start = plotStart;
const char *const selectors[] = {"", "max", "min"};

} // namespace

class PlotDialogLegendTest : public PlotWindowTest {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        PlotWindowTest::init();
        QVERIFY(window_->drop(QString::fromStdString(falling)));
        QCOMPARE(window_->stack(), (QVector<QRectF>{all_}));
    }

    void everyCurveHasACheckedEntryWithItsText() {
        QStringList texts;
        for (const QwtPlotItem *item : window_->plot().itemList(QwtPlotItem::Rtti_PlotCurve)) {
            const QwtLegendLabel &label = window_->label(*static_cast<const QwtPlotCurve *>(item));
            QVERIFY(label.isChecked());
            QCOMPARE(label.itemMode(), QwtLegendData::Checkable);
            texts += label.text().text();
        }
        QCOMPARE(texts, (QStringList{"GA:DATA:X", "MAX", "MIN", "GA:DATA:Y", "MAX", "MIN"}));
    }

    void aCurveIsHiddenAndTheValuesOfTheOthersFillTheView() {
        hideAllOf(falling);
        QVERIFY(!window_->curve(falling).isVisible());
        QVERIFY(!window_->label(window_->curve(falling)).isChecked());
        QVERIFY(window_->curve(rising).isVisible());
        QCOMPARE(window_->shown(), QRectF(start, 0, 99, 99));
        QCOMPARE(window_->yTexts(), "0 to 99");
        QCOMPARE(window_->stack().size(), 2);
        QVERIFY(window_->full().isEnabled());
    }

    void aCurveIsShownAgainAndTheViewIsScaledAgain() {
        hideAllOf(falling);
        window_->clickLegend(falling);
        QVERIFY(window_->curve(falling).isVisible());
        QVERIFY(window_->label(window_->curve(falling)).isChecked());
        QCOMPARE(window_->shown(), all_);
        QCOMPARE(window_->stack().size(), 3);
    }

    void hidingKeepsTheTimesInView() {
        window_->zoom(start + 10, start + 20, 0, 300);
        hideAllOf(rising);
        QCOMPARE(window_->shown(), QRectF(start + 10, 480, 10, 10));
    }

    void hidingOneOfThreeStatisticsChangesNoScaleOfRecords() {
        QSignalSpy zoomed(&window_->zoomer(), SIGNAL(zoomed(QRectF)));
        window_->clickLegend(falling, "max");
        QVERIFY(!window_->curve(falling, "max").isVisible());
        QVERIFY(zoomed.isEmpty());
        QCOMPARE(window_->shown(), all_);
    }

    void theLastVisibleCurveCannotBeHidden() {
        hideAllOf(falling);
        window_->clickLegend(rising, "max");
        window_->clickLegend(rising, "min");
        const QVector<QRectF> history = window_->stack();
        window_->clickLegend(rising);
        QVERIFY(window_->curve(rising).isVisible());
        QVERIFY(window_->label(window_->curve(rising)).isChecked());
        QCOMPARE(window_->stack(), history);
        window_->clickLegend(rising);
        QVERIFY(window_->curve(rising).isVisible());
    }

    void anotherCurveCanBeHiddenOnceTheLastHasCompany() {
        hideAllOf(falling);
        window_->clickLegend(rising, "max");
        window_->clickLegend(rising, "min");
        window_->clickLegend(falling, "max");
        window_->clickLegend(rising);
        QVERIFY(!window_->curve(rising).isVisible());
        QCOMPARE(window_->shown(), QRectF(start, 401, 99, 99));
    }

    void aHiddenCurveIsNotDrawnAndKeepsItsEntry() {
        QVERIFY(window_->show());
        const auto inked = [this](const QColor &colour) {
            return !inkedColumns(window_->canvas().grab().toImage(), colour).isEmpty();
        };
        QVERIFY(inked(Qt::red) && inked(Qt::blue));
        hideAllOf(falling);
        QVERIFY(inked(Qt::red) && !inked(Qt::blue));
        QVERIFY(window_->label(window_->curve(falling)).isVisible());
        window_->clickLegend(falling);
        QVERIFY(inked(Qt::red) && inked(Qt::blue));
    }

    void hiddenCurvesFollowTheWindow() {
        hideAllOf(falling);
        window_->zoom(start + 10, start + 20, 0, 300);
        QCOMPARE(window_->series(falling).size(), std::size_t{11});
    }

    void aVariableWithoutANumberIsHiddenWithoutAnyScaling() {
        data_->add({"NAN", "X", 5, [](int) { return "nan"; }});
        QVERIFY(window_->drop("NAN:DATA:X"));
        QSignalSpy zoomed(&window_->zoomer(), SIGNAL(zoomed(QRectF)));
        window_->clickLegend("NAN:DATA:X");
        QVERIFY(!window_->curve("NAN:DATA:X").isVisible());
        hideAllOf(rising);
        hideAllOf(falling);
        zoomed.clear();
        window_->clickLegend("NAN:DATA:X");
        QVERIFY(zoomed.isEmpty());
        QVERIFY(window_->curve("NAN:DATA:X").isVisible());
    }

    void anEntryOfNoCurveIsIgnored() {
        QSignalSpy zoomed(&window_->zoomer(), SIGNAL(zoomed(QRectF)));
        window_->dialog().OnLegendChecked(QVariant(), false, 0);
        const QwtPlotItemList grids = window_->plot().itemList(QwtPlotItem::Rtti_PlotGrid);
        window_->dialog().OnLegendChecked(window_->plot().itemToInfo(grids.first()), false, 0);
        QVERIFY(grids.first()->isVisible());
        QVERIFY(zoomed.isEmpty());
    }

private:
    void hideAllOf(const std::string &key) const {
        for (const char *selector : selectors) {
            window_->clickLegend(key, selector);
        }
    }

    const QRectF all_{start, 0, 99, 500};
};

QTEST_MAIN(PlotDialogLegendTest)
#include "PlotDialogLegendTest.moc"

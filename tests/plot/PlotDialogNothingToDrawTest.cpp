#include "plot/PlotPicture.h"
#include "plot/PlotPixels.h"
#include "plot/PlotWindow.h"

#include <QPainter>

#include <limits>

namespace {

const double start = plotStart;
using Side = TimeSeriesPlot::Side;

// Records with these texts as their only value, one a second.
PlotBlock blockOf(const std::string &instrument, const std::vector<std::string> &values) {
    return {instrument, "X", static_cast<int>(values.size()),
            [values](int i) { return values[static_cast<std::size_t>(i)]; }};
}

// Two hours, shown by averages of a minute: numbers from 100 to 105, and none in the second half hour.
PlotBlock averagedBlock() {
    PlotBlock block{"AVG", "X", 7200,
                    [](int i) { return i / 1800 == 1 ? std::string("nan") : std::to_string(100 + i % 6); }};
    return block;
}

} // namespace

// Points that cannot be drawn, and windows without any that can.
class PlotDialogNothingToDrawTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { data_.emplace(); }

    void aVariableWithoutAnyNumberIsShownOverItsTimeFrom0To1_data() {
        QTest::addColumn<QString>("value");
        QTest::newRow("not a number") << "nan";
        QTest::newRow("infinity") << "inf";
        QTest::newRow("minus infinity") << "-inf";
    }
    void aVariableWithoutAnyNumberIsShownOverItsTimeFrom0To1() {
        QFETCH(QString, value);
        data_->add(blockOf("GA", std::vector<std::string>(30, value.toStdString())));
        PlotWindow window(*data_, "GA:DATA:X");
        QCOMPARE(window.stack(), (QVector<QRectF>{QRectF(start, 0, 29, 1)}));
        QCOMPARE(window.yTexts(), "0 to 1");
        QCOMPARE(window.series("GA:DATA:X").size(), std::size_t{30});
        QCOMPARE(inkOf(window, Qt::red), ColumnRanges());
    }

    void aVariableThatNobodyKnowsIsShownAsAnEmptySecond() {
        PlotWindow window(*data_, "nobody:knows:this");
        QCOMPARE(window.stack(), (QVector<QRectF>{QRectF(0, 0, 1, 1)}));
        QCOMPARE(window.series("nobody:knows:this").window().high, 1.0);
        QCOMPARE(inkOf(window, Qt::red), ColumnRanges());
        QCOMPARE(window.usableButtons(), "");
    }

    void theFirstRealVariableInAnEmptyWindowIsShownAlone() {
        data_->add(shortBlock());
        PlotWindow window(*data_, "nobody:knows:this");
        QVERIFY(window.drop("GA:DATA:Y"));
        QCOMPARE(window.stack(), (QVector<QRectF>{QRectF(start, 401, 99, 99)}));
        QCOMPARE(window.shown(), QRectF(start, 401, 99, 99));
        QCOMPARE(window.yTexts(), "401 to 500");
    }

    void aVariableWithoutAnyNumberWidensNothing() {
        data_->add(shortBlock());
        PlotBlock block = blockOf("NAN", {"nan", "inf"});
        block.first = plotStart + 5000;
        data_->add(block);
        PlotWindow window(*data_, "GA:DATA:X");
        const QVector<QRectF> history = window.stack();
        QVERIFY(window.drop("NAN:DATA:X"));
        QVERIFY(window.drop("nobody:knows:this"));
        QCOMPARE(window.stack(), history);
        window.zoom(start + 10, start + 20, 0, 50);
        window.full().click();
        QCOMPARE(window.shown(), history.first());
        window.horizontal().click();
        window.vertical().click();
        QCOMPARE(window.shown(), history.first());
    }

    void aVariableWithoutAnyNumberOnTheRightAxisLeavesItsScaleAlone() {
        data_->add(shortBlock());
        data_->add(blockOf("NAN", {"nan", "inf"}));
        PlotWindow window(*data_, "GA:DATA:X");
        QVERIFY(window.drop("GA:DATA:Y", Side::right));
        const QwtInterval before = window.plot().axisScaleDiv(QwtPlot::yRight).interval();
        QVERIFY(window.drop("NAN:DATA:X", Side::right));
        QCOMPARE(window.plot().axisScaleDiv(QwtPlot::yRight).interval(), before);
        PlotWindow other(*data_, "GA:DATA:X");
        QVERIFY(other.drop("NAN:DATA:X", Side::right));
        QVERIFY(std::isfinite(other.plot().axisScaleDiv(QwtPlot::yRight).range()));
        QVERIFY(other.show());
    }

    void notANumberAndInfinitiesDoNotCountForTheBase() {
        data_->add(blockOf("GA", {"nan", "3", "inf", "-2", "-inf", "1", "nan"}));
        PlotWindow window(*data_, "GA:DATA:X");
        QCOMPARE(window.stack(), (QVector<QRectF>{QRectF(start, -2, 6, 5)}));
    }

    void theVerticalAutoScaleLeavesThemOut() {
        data_->add(blockOf("GA", {"0", "100", "3", "nan", "inf", "5", "-inf", "7"}));
        PlotWindow window(*data_, "GA:DATA:X");
        window.zoom(start + 2, start + 6, 0, 100);
        window.vertical().click();
        QCOMPARE(window.shown(), QRectF(start + 2, 3, 4, 2));
    }

    void theLineHasAGapWhereAPointCannotBeDrawn() {
        std::vector<std::string> values(41, "5");
        values[0] = "0";
        values[40] = "10";
        for (int i = 10; i < 20; ++i) {
            values[static_cast<std::size_t>(i)] = i % 2 == 0 ? "nan" : "inf";
        }
        values[30] = "-inf";
        data_->add(blockOf("GA", values));
        PlotWindow window(*data_, "GA:DATA:X");
        const auto ranges = inkOf(window, Qt::red);
        QCOMPARE(ranges.size(), 3);
        const auto x = [&window](int second) {
            return qRound(window.plot().transform(QwtPlot::xBottom, start + second));
        };
        QVERIFY(qAbs(ranges[0].second - x(9)) <= 1);
        QVERIFY(qAbs(ranges[1].first - x(20)) <= 1);
        QVERIFY(qAbs(ranges[1].second - x(29)) <= 1);
        QVERIFY(qAbs(ranges[2].first - x(31)) <= 1);
    }

    void aPointBetweenTwoGapsIsADot() {
        data_->add(blockOf("GA", {"0", "1", "nan", "4", "nan", "2", "1"}));
        PlotWindow window(*data_, "GA:DATA:X");
        const auto ranges = inkOf(window, Qt::red);
        QCOMPARE(ranges.size(), 3);
        QVERIFY(ranges[1].second - ranges[1].first <= 4);
        const double middle = window.plot().transform(QwtPlot::xBottom, start + 3);
        QVERIFY(ranges[1].first <= middle && middle <= ranges[1].second + 1);
    }

    void periodsWithoutANumberDrawNoLineToTheirStartValues() {
        data_->add(averagedBlock());
        PlotWindow window(*data_, "AVG:DATA:X");
        QCOMPARE(window.stack().first().top(), 100.0);
        QCOMPARE(window.stack().first().height(), 5.0);
        const double largest = std::numeric_limits<double>::max();
        const auto &lowest = window.series("AVG:DATA:X", "min").values();
        QVERIFY(std::count(lowest.begin(), lowest.end(), largest) > 25);
        for (const char *selector : {"max", "min"}) {
            window.clickLegend("AVG:DATA:X", selector);
        }
        // The average is not a number where any record is not.
        QCOMPARE(inkOf(window, Qt::red).size(), 2);
        window.clickLegend("AVG:DATA:X", "max");
        window.clickLegend("AVG:DATA:X", "min");
        QCOMPARE(window.shown(), window.stack().first());
        const double from = window.plot().transform(QwtPlot::xBottom, start + 1900);
        const double to = window.plot().transform(QwtPlot::xBottom, start + 3500);
        for (const auto &[first, last] : inkOf(window, Qt::red)) {
            QVERIFY2(last < from || first > to, "a line through the half hour without numbers");
        }
    }

    void aSingleRecordIsADotInTheMiddle() {
        data_->add(blockOf("GA", {"8"}));
        PlotWindow window(*data_, "GA:DATA:X");
        QCOMPARE(window.stack(), (QVector<QRectF>{QRectF(start - 0.5, 4, 1, 8)}));
        const auto ranges = inkOf(window, Qt::red);
        QCOMPARE(ranges.size(), 1);
        QVERIFY(qAbs(ranges[0].first - window.canvas().width() / 2) < 5);
        QVERIFY(ranges[0].second - ranges[0].first <= 4);
    }

    void aConstantIsALineInTheMiddle() {
        data_->add(blockOf("GA", std::vector<std::string>(20, "-3")));
        data_->add(blockOf("ZERO", std::vector<std::string>(20, "0")));
        PlotWindow window(*data_, "GA:DATA:X");
        QCOMPARE(window.stack(), (QVector<QRectF>{QRectF(start, -4.5, 19, 3)}));
        QCOMPARE(inkOf(window, Qt::red).size(), 1);
        QCOMPARE(PlotWindow(*data_, "ZERO:DATA:X").stack(), (QVector<QRectF>{QRectF(start, -0.5, 19, 1)}));
    }

    void aViewWithoutPointsSaysHowToSeeEverything() {
        data_->add(shortBlock());
        PlotWindow window(*data_, "GA:DATA:X");
        QVERIFY(isWritten(window, ""));
        window.zoom(start + 200, start + 300, 0, 50);
        QVERIFY(isWritten(window, "Nothing to draw in this view: click the right button to see everything"));
        window.previous().click();
        QVERIFY(isWritten(window, ""));
    }

    void aWindowWithoutAnyNumberSaysThatThereIsNone() {
        data_->add(blockOf("GA", {"nan", "inf", "-inf"}));
        data_->add(shortBlock("GB"));
        PlotWindow window(*data_, "GA:DATA:X");
        QVERIFY(isWritten(window, "Nothing to draw: there is no value"));
        PlotWindow unknown(*data_, "nobody:knows:this");
        QVERIFY(isWritten(unknown, "Nothing to draw: there is no value"));
        QVERIFY(window.drop("GB:DATA:X"));
        QVERIFY(isWritten(window, ""));
    }

    void recordsThatAreTooFewForAnAverageAreToBeSeenAlone() {
        PlotBlock block = blockOf("GA", {"7"});
        data_->addText("monday", textOf(block));
        block.first += 86400;
        data_->addText("tuesday", textOf(block));
        PlotWindow window(*data_, "GA:DATA:X");
        QVERIFY(isWritten(window, "Nothing to draw in this view: draw a rectangle to see single records"));
        window.zoom(start - 1000, start + 1000, 0, 10);
        QVERIFY(isWritten(window, ""));
    }

    void curvesThatAreHiddenDoNotCount() {
        data_->add(shortBlock());
        data_->add(blockOf("NAN", {"nan", "nan"}));
        PlotWindow window(*data_, "GA:DATA:X");
        QVERIFY(window.drop("NAN:DATA:X"));
        for (const char *selector : {"", "max", "min"}) {
            window.clickLegend("GA:DATA:X", selector);
        }
        QVERIFY(window.plot().hasNothingToDraw());
        window.clickLegend("GA:DATA:X");
        QVERIFY(isWritten(window, ""));
    }

    void picturesDoNotHaveTheHint() {
        data_->add(shortBlock());
        PlotWindow window(*data_, "GA:DATA:X");
        QVERIFY(window.show());
        window.zoom(start + 200, start + 300, 0, 50);
        const QImage with = pictureOf(window.plot(), {400, 300});
        window.plot().setEmptyHint({});
        QCOMPARE(with, pictureOf(window.plot(), {400, 300}));
    }

    void aConstantInViewIsScaledAroundItself() {
        data_->add(blockOf("GA", {"0", "10", "10", "10", "20"}));
        PlotWindow window(*data_, "GA:DATA:X");
        window.zoom(start + 1, start + 3, 0, 20);
        window.vertical().click();
        QCOMPARE(window.shown(), QRectF(start + 1, 5, 2, 10));
    }

private:
    // Columns of the canvas that show the colour.
    static ColumnRanges inkOf(PlotWindow &window, const QColor &colour) {
        return window.show() ? inkedColumns(window.canvas().grab().toImage(), colour)
                             : ColumnRanges{{-1, -1}};
    }

    // Whether the canvas looks as it does with just this text in its middle.
    static bool isWritten(PlotWindow &window, const QString &text) {
        if (!window.show()) {
            return false;
        }
        window.plot().replot();
        const QImage shown = window.canvas().grab().toImage();
        window.plot().setEmptyHint({});
        window.plot().replot();
        QImage expected = window.canvas().grab().toImage();
        QPainter painter(&expected);
        painter.setPen(window.plot().palette().color(QPalette::PlaceholderText));
        painter.setFont(window.plot().font());
        painter.drawText(window.canvas().contentsRect().adjusted(12, 12, -12, -12),
                         Qt::AlignCenter | Qt::TextWordWrap, text);
        return shown == expected;
    }

    std::optional<PlotData> data_;
};

QTEST_MAIN(PlotDialogNothingToDrawTest)
#include "PlotDialogNothingToDrawTest.moc"

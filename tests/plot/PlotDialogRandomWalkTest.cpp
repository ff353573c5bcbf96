#include "data/Record.h"
#include "plot/PlotWindow.h"
#include "support/RandomNumbers.h"

#include <array>

namespace {

using Side = TimeSeriesPlot::Side;

// Each is shown at another level at its base: records, averages of a minute, averages of half an hour. Some
// have gaps, infinities and periods without a number.
const std::vector<QString> keys{"GA:DATA:X",  "GA:DATA:Y",    "LONG:DATA:X",      "WEEKS:DATA:X",
                                "NAN:DATA:X", "HOLES:DATA:X", "nobody:knows:this"};

PlotBlock weeksBlock() {
    PlotBlock block{"WEEKS", "X", 8000,
                    [](int i) { return std::to_string(i % 97 - 40) + '.' + std::to_string(i % 10); }};
    block.first = plotStart - 1'000'000;
    block.step = 300;
    return block;
}

PlotBlock holesBlock() {
    PlotBlock block{"HOLES", "X", 9000, [](int i) {
                        if (i / 300 % 3 == 1) {
                            return std::string("nan");
                        }
                        return i % 501 == 0 ? std::string("inf") : std::to_string(1000 - i % 60);
                    }};
    block.first = plotStart + 3000;
    return block;
}

bool isSame(const std::vector<double> &left, const std::vector<double> &right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); });
}

// Random use of a window, and what must hold after each action.
class Walk {
public:
    Walk(const PlotData &data, std::uint64_t seed)
        : data_(data), random_(seed), window_(data, keys[random_.below(4)]) {
        window_.dialog().show();
        edited_ = window_.zoomer().zoomRect();
    }

    // Does something and gives its name.
    QString act() {
        const QVector<QRectF> stack = window_.stack();
        const int index = window_.index();
        writesRange_ = false;
        const QString action = actOnce();
        const bool isMoved = window_.stack() != stack || window_.index() != index;
        if (action == "drop") {
            edited_ = window_.stack().first() == stack.first() ? edited_ : window_.stack().first();
        } else if (isMoved || writesRange_) {
            edited_ = window_.zoomer().zoomRect();
        }
        return action;
    }

    // What is wrong, or an empty text.
    QString problem() const {
        for (const QString &found :
             {scaleProblem(), pointsProblem(), buttonProblem(), legendProblem(), editProblem()}) {
            if (!found.isEmpty()) {
                return found;
            }
        }
        return window_.dialog().grab().isNull() ? "nothing was drawn" : "";
    }

private:
    QString actOnce() {
        PlotDialog &dialog = window_.dialog();
        switch (random_.below(12)) {
        case 0:
        case 1:
        case 2:
            zoomSomewhere();
            return "zoom";
        case 3:
        case 4:
            dialog.OnZoomLeft();
            return "back";
        case 5:
            dialog.OnZoomRight();
            return "next";
        case 6:
            dialog.OnAutoScaleFull();
            writesRange_ = true;
            return "full";
        case 7:
            dialog.OnAutoScaleHorizontal();
            writesRange_ = true;
            return "horizontal";
        case 8:
            dialog.OnAutoScaleVertical();
            writesRange_ = showsNumbers();
            return "vertical";
        case 9:
            toggleSomeCurve();
            return "hide or show";
        case 10:
            enterSomeYRange();
            return "Y range";
        default:
            window_.drop(random_.pick(keys), random_.oneIn(3) ? Side::right : Side::left);
            return "drop";
        }
    }

    void zoomSomewhere() {
        const QRectF view = window_.shown();
        const std::array<double, 4> parts{0.9, 0.3, 0.05, 0.001};
        const double width = std::max(view.width() * random_.pick(parts), 0.01);
        const double height = std::max(view.height() * random_.pick(parts), 1e-6);
        window_.zoomer().zoom(QRectF(view.left() + fraction() * (view.width() - width),
                                     view.top() + fraction() * (view.height() - height), width, height));
    }
    void toggleSomeCurve() {
        const auto &[key, entry] = random_.pick(window_.plot().entries());
        const bool wasVisible = entry.curve->isVisible();
        window_.clickLegend(key.first, key.second);
        writesRange_ = entry.curve->isVisible() != wasVisible && showsNumbers();
    }
    bool showsNumbers() const {
        return !window_.plot().loadedRange(TimeSeriesPlot::Curves::visible).isEmpty();
    }
    void enterSomeYRange() {
        // Rarely, because the edits then hold the user's range for good.
        if (random_.oneIn(8)) {
            window_.enterYRange(QString::number(random_.between(-50, 50)),
                                QString::number(0.25 * static_cast<double>(random_.between(-50, 600))));
            userHasEntered_ = true;
        }
        window_.yRange().click();
    }
    double fraction() { return static_cast<double>(random_.below(1001)) / 1000; }

    QString scaleProblem() const {
        const QRectF rect = window_.zoomer().zoomRect();
        const QRectF shown = window_.shown();
        for (const double bound : {shown.left(), shown.right(), shown.top(), shown.bottom()}) {
            if (!std::isfinite(bound)) {
                return "a scale is not finite";
            }
        }
        if (!(shown.width() > 0) || !(shown.height() > 0)) {
            return "a scale has no width";
        }
        const QwtScaleDiv &times = window_.plot().axisScaleDiv(QwtPlot::xBottom);
        const QwtScaleDiv &values = window_.plot().axisScaleDiv(QwtPlot::yLeft);
        const bool isZoomRect = times.lowerBound() == rect.left() && times.upperBound() == rect.right() &&
                                values.lowerBound() == rect.top() && values.upperBound() == rect.bottom();
        if (!isZoomRect) {
            return "the axes do not show the zoomer's rectangle";
        }
        const QwtScaleDiv &right = window_.plot().axisScaleDiv(QwtPlot::yRight);
        return std::isfinite(right.range()) ? "" : "the right axis is not finite";
    }

    // Every series holds what its window asks for: everything at the base.
    QString pointsProblem() const {
        const bool isAtBase = window_.index() == 0;
        const QRectF rect = window_.zoomer().zoomRect();
        for (const auto &[key, entry] : window_.plot().entries()) {
            const QString name = QString::fromStdString(key.first + ' ' + key.second);
            const auto asked =
                data_.set.seriesOf({{key.first, key.second}}, isAtBase ? wholeRangeStart : rect.left(),
                                   isAtBase ? wholeRangeEnd : rect.right(), ShortBlocks::atAFinerLevel);
            const std::vector<double> &times = *asked.front().times;
            const std::vector<double> &values = *asked.front().values;
            if (!isSame(entry.series->times(), times) || !isSame(entry.series->values(), values)) {
                return name + " holds other points than its window";
            }
            if (entry.curve->dataSize() != values.size()) {
                return name + "'s curve has other points than its series";
            }
            const Extent &window = entry.series->window();
            if (!isAtBase && (window.low != rect.left() || window.high != rect.right())) {
                return name + " was asked for another window";
            }
        }
        return "";
    }

    QString buttonProblem() const {
        QStringList usable;
        if (window_.index() != 0) {
            usable += "previous";
        }
        if (window_.index() < window_.stack().size() - 1) {
            usable += "next";
        }
        if (window_.index() != 0) {
            usable += "full horizontal vertical";
        }
        return window_.usableButtons() == usable.join(' ') ? "" : "usable: " + window_.usableButtons();
    }

    QString legendProblem() const {
        bool isAnyVisible = false;
        for (const auto &[key, entry] : window_.plot().entries()) {
            isAnyVisible = isAnyVisible || entry.curve->isVisible();
            if (window_.label(*entry.curve).isChecked() != entry.curve->isVisible()) {
                return "an entry is checked but its curve is hidden, or the other way round";
            }
        }
        return isAnyVisible ? "" : "every curve is hidden";
    }

    QString editProblem() const {
        if (userHasEntered_) {
            return "";
        }
        const QString expected =
            QString::number(edited_.top(), 'g', 6) + " to " + QString::number(edited_.bottom(), 'g', 6);
        return window_.yTexts() == expected ? "" : "edits: " + window_.yTexts() + " but not " + expected;
    }

    const PlotData &data_;
    RandomNumbers random_;
    PlotWindow window_;
    bool userHasEntered_ = false;
    bool writesRange_ = false; // the last action, also when the view stayed
    QRectF edited_;            // whose range the edits hold
};

} // namespace

class PlotDialogRandomWalkTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        data_.emplace();
        for (const PlotBlock &block : {shortBlock(), longBlock(), weeksBlock(), holesBlock()}) {
            data_->add(block);
        }
        data_->add({"NAN", "X", 50, [](int) { return std::string("nan"); }});
    }

    // FVQA_WALK_SEED repeats one walk or tries another.
    void zoomRectangleCurvesAndControlsAgreeAfterEveryAction_data() {
        QTest::addColumn<quint64>("seed");
        if (qEnvironmentVariableIsSet("FVQA_WALK_SEED")) {
            QTest::newRow("seed of the environment") << qEnvironmentVariable("FVQA_WALK_SEED").toULongLong();
            return;
        }
        for (const quint64 seed : {1U, 2U, 3U, 4U}) {
            QTest::addRow("seed %llu", seed) << seed;
        }
    }
    void zoomRectangleCurvesAndControlsAgreeAfterEveryAction() {
        QFETCH(quint64, seed);
        qInfo("seed %llu", seed);
        Walk walk(*data_, seed);
        QStringList actions;
        for (int i = 0; i < 200; ++i) {
            actions += walk.act();
            const QString problem = walk.problem();
            QVERIFY2(problem.isEmpty(), qPrintable(problem + " after " + actions.join(", ")));
        }
    }

private:
    std::optional<PlotData> data_;
};

QTEST_MAIN(PlotDialogRandomWalkTest)
#include "PlotDialogRandomWalkTest.moc"

#include "plot/PlotPixels.h"
#include "plot/PlotWindow.h"

#include <QSignalSpy>

namespace {

const QString rising = "GA:DATA:X";  // 0 to 99
const QString falling = "GA:DATA:Y"; // 500 to 401
const QString within = "GA:DATA:Z";  // 20 to 30
const QString later = "GB:DATA:X";   // a thousand seconds later
const double start = plotStart;
using Side = TimeSeriesPlot::Side;

} // namespace

class PlotDialogDropTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        data_.emplace();
        data_->add({"GA", "X\tY\tZ", 100, [](int i) {
                        return std::to_string(i) + '\t' + std::to_string(500 - i) + '\t' +
                               std::to_string(20 + i % 11);
                    }});
        PlotBlock block = shortBlock("GB");
        block.first = plotStart + 1000;
        data_->add(block);
    }
    void init() { window_.emplace(*data_, rising); }
    void cleanup() { window_.reset(); }

    void onlyTextCanBeDropped() {
        QMimeData picture;
        picture.setImageData(QImage(2, 2, QImage::Format_RGB32));
        QMimeData file;
        file.setData("application/octet-stream", "GA:DATA:Y");
        const QMimeData nothing;
        for (const QMimeData *data : std::initializer_list<const QMimeData *>{&picture, &file, &nothing}) {
            QVERIFY(!window_->dropAt(*data, 10));
        }
        QCOMPARE(window_->plot().entries().size(), std::size_t{3});
        QVERIFY(window_->drop(falling));
        QCOMPARE(window_->plot().entries().size(), std::size_t{6});
    }

    void everyPartOfTheWindowTakesDrops() {
        for (const QWidget *part : window_->dialog().findChildren<QWidget *>()) {
            QVERIFY2(!part->acceptDrops(), part->metaObject()->className());
        }
        QVERIFY(window_->dialog().acceptDrops());
    }

    void droppingOnTheRightHalfEnablesTheRightAxisAndBindsTheThreeNewCurvesToIt() {
        QVERIFY(window_->drop(falling, Side::right));
        QVERIFY(window_->plot().axisEnabled(QwtPlot::yRight));
        for (const char *selector : {"", "max", "min"}) {
            QCOMPARE(window_->curve("GA:DATA:Y", selector).yAxis(), int(QwtPlot::yRight));
            QCOMPARE(window_->curve("GA:DATA:X", selector).yAxis(), int(QwtPlot::yLeft));
        }
    }

    void theMiddleOfTheWindowBelongsToTheLeftHalf() {
        QMimeData data;
        data.setText(falling);
        QVERIFY(window_->dropAt(data, window_->dialog().width() / 2));
        QVERIFY(!window_->plot().axisEnabled(QwtPlot::yRight));
        data.setText(within);
        QVERIFY(window_->dropAt(data, window_->dialog().width() / 2 + 1));
        QVERIFY(window_->plot().axisEnabled(QwtPlot::yRight));
    }

    void theNewCurvesAreDrawnInTheNextColourWithCheckedEntries() {
        QVERIFY(window_->drop(falling));
        QVERIFY(window_->drop(within));
        for (const char *selector : {"", "max", "min"}) {
            QCOMPARE(window_->curve("GA:DATA:Y", selector).pen().color(), QColor(Qt::blue));
            QCOMPARE(window_->curve("GA:DATA:Z", selector).pen().color(), QColor(Qt::magenta));
            QVERIFY(window_->label(window_->curve("GA:DATA:Z", selector)).isChecked());
        }
    }

    void theNewCurvesAreDrawnAtOnce() {
        QVERIFY(window_->show());
        const auto isInked = [this](const QColor &colour) {
            return !inkedColumns(window_->canvas().grab().toImage(), colour).isEmpty();
        };
        QVERIFY(isInked(Qt::red));
        QVERIFY(window_->drop(within));
        QVERIFY(isInked(Qt::blue));
        QVERIFY(window_->drop(falling));
        QVERIFY(isInked(Qt::magenta));
        window_->zoom(start + 10, start + 20, 0, 50);
        QVERIFY(window_->drop(later, Side::right));
        QVERIFY(window_->drop("GB:DATA:Y"));
        window_->previous().click();
        QVERIFY(isInked(Qt::darkYellow) && isInked(Qt::black));
    }

    void theEleventhVariableAddedGetsRedAgain() {
        for (int i = 2; i <= 11; ++i) {
            QVERIFY(window_->drop(QStringLiteral("variable %1").arg(i)));
        }
        QCOMPARE(window_->curve("variable 10").pen().color(), QColor(Qt::darkMagenta));
        QCOMPARE(window_->curve("variable 11").pen().color(), QColor(Qt::red));
    }

    void atTheBaseAWiderVariableMakesTheViewTheNewBase() {
        QSignalSpy zoomed(&window_->zoomer(), SIGNAL(zoomed(QRectF)));
        QVERIFY(window_->drop(later));
        const QRectF both(start, 0, 1099, 500);
        QCOMPARE(window_->stack(), (QVector<QRectF>{QRectF(start, 0, 1099, 99)}));
        QVERIFY(window_->drop(falling));
        QCOMPARE(window_->stack(), (QVector<QRectF>{both}));
        QCOMPARE(window_->index(), 0);
        QCOMPARE(window_->shown(), both);
        QCOMPARE(window_->yTexts(), "0 to 500");
        QCOMPARE(window_->usableButtons(), "");
        QCOMPARE(window_->series("GB:DATA:X").size(), std::size_t{100});
        QCOMPARE(window_->series("GA:DATA:X").size(), std::size_t{100});
    }

    void atTheBaseAVariableThatFitsChangesNeitherViewNorHistory() {
        window_->zoom(start, start + 20, 0, 10);
        window_->dialog().OnZoomLeft();
        const QVector<QRectF> history = window_->stack();
        QVERIFY(window_->drop(within));
        QCOMPARE(window_->stack(), history);
        QCOMPARE(window_->index(), 0);
        QCOMPARE(window_->shown(), history.first());
        QCOMPARE(window_->usableButtons(), "next");
        QCOMPARE(window_->series("GA:DATA:Z").size(), std::size_t{100});
    }

    void atTheBaseAWiderVariableForgetsTheZoomsAhead() {
        window_->zoom(start, start + 20, 0, 10);
        window_->dialog().OnZoomLeft();
        QVERIFY(window_->drop(falling));
        QCOMPARE(window_->stack().size(), 1);
        QCOMPARE(window_->usableButtons(), "");
    }

    void zoomedInAWiderVariableWidensTheBaseAndLeavesTheView() {
        const QRectF view(start + 10, 20, 50, 30);
        window_->zoom(start, start + 90, 0, 90);
        window_->zoomer().zoom(view);
        window_->dialog().OnZoomLeft();
        window_->dialog().OnZoomRight();
        QVERIFY(window_->drop(falling));
        QCOMPARE(window_->stack(), (QVector<QRectF>{QRectF(start, 0, 99, 500), view}));
        QCOMPARE(window_->index(), 1);
        QCOMPARE(window_->shown(), view);
        QCOMPARE(window_->yTexts(), "0 to 500");
        QCOMPARE(window_->usableButtons(), "previous full horizontal vertical");
        for (const char *key : {"GA:DATA:X", "GA:DATA:Y"}) {
            QCOMPARE(window_->series(key).size(), std::size_t{51});
            QCOMPARE(window_->series(key).window().low, start + 10);
        }
        window_->previous().click();
        QCOMPARE(window_->shown(), QRectF(start, 0, 99, 500));
    }

    void zoomedInAVariableThatFitsIsLoadedForTheViewAlone() {
        window_->zoom(start + 10, start + 60, 20, 50);
        const QVector<QRectF> history = window_->stack();
        QSignalSpy zoomed(&window_->zoomer(), SIGNAL(zoomed(QRectF)));
        QVERIFY(window_->drop(within, Side::right));
        QVERIFY(zoomed.isEmpty());
        QCOMPARE(window_->stack(), history);
        QCOMPARE(window_->yTexts(), "20 to 50");
        QCOMPARE(window_->usableButtons(), "previous full horizontal vertical");
        QCOMPARE(window_->series("GA:DATA:Z").size(), std::size_t{51});
    }

    void betweenTwoZoomsAVariableThatFitsKeepsTheNextOne() {
        window_->zoom(start, start + 90, 0, 90);
        window_->zoom(start + 10, start + 60, 20, 50);
        window_->dialog().OnZoomLeft();
        QVERIFY(window_->drop(within));
        QCOMPARE(window_->stack().size(), 3);
        QCOMPARE(window_->usableButtons(), "previous next full horizontal vertical");
    }

    void aVariableThatIsDroppedAgainReplacesItsCurves() {
        window_->zoom(start + 10, start + 60, 20, 50);
        QVERIFY(window_->drop(falling));
        QVERIFY(window_->drop(rising, Side::right));
        QCOMPARE(window_->series("GA:DATA:X").size(), std::size_t{51});
        QCOMPARE(window_->plot().itemList(QwtPlotItem::Rtti_PlotCurve).size(), 6);
        QCOMPARE(window_->plot().entries().size(), std::size_t{6});
        QCOMPARE(window_->curve("GA:DATA:X").yAxis(), int(QwtPlot::yRight));
        QCOMPARE(window_->curve("GA:DATA:X").pen().color(), QColor(Qt::magenta));
        QVERIFY(window_->show());
        QVERIFY(window_->dialog().grab().width() > 0);
        window_->clickLegend("GA:DATA:X");
        QVERIFY(!window_->curve("GA:DATA:X").isVisible());
        QVERIFY(window_->drop(rising));
        QVERIFY(window_->curve("GA:DATA:X").isVisible());
        QVERIFY(window_->dialog().grab().width() > 0);
    }

    void aTextThatIsNoVariableStillAddsItsCurvesWithoutPoints() {
        for (const char *text : {"no variable", "GA:DATA:absent", "::", "<b>bold</b>", "two\nlines"}) {
            QVERIFY(window_->drop(text));
            QCOMPARE(window_->series(text).size(), std::size_t{0});
            QCOMPARE(window_->label(window_->curve(text)).text().text(), text);
        }
        QCOMPARE(window_->plot().entries().size(), std::size_t{18});
        QCOMPARE(window_->stack(), (QVector<QRectF>{QRectF(start, 0, 99, 99)}));
        QVERIFY(window_->show());
        QVERIFY(window_->dialog().grab().width() > 0);
    }

    void aTextThatIsLongerThanAnyNameIsNotTaken() {
        QVERIFY(!window_->drop(QString(10'000'000, 'x')));
        QCOMPARE(window_->plot().entries().size(), std::size_t{3});
        QVERIFY(window_->drop(QString(1000, 'x')));
        QVERIFY(window_->show());
        QVERIFY(window_->dialog().grab().width() > 0);
    }

private:
    std::optional<PlotData> data_;
    std::optional<PlotWindow> window_;
};

QTEST_MAIN(PlotDialogDropTest)
#include "PlotDialogDropTest.moc"

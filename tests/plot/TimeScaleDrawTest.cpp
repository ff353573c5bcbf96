#include "plot/TimeScaleDraw.h"

#include "plot/AxisTimes.h"
#include "plot/TimeScaleEngine.h"

#include <QtTest>
#include <qwt_plot.h>
#include <qwt_plot_item.h>

#include <limits>

namespace {

// Keeps the texts that Qwt asked for, in that order; line feeds are written as "|".
class RecordingDraw : public TimeScaleDraw {
public:
    using TimeScaleDraw::TimeScaleDraw;

    QwtText label(double utcSeconds) const override {
        const QwtText text = TimeScaleDraw::label(utcSeconds);
        asked_.append(text.text().replace('\n', '|'));
        return text;
    }

    QStringList takeAsked() { return std::exchange(asked_, {}); }

private:
    mutable QStringList asked_;
};

// A plot on the screen whose bottom axis shows times. It gets its labels with its first times, so that they
// have never seen the axis that every plot begins with.
class TimePlot {
public:
    explicit TimePlot(const std::string &zoneName) : zone_(zoneNamed(zoneName)) {
        plot_.setAxisScaleEngine(QwtPlot::xBottom, new TimeScaleEngine(zone_));
        plot_.resize(700, 350);
        plot_.show();
    }

    void labelAxis() {
        draw_ = new RecordingDraw(zone_);
        plot_.setAxisScaleDraw(QwtPlot::xBottom, draw_);
    }

    QStringList labelsAfterZoom(double x1, double x2, double step = 0) {
        plot_.setAxisScale(QwtPlot::xBottom, x1, x2, step);
        if (draw_ == nullptr) {
            plot_.updateAxes();
            labelAxis();
        }
        return labelsOfNextPicture();
    }
    QStringList labelsAfterZoom(std::int64_t x1, std::int64_t x2) {
        return labelsAfterZoom(static_cast<double>(x1), static_cast<double>(x2));
    }

    QStringList labelsOfNextPicture() {
        plot_.replot();
        picture_ = plot_.grab().toImage();
        return draw_->takeAsked();
    }

    const QImage &picture() const { return picture_; }
    QwtPlot &plot() { return plot_; }

private:
    Timezone zone_;
    QwtPlot plot_;
    RecordingDraw *draw_ = nullptr; // the plot's
    QImage picture_;
};

// Something invisible that fills a plot from `x1` to `x2`.
class Extent : public QwtPlotItem {
public:
    Extent(double x1, double x2) : x1_(x1), x2_(x2) { setItemAttribute(AutoScale); }
    void draw(QPainter *, const QwtScaleMap &, const QwtScaleMap &, const QRectF &) const override {}
    QRectF boundingRect() const override { return {x1_, 0, x2_ - x1_, 1}; }

private:
    double x1_;
    double x2_;
};

bool showsInk(const QImage &picture, const QRect &area) {
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (qGray(picture.pixel(x, y)) < 96) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

class TimeScaleDrawTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void qwtAsksForTheFirstLabelThenTheLastThenThoseBetween() {
        TimePlot plot("UTC");
        QCOMPARE(
            plot.labelsAfterZoom(utc(2021, 3, 4, 13, 4), utc(2021, 3, 4, 13, 36, 30)),
            QStringList({"13:05|Mar 4|2021", "13:35|", "13:10|", "13:15|", "13:20|", "13:25|", "13:30|"}));
    }

    void aPictureOfTheSameScaleAsksForNoLabelAgain() {
        TimePlot plot("UTC");
        QVERIFY(!plot.labelsAfterZoom(utc(2021, 3, 4, 13, 4), utc(2021, 3, 4, 13, 36, 30)).isEmpty());
        QCOMPARE(plot.labelsOfNextPicture(), QStringList());
        plot.plot().resize(900, 400);
        QCOMPARE(plot.labelsOfNextPicture(), QStringList());
    }

    void eachZoomInAndBackDatesTheFirstLabelThatComesOutOfOrder() {
        TimePlot plot("UTC");
        const QStringList day{"Mar 4|2021", "18:00|", "06:00|", "12:00|"};
        QCOMPARE(plot.labelsAfterZoom(utc(2021, 3, 4), utc(2021, 3, 4, 23, 30)), day);
        const QStringList hour{"10:30|Mar 4|2021", "11:30|", "10:45|", "11:00|", "11:15|"};
        QCOMPARE(plot.labelsAfterZoom(utc(2021, 3, 4, 10, 20), utc(2021, 3, 4, 11, 40, 30)), hour);
        const QStringList minutes{"10:36|Mar 4|2021", "10:39|", "10:37|", "10:38|"};
        QCOMPARE(plot.labelsAfterZoom(utc(2021, 3, 4, 10, 35, 30), utc(2021, 3, 4, 10, 39, 30)), minutes);
        const QStringList seconds{"10:36:01|Mar 4|2021", "10:36:05|", "10:36:02|", "10:36:03|", "10:36:04|"};
        QCOMPARE(plot.labelsAfterZoom(utc(2021, 3, 4, 10, 36, 1), utc(2021, 3, 4, 10, 36, 6)), seconds);
        QCOMPARE(plot.labelsAfterZoom(utc(2021, 3, 4), utc(2021, 3, 4, 23, 30)), day);
    }

    void aZoomBehindTheLabelsBeforeLeavesTheDateToTheSecondLabel() {
        TimePlot plot("UTC");
        plot.labelsAfterZoom(utc(2021, 3, 4), utc(2021, 3, 4, 23, 30));
        // The labels of 06:00 and 12:00 came last, so 14:00 still looks like one of theirs.
        QCOMPARE(plot.labelsAfterZoom(utc(2021, 3, 4, 13, 10), utc(2021, 3, 4, 18, 50)),
                 QStringList({"14:00|", "18:00|", "15:00|Mar 4|2021", "16:00|", "17:00|"}));
    }

    void aDayChangeIsNamedAtMidnightAndOnTheLastLabel() {
        TimePlot plot("UTC");
        QCOMPARE(plot.labelsAfterZoom(utc(2021, 3, 4, 20), utc(2021, 3, 5, 6, 0, 30)),
                 QStringList({"20:00|Mar 4|2021", "06:00|Mar 5|", "22:00|", "Mar 5|", "02:00|", "04:00|"}));
    }

    void aYearChangeIsNamedWhereItFallsAndOnTheLastLabel() {
        TimePlot plot("UTC");
        QCOMPARE(plot.labelsAfterZoom(utc(2020, 12, 29), utc(2021, 1, 4, 12)),
                 QStringList(
                     {"Dec 29|2020", "Jan 4|2021", "Dec 30|", "Dec 31|", "Jan 1|2021", "Jan 2|", "Jan 3|"}));
    }

    void aZoneWithAHalfHourOffsetHasItsTicksOnItsOwnHours() {
        TimePlot plot("Asia/Kolkata");
        QCOMPARE(plot.labelsAfterZoom(utc(2021, 3, 4, 15), utc(2021, 3, 4, 22, 10)),
                 QStringList(
                     {"21:00|Mar 4|2021", "03:00|Mar 5|", "22:00|", "23:00|", "Mar 5|", "01:00|", "02:00|"}));
        QCOMPARE(plot.labelsAfterZoom(utc(2020, 10, 15), utc(2021, 4, 15)),
                 QStringList({"Nov 1|2020", "Apr 1|2021", "Dec 1|", "Jan 1|2021", "Feb 1|", "Mar 1|"}));
    }

    void aZoneWithAQuarterHourOffsetHasItsTicksOnItsOwnHours() {
        TimePlot plot("Asia/Kathmandu");
        QCOMPARE(plot.labelsAfterZoom(utc(2021, 3, 4, 4), utc(2021, 3, 4, 8, 20)),
                 QStringList({"10:00|Mar 4|2021", "14:00|", "11:00|", "12:00|", "13:00|"}));
    }

    void hoursAcrossSpringsChangeLeaveOutTheSkippedHour() {
        TimePlot plot("America/New_York");
        QCOMPARE(plot.labelsAfterZoom(utc(2021, 3, 14, 4, 30), utc(2021, 3, 14, 9, 30)),
                 QStringList({"Mar 14|2021", "05:00|", "01:00|", "03:00|", "04:00|"}));
    }

    void hoursAcrossAutumnsChangeShowTheRepeatedHourTwice() {
        TimePlot plot("Europe/Berlin");
        QCOMPARE(plot.labelsAfterZoom(utc(2021, 10, 30, 21, 50), utc(2021, 10, 31, 3, 10)),
                 QStringList({"Oct 31|2021", "04:00|", "01:00|", "02:00|", "02:00|", "03:00|"}));
    }

    void daysAcrossBothChangesAreNamedWithoutATime() {
        TimePlot plot("America/New_York");
        QCOMPARE(plot.labelsAfterZoom(utc(2021, 3, 12, 12), utc(2021, 3, 17)),
                 QStringList({"Mar 13|2021", "Mar 16|", "Mar 14|", "Mar 15|"}));
        QCOMPARE(plot.labelsAfterZoom(utc(2021, 11, 5, 12), utc(2021, 11, 10)),
                 // Later than all before: not recognised as a new axis.
                 QStringList({"Nov 6|", "Nov 9|", "Nov 7|2021", "Nov 8|"}));
    }

    void labelsAreWrittenBelowTheCanvasAndWithinThePlot() {
        TimePlot plot("UTC");
        plot.labelsAfterZoom(utc(2021, 3, 4, 13, 4), utc(2021, 3, 4, 13, 36, 30));
        const QRect canvas = plot.plot().canvas()->geometry();
        const QRect below(canvas.left(), canvas.bottom() + 10, canvas.width(),
                          plot.plot().height() - canvas.bottom() - 10);
        QVERIFY(showsInk(plot.picture(), below));
        QVERIFY(!showsInk(plot.picture(), QRect(0, plot.plot().height() - 1, plot.plot().width(), 1)));
    }

    void labelsThatHaveSeenAnotherAxisBeforeDateTheFirstTwo() {
        TimePlot plot("UTC");
        plot.labelAxis();
        QVERIFY(!plot.labelsOfNextPicture().isEmpty());
        QCOMPARE(plot.labelsAfterZoom(utc(2021, 3, 4), utc(2021, 3, 4, 23, 30)),
                 QStringList({"Mar 4|2021", "18:00|", "06:00|Mar 4|2021", "12:00|"}));
    }

    void thePlotsOwnScalingGoesThroughTheEngine() {
        TimePlot plot("Asia/Kolkata");
        QCOMPARE(plot.labelsAfterZoom(0.0, 200.0, 60.0),
                 QStringList({"05:30|Jan 1|1970", "05:33|", "05:31|", "05:32|"}));
        plot.plot().setAxisAutoScale(QwtPlot::xBottom);
        (new Extent(100, 700))->attach(&plot.plot());
        QCOMPARE(plot.labelsOfNextPicture(), QStringList({"05:30|Jan 1|1970", "05:40|", "05:35|"}));
        QCOMPARE(plot.plot().axisScaleDiv(QwtPlot::xBottom).interval(), QwtInterval(0, 900));
    }

    void anAxisOfNoNumbersIsDrawnWithoutLabels() {
        TimePlot plot("UTC");
        const double infinity = std::numeric_limits<double>::infinity();
        const double noNumber = std::numeric_limits<double>::quiet_NaN();
        for (const auto &[x1, x2] : std::initializer_list<std::pair<double, double>>{
                 {noNumber, noNumber}, {noNumber, 5}, {-infinity, infinity}, {-1e300, 1e300}, {5, 5}}) {
            QCOMPARE(plot.labelsAfterZoom(x1, x2), QStringList());
        }
    }

    void aLabelOfNoTimeIsNoMoreThanAStrangeDate() {
        const TimeScaleDraw draw(zoneNamed("Europe/Berlin"));
        for (const double value : {std::numeric_limits<double>::quiet_NaN(), 1e300, -1e300,
                                   std::numeric_limits<double>::infinity()}) {
            QVERIFY(!draw.label(value).text().isEmpty());
            QVERIFY(!draw.timeLabel(value).text().isEmpty());
        }
    }

    void aLabelIsThatOfTheWholeSecond() {
        const TimeScaleDraw draw(zoneNamed("UTC"));
        QCOMPARE(draw.label(static_cast<double>(utc(2021, 3, 4, 13, 5, 7)) + 0.999).text(),
                 QString("13:05:07\nMar 4\n2021"));
    }

    void theTimeOfDayAloneNeedsNoOtherLabelAndChangesNone() {
        const TimeScaleDraw draw(zoneNamed("UTC"));
        const auto first = static_cast<double>(utc(2021, 3, 4, 13, 5));
        QCOMPARE(draw.label(first).text(), QString("13:05\nMar 4\n2021"));
        QCOMPARE(draw.timeLabel(first - 7200).text(), QString("11:05"));
        QCOMPARE(draw.timeLabel(static_cast<double>(utc(2021, 3, 4))).text(), QString("Mar 4\n2021"));
        QCOMPARE(draw.label(first + 300).text(), QString("13:10\n"));
    }

    void theTimeOfDayAloneCanBeOverridden() {
        class Bare : public TimeScaleDraw {
        public:
            using TimeScaleDraw::TimeScaleDraw;
            QwtText timeLabel(double) const override { return QwtText("now"); }
        };
        const std::unique_ptr<TimeScaleDraw> draw = std::make_unique<Bare>(zoneNamed("UTC"));
        QCOMPARE(draw->timeLabel(0).text(), QString("now"));
    }
};

QTEST_MAIN(TimeScaleDrawTest)
#include "TimeScaleDrawTest.moc"

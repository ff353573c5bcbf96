// Whatever is zoomed into: the curves of a plot window hold every record between their highest and lowest
// values. The records come from the independent reader.

#include "independent/IndependentPeriods.h"
#include "independent/OddRecords.h"
#include "plot/PlotWindow.h"
#include "support/RandomNumbers.h"
#include "support/RunningCase.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <string>

namespace {

constexpr int fewSeeds = 3; // in the everyday suite

struct Points {
    std::vector<double> times;
    std::vector<double> values;
};

Points pointsOf(const QwtPlotCurve &curve) {
    Points points;
    for (int i = 0; i < static_cast<int>(curve.dataSize()); ++i) {
        points.times.push_back(curve.sample(i).x());
        points.values.push_back(curve.sample(i).y());
    }
    return points;
}

// What the window draws, held against the records.
class DrawnBounds {
public:
    DrawnBounds(const PlotWindow &window, const IndependentBlocks &blocks, const std::string &column)
        : blocks_(blocks), column_(column), key_("GA:DATA:" + column) {
        highest_ = pointsOf(window.curve(key_, "max"));
        lowest_ = pointsOf(window.curve(key_, "min"));
        if (window.index() == 0) {
            // The whole range is that of the records, whatever points it has.
            shown_ = {blocks.front()->firstTime(), latestTime(*blocks.back())};
        } else {
            shown_ = window.series(key_, "max").window();
        }
        span_ = shown_.high - shown_.low;
    }

    // Empty when all is well.
    QString problem() {
        if (highest_.times != lowest_.times) {
            return "the extremes have different times";
        }
        for (const auto &block : blocks_) {
            const auto name = std::find(block->valueNames.begin(), block->valueNames.end(), column_);
            if (name == block->valueNames.end()) {
                continue;
            }
            value_ = static_cast<std::size_t>(name - block->valueNames.begin());
            if (span_ <= 5000 ? !recordsAreDrawn(*block) : !isSomeLevelDrawn(*block)) {
                return QString("the block at %1 is drawn wrongly").arg(block->firstTime(), 0, 'f', 1);
            }
        }
        return next_ == highest_.times.size() ? QString() : "there are points of no block";
    }

    std::size_t checkedRecords() const { return checkedRecords_; }
    // Lengths of the periods that points were found for, s; 0 for records.
    const std::set<std::int64_t> &drawnLengths() const { return drawnLengths_; }

private:
    static double latestTime(const IndependentBlock &block) {
        double latest = 0;
        for (const IndependentRecord &record : block.records) {
            latest = std::max(latest, record.time());
        }
        return latest;
    }

    bool isShown(double time) const { return time >= shown_.low && time <= shown_.high; }

    bool holds(const IndependentRecord &record, std::size_t point) {
        const double value = record.values[value_];
        ++checkedRecords_;
        return std::isnan(value) || (lowest_.values[point] <= value && value <= highest_.values[point]);
    }

    // From the first record in view up to the first one behind it. Where the clock steps back, those between
    // may lie before the view, and those in view behind them are missing: that is no promise.
    bool recordsAreDrawn(const IndependentBlock &block) {
        const double begin = std::max(shown_.low, block.firstTime());
        const double end = std::min(shown_.high, latestTime(block));
        bool hasBegun = false;
        for (const IndependentRecord &record : block.records) {
            if (begin > end || record.time() > end) {
                break;
            }
            hasBegun = hasBegun || record.time() >= begin;
            if (!hasBegun) {
                continue;
            }
            if (next_ == highest_.times.size() || highest_.times[next_] != record.time() ||
                !holds(record, next_)) {
                return false;
            }
            ++next_;
            drawnLengths_.insert(0);
        }
        return true;
    }

    // The length of period that the span asks for, or a shorter one where the block is short.
    bool isSomeLevelDrawn(const IndependentBlock &block) {
        const IndependentPeriods periods(block);
        const std::size_t asked = span_ > 9000000 ? 3 : span_ > 1500000 ? 2 : span_ > 300000 ? 1 : 0;
        // Of a level too long for the block no point might be wanted, so the shortest comes first.
        for (std::size_t index = 0; index <= asked; ++index) {
            const std::size_t before = next_;
            if (isLevelDrawn(periods.points(index))) {
                if (next_ > before) {
                    drawnLengths_.insert(IndependentPeriods::lengths[index]);
                }
                return true;
            }
        }
        return false;
    }

    bool isLevelDrawn(const std::vector<IndependentPeriods::Point> &points) {
        std::size_t next = next_;
        for (const IndependentPeriods::Point &point : points) {
            const auto time = static_cast<double>(point.time);
            if (!isShown(time)) {
                continue;
            }
            if (next == highest_.times.size() || highest_.times[next] != time) {
                return false;
            }
            for (const IndependentRecord *record : point.records) {
                if (!holds(*record, next)) {
                    return false;
                }
            }
            ++next;
        }
        next_ = next;
        return true;
    }

    const IndependentBlocks &blocks_;
    std::string column_;
    std::string key_;
    Points highest_;
    Points lowest_;
    Extent shown_;
    double span_ = 0;
    std::size_t value_ = 0; // index of the column in the block
    std::size_t next_ = 0;  // the first point that no block has claimed
    std::size_t checkedRecords_ = 0;
    std::set<std::int64_t> drawnLengths_;
};

} // namespace

class PlotBoundsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void noRecordLiesOutsideOfTheDrawnExtremesAtAnyZoom_data();
    void noRecordLiesOutsideOfTheDrawnExtremesAtAnyZoom();
    void everyLengthOfPeriodWasLookedAt();
    void everyOddityWasLookedAt();

private:
    std::set<std::int64_t> drawnLengths_;
    std::set<std::string> oddities_;
};

void PlotBoundsTest::noRecordLiesOutsideOfTheDrawnExtremesAtAnyZoom_data() {
    QTest::addColumn<double>("days");
    QTest::newRow("an hour") << 0.04;
    QTest::newRow("a day") << 1.0;
    QTest::newRow("ten days") << 10.0;
    QTest::newRow("a month") << 40.0;
    QTest::newRow("a year") << 400.0;
}

void PlotBoundsTest::noRecordLiesOutsideOfTheDrawnExtremesAtAnyZoom() {
    QFETCH(double, days);
    bool isSet = false;
    const int seeds = qEnvironmentVariableIntValue("FVQA_SEEDS", &isSet);
    std::size_t checkedRecords = 0;
    for (int seed = 1; seed <= (isSet ? seeds : fewSeeds); ++seed) {
        PlotData data;
        const RunningCase running("seed " + std::to_string(seed));
        RandomRecords records(seed, days / 2);
        data.addText("first", records.file());
        data.addText("second", records.file());
        const IndependentBlocks blocks =
            readIndependently({data.pathOf("first"), data.pathOf("second")}, FVQA_ZONEINFO_DIR);
        oddities_.merge(odditiesIn(blocks));
        PlotWindow window(data, "GA:DATA:A");
        QVERIFY(window.drop("GA:DATA:B", TimeSeriesPlot::Side::right));
        QVERIFY(window.drop("GA:DATA:DIAG"));
        RandomNumbers random(static_cast<std::uint64_t>(seed));
        const Extent all = window.series("GA:DATA:A").window();
        for (int zoom = 0; zoom < 25; ++zoom) {
            for (const std::string column : {"A", "B", "DIAG"}) {
                DrawnBounds bounds(window, blocks, column);
                const QString problem = bounds.problem();
                const QString where = QString("seed %1, zoom %2, column %3: ")
                                          .arg(seed)
                                          .arg(zoom)
                                          .arg(QString::fromStdString(column));
                QVERIFY2(problem.isEmpty(), qPrintable(where + problem));
                checkedRecords += bounds.checkedRecords();
                drawnLengths_.insert(bounds.drawnLengths().begin(), bounds.drawnLengths().end());
            }
            // Of any size, and more often of a small one.
            const double width =
                (all.high - all.low) * std::pow(10.0, -static_cast<double>(random.below(400)) / 100);
            const double left =
                all.low + (all.high - all.low) * static_cast<double>(random.below(1000)) / 1000;
            window.zoom(left, left + width, -20000, 20000);
        }
    }
    QVERIFY(checkedRecords > 1000);
}

void PlotBoundsTest::everyLengthOfPeriodWasLookedAt() {
    QCOMPARE(drawnLengths_, (std::set<std::int64_t>{0, 60, 300, 1800, 7200}));
}

void PlotBoundsTest::everyOddityWasLookedAt() {
    QCOMPARE(oddities_,
             (std::set<std::string>{"a clock that steps back", "blocks over the same time", "infinity",
                                    "a word beyond single precision", "an hour that comes twice"}));
}

QTEST_MAIN(PlotBoundsTest)
#include "PlotBoundsTest.moc"

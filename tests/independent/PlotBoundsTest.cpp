// Whatever is zoomed into: the curves of a plot window hold every record between their highest and lowest
// values. The records come from the independent reader.

#include "independent/IndependentPeriods.h"
#include "plot/PlotWindow.h"
#include "support/RandomNumbers.h"

#include <cmath>
#include <set>

namespace {

constexpr int fewSeeds = 3; // in the everyday suite

// Blocks of records in bursts, so that few of them fill much time.
class RandomRecords {
public:
    RandomRecords(std::uint64_t seed, double days) : random_(seed), days_(days) {}

    std::string file() {
        std::string text = "Instrument:\tGA\n";
        const int blocks = static_cast<int>(random_.between(1, 3));
        for (int block = 0; block < blocks; ++block) {
            text += random_.oneIn(2) ? "DATAH\tSECONDS\tNANOSECONDS\tA\tB\n"
                                     : "DATAH\tSECONDS\tNANOSECONDS\tB\tA\tC\n";
            const bool isShort = random_.oneIn(3);
            addRecords(text, isShort ? 30 : 900, days_ / blocks);
        }
        return text;
    }

private:
    void addRecords(std::string &text, int count, double days) {
        const auto longestGap = static_cast<std::int64_t>(days * 86400 / count * 40);
        for (int i = 0; i < count; ++i) {
            seconds_ += random_.between(0, random_.oneIn(20) ? longestGap + 1 : 9);
            // Exactly on the end of a period now and then.
            seconds_ += random_.oneIn(30) ? (60 - seconds_ % 60) % 60 : 0;
            text += "DATA\t" + std::to_string(seconds_) + '\t' + (random_.oneIn(3) ? "0" : "500000000");
            for (int column = 0; column < 3; ++column) {
                text += '\t' + (random_.oneIn(300) ? "nan" : std::to_string(random_.between(-9999, 9999)));
            }
            text += '\n';
            seconds_ += 1; // no record lies before the one before it
        }
    }

    RandomNumbers random_;
    double days_;
    std::int64_t seconds_ = plotStart;
};

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
            shown_ = {blocks.front()->records.front().time(), blocks.back()->records.back().time()};
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
    bool isShown(double time) const { return time >= shown_.low && time <= shown_.high; }

    bool holds(const IndependentRecord &record, std::size_t point) {
        const double value = record.values[value_];
        ++checkedRecords_;
        return std::isnan(value) || (lowest_.values[point] <= value && value <= highest_.values[point]);
    }

    bool recordsAreDrawn(const IndependentBlock &block) {
        for (const IndependentRecord &record : block.records) {
            if (!isShown(record.time())) {
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

private:
    std::set<std::int64_t> drawnLengths_;
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
        RandomRecords records(static_cast<std::uint64_t>(seed), days / 2);
        data.addText("first", records.file());
        data.addText("second", records.file());
        const IndependentBlocks blocks =
            readIndependently({data.pathOf("first"), data.pathOf("second")}, FVQA_ZONEINFO_DIR);
        PlotWindow window(data, "GA:DATA:A");
        QVERIFY(window.drop("GA:DATA:B", TimeSeriesPlot::Side::right));
        RandomNumbers random(static_cast<std::uint64_t>(seed));
        const Extent all = window.series("GA:DATA:A").window();
        for (int zoom = 0; zoom < 25; ++zoom) {
            for (const std::string column : {"A", "B"}) {
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

QTEST_MAIN(PlotBoundsTest)
#include "PlotBoundsTest.moc"

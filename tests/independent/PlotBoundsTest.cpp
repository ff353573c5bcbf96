// Whatever is zoomed into: the curves of a plot window hold every record between their highest and lowest
// values. The records come from the independent reader.

#include "independent/IndependentPeriods.h"
#include "independent/IndependentZone.h"
#include "plot/PlotWindow.h"
#include "support/RandomNumbers.h"
#include "support/RunningCase.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <set>
#include <string>

namespace {

constexpr int fewSeeds = 3; // in the everyday suite

// What makes the files of a seed hard.
struct Oddities {
    explicit Oddities(int seed)
        : hasWildValues(seed % 2 == 0 || seed % 3 == 0),
          clockStepsBack(seed % 3 == 0),
          filesOverlap(seed % 4 == 2),
          hourComesTwice(seed % 5 == 3) {}

    bool hasWildValues;  // infinite, with nine digits behind the point, and diagnostic words beyond 2^24
    bool clockStepsBack; // within a block
    bool filesOverlap;   // in time
    bool hourComesTwice; // local times alone, through the end of summer time
};

// Blocks of records in bursts, so that few of them fill much time.
class RandomRecords {
public:
    RandomRecords(int seed, double days)
        : random_(static_cast<std::uint64_t>(seed)),
          odd_(seed),
          days_(days),
          start_(odd_.hourComesTwice ? endOfSummer - static_cast<std::int64_t>(days * 43200) : plotStart),
          seconds_(start_),
          wall_(FVQA_ZONEINFO_DIR, zone) {}

    std::string file() {
        if (odd_.filesOverlap) {
            seconds_ = start_ + random_.between(0, static_cast<std::int64_t>(days_ * 43200));
        }
        std::string text = "Instrument:\tGA\nTimezone:\t" + std::string(zone) + '\n';
        const std::string clock = odd_.hourComesTwice ? "DATE\tTIME" : "SECONDS\tNANOSECONDS";
        const int blocks = static_cast<int>(random_.between(1, 3));
        for (int block = 0; block < blocks; ++block) {
            text += "DATAH\t" + clock + (random_.oneIn(2) ? "\tDIAG\tA\tB\n" : "\tDIAG\tB\tA\tC\n");
            const bool isShort = random_.oneIn(3);
            addRecords(text, isShort ? 30 : 900, days_ / blocks);
        }
        return text;
    }

private:
    static constexpr const char *zone = "Europe/Berlin";
    static constexpr std::int64_t endOfSummer = 1603587600; // 2020-10-25 01:00 UTC

    void addRecords(std::string &text, int count, double days) {
        const auto longestGap = static_cast<std::int64_t>(days * 86400 / count * 40);
        for (int i = 0; i < count; ++i) {
            seconds_ += random_.between(0, random_.oneIn(20) ? longestGap + 1 : 9);
            // Exactly on the end of a period now and then.
            seconds_ += random_.oneIn(30) ? (60 - seconds_ % 60) % 60 : 0;
            if (odd_.clockStepsBack && i > 0 && random_.oneIn(100)) {
                seconds_ -= random_.between(1, random_.oneIn(2) ? 4000 : 100);
            }
            text += "DATA\t" + clockFields() + '\t' + diagnosticWord();
            for (int column = 0; column < 3; ++column) {
                text += '\t' + value();
            }
            text += '\n';
            seconds_ += 1; // but for the steps, no record lies before the one before it
        }
    }

    std::string clockFields() {
        const bool isWhole = random_.oneIn(3);
        if (!odd_.hourComesTwice) {
            return std::to_string(seconds_) + '\t' + (isWhole ? "0" : "500000000");
        }
        const IndependentZone::Fields local = wall_.localTime(seconds_).fields;
        std::array<char, 80> text{};
        std::snprintf(text.data(), text.size(), "%04d-%02d-%02d\t%02d:%02d:%02d%s",
                      static_cast<int>(local[0]), static_cast<int>(local[1]), static_cast<int>(local[2]),
                      static_cast<int>(local[3]), static_cast<int>(local[4]), static_cast<int>(local[5]),
                      isWhole ? "" : ":500");
        return text.data();
    }

    std::string diagnosticWord() {
        // From 2^24 on single precision leaves out every other one.
        return odd_.hasWildValues && random_.oneIn(4) ? std::to_string(random_.between(16777215, 4294967295))
                                                      : std::to_string(random_.below(1024));
    }

    std::string value() {
        if (random_.oneIn(300)) {
            return "nan";
        }
        const std::string whole = std::to_string(random_.between(-9999, 9999));
        if (!odd_.hasWildValues) {
            return whole;
        }
        return random_.oneIn(400) ? random_.pick(std::array{"inf", "-inf", "3e38", "-3e38", "1e-40"})
                                  : whole + '.' + std::to_string(random_.between(100000000, 999999999));
    }

    RandomNumbers random_;
    Oddities odd_;
    double days_;
    std::int64_t start_;
    std::int64_t seconds_;
    IndependentZone wall_;
};

// What the records really hold of it.
std::set<std::string> odditiesIn(const IndependentBlocks &blocks) {
    std::set<std::string> found;
    double latest = 0;
    for (const auto &block : blocks) {
        double before = 0;
        for (const IndependentRecord &record : block->records) {
            if (record.time() < before) {
                found.insert("a clock that steps back");
            }
            if (before == 0 && record.time() < latest) {
                found.insert("blocks over the same time");
            }
            before = record.time();
            for (const double value : record.values) {
                if (std::isinf(value)) {
                    found.insert("infinity");
                } else if (!std::isnan(value) && static_cast<double>(static_cast<float>(value)) != value) {
                    found.insert("a word beyond single precision");
                }
            }
        }
        latest = std::max(latest, before);
        if (!block->columns.empty() && block->columns.front() == "DATE" &&
            block->records.front().offset != block->records.back().offset) {
            found.insert("an hour that comes twice");
        }
    }
    return found;
}

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

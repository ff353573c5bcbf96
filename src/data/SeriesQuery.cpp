#include "data/SeriesQuery.h"

#include "data/FragmentList.h"
#include "data/RecordCursor.h"
#include "data/VariableKey.h"

#include <array>
#include <optional>

namespace {

// A level serves spans longer than this, so that a plot gets a few thousand points at most from each
// fragment. Tuned values, from the longest period to the shortest, in seconds.
constexpr std::array<double, DataFragment::periods.size()> shortestSpans{5000, 300000, 1500000, 9000000};

// The level for a span of time; nothing when the records themselves are to be read.
std::optional<std::size_t> levelFor(double span) {
    for (std::size_t level = shortestSpans.size(); level-- > 0;) {
        if (span > shortestSpans[level]) {
            return level;
        }
    }
    return std::nullopt;
}

std::optional<Statistic> statisticOf(std::string_view selector) {
    if (selector.empty()) {
        return Statistic::average;
    }
    if (selector == "max") {
        return Statistic::maximum;
    }
    if (selector == "min") {
        return Statistic::minimum;
    }
    return std::nullopt;
}

} // namespace

SeriesQuery::SeriesQuery(const FragmentList &fragments, std::string_view key, double start, double end)
    : start_(start), end_(end) {
    const auto parts = splitVariableKey(key);
    if (!parts) {
        return;
    }
    if (start == wholeRangeStart || end == wholeRangeEnd) {
        resolveWholeRange(fragments, parts->instrument, parts->tag);
    }
    // Also false when a bound is not a number.
    if (!(start_ <= end_)) {
        return;
    }
    for (const auto &fragment : fragments) {
        if (!fragment->isOf(parts->instrument, parts->tag)) {
            continue;
        }
        const std::ptrdiff_t column = fragment->valueIndex(parts->column);
        if (column >= 0) {
            parts_.push_back({fragment, static_cast<std::size_t>(column)});
        }
    }
}

// The markers give way to the data's own bounds, so that the whole range gets the level that suits its
// length. The end is the last fragment's latest time, which is not its last record's where a clock stepped
// back.
void SeriesQuery::resolveWholeRange(const FragmentList &fragments, std::string_view instrument,
                                    std::string_view tag) {
    if (fragments.empty()) {
        return;
    }
    std::optional<double> last;
    for (const auto &fragment : fragments) {
        if (fragment->isOf(instrument, tag)) {
            start_ = start_ == wholeRangeStart ? fragment->firstTime() : start_;
            last = fragment->latestTime();
        }
    }
    if (start_ == wholeRangeStart) {
        start_ = fragments.front().firstTime();
    }
    if (end_ == wholeRangeEnd) {
        end_ = last.value_or(fragments.back().latestTime());
    }
}

void SeriesQuery::read(std::string_view selector, std::vector<double> &times,
                       std::vector<double> &values) const {
    const auto level = levelFor(end_ - start_);
    const auto statistic = statisticOf(selector);
    for (const Part &part : parts_) {
        if (!level) {
            readRecords(part, times, values);
        } else if (statistic) {
            readSeries(part, *level, *statistic, times, values);
        }
    }
}

void SeriesQuery::readRecords(const Part &part, std::vector<double> &times,
                              std::vector<double> &values) const {
    for (DataFragment::_ContextType reader(*part.fragment, start_, end_); !reader.isExhausted();
         reader.advance()) {
        times.push_back(timeOf(reader.record()));
        values.push_back(reader.record().values[part.column]);
    }
}

void SeriesQuery::readSeries(const Part &part, std::size_t level, Statistic statistic,
                             std::vector<double> &times, std::vector<double> &values) const {
    const AveragedSeries &series = part.fragment->series(level);
    for (std::size_t i = series.firstFrom(start_); i < series.size(); ++i) {
        const double time = timeOf(series.stamps()[i]);
        if (time > end_) {
            break;
        }
        times.push_back(time);
        values.push_back(series.value(statistic, i, part.column));
    }
}

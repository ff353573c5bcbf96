#include "data/SeriesQuery.h"

#include "data/FragmentList.h"
#include "data/ReadingBounds.h"

#include <algorithm>
#include <array>

namespace {

// A level serves spans longer than this, so that a plot gets a few thousand points at most from each
// fragment. Tuned values, from the shortest period to the longest, in seconds.
constexpr std::array<double, DataFragment::periods.size()> shortestSpans{5000, 300000, 1500000, 9000000};

std::optional<std::size_t> levelFor(double span) {
    for (std::size_t level = shortestSpans.size(); level-- > 0;) {
        if (span > shortestSpans[level]) {
            return level;
        }
    }
    return std::nullopt;
}

} // namespace

SeriesQuery::SeriesQuery(const FragmentList &fragments, std::string_view instrument, std::string_view tag,
                         const std::vector<std::string> &columns, double start, double end)
    : start_(start), end_(end), columnCount_(columns.size()) {
    if (start == wholeRangeStart || end == wholeRangeEnd) {
        resolveWholeRange(fragments, instrument, tag);
    }
    level_ = levelFor(end_ - start_);
    // Also false when a bound is not a number.
    if (!(start_ <= end_)) {
        return;
    }
    for (const auto &fragment : fragments) {
        // Records are read again from files, of which there may be very many outside the bounds.
        if (fragment->isOf(instrument, tag) && (level_ || !narrowedTo(*fragment, start_, end_).areEmpty())) {
            pick(fragment, columns);
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

void SeriesQuery::pick(const std::shared_ptr<const DataFragment> &fragment,
                       const std::vector<std::string> &columns) {
    const auto before = static_cast<std::ptrdiff_t>(valueColumns_.size());
    for (const std::string &column : columns) {
        valueColumns_.push_back(fragment->valueIndex(column));
    }
    const auto added = valueColumns_.begin() + before;
    if (std::all_of(added, valueColumns_.end(), [](std::ptrdiff_t column) { return column < 0; })) {
        valueColumns_.erase(added, valueColumns_.end());
        return;
    }
    fragments_.push_back(fragment);
}

std::optional<std::uint32_t> SeriesQuery::valueColumn(std::size_t part, std::size_t column) const {
    const std::ptrdiff_t found = valueColumns_[part * columnCount_ + column];
    return found < 0 ? std::nullopt : std::optional(static_cast<std::uint32_t>(found));
}

std::vector<std::uint32_t> SeriesQuery::valueColumns(std::size_t part) const {
    std::vector<std::uint32_t> found;
    for (std::size_t column = 0; column < columnCount_; ++column) {
        if (const auto valueIndex = valueColumn(part, column)) {
            found.push_back(*valueIndex);
        }
    }
    return found;
}

std::size_t SeriesQuery::placeOf(std::size_t part, std::size_t column) const {
    std::size_t place = 0;
    for (std::size_t before = 0; before < column; ++before) {
        place += valueColumn(part, before) ? 1U : 0U;
    }
    return place;
}

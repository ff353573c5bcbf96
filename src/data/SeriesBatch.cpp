#include "data/SeriesBatch.h"

#include "data/FragmentList.h"
#include "data/SeriesLists.h"
#include "data/SourcePass.h"
#include "data/VariableKey.h"

#include <algorithm>
#include <deque>
#include <limits>
#include <string_view>

namespace {

constexpr std::size_t noQuery = std::numeric_limits<std::size_t>::max();

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

// The columns asked for of one instrument and tag.
struct Wanted {
    std::string_view instrument;
    std::string_view tag;
    std::vector<std::string> columns;
};

// Index of the element that `isIt`; `added` joins the list when there is none.
template <typename List, typename Condition, typename Element>
std::size_t indexIn(List &list, const Condition &isIt, const Element &added) {
    const auto found = std::find_if(list.begin(), list.end(), isIt);
    const auto index = static_cast<std::size_t>(found - list.begin());
    if (found == list.end()) {
        list.push_back(added);
    }
    return index;
}

} // namespace

SeriesBatch::SeriesBatch(const FragmentList &fragments, const std::vector<SeriesRequest> &requests,
                         double start, double end, ShortBlocks shortBlocks)
    : shortBlocks_(shortBlocks) {
    std::vector<Wanted> wanted;
    series_.reserve(requests.size());
    for (const SeriesRequest &request : requests) {
        const auto key = splitVariableKey(request.key);
        if (!key) {
            series_.push_back({noQuery, 0, std::nullopt});
            continue;
        }
        const auto isOfKey = [&](const Wanted &one) {
            return one.instrument == key->instrument && one.tag == key->tag;
        };
        const std::size_t query = indexIn(wanted, isOfKey, Wanted{key->instrument, key->tag, {}});
        const std::string column(key->column);
        const auto isColumn = [&](const std::string &name) { return name == column; };
        series_.push_back(
            {query, indexIn(wanted[query].columns, isColumn, column), statisticOf(request.selector)});
    }
    queries_.reserve(wanted.size());
    for (const Wanted &one : wanted) {
        queries_.emplace_back(fragments, one.instrument, one.tag, one.columns, start, end);
    }
}

std::vector<SeriesPoints> SeriesBatch::read() const {
    SourcePass pass;
    std::deque<SeriesLists> lists; // the pass refers to their blocks
    for (const SeriesQuery &query : queries_) {
        for (BlockPoints &block : lists.emplace_back(query, shortBlocks_).blocks()) {
            pass.add(block);
        }
    }
    pass.run();
    std::vector<SeriesPoints> points;
    points.reserve(series_.size());
    for (const Series &series : series_) {
        points.push_back(series.query == noQuery
                             ? SeriesPoints()
                             : lists[series.query].pointsOf(series.column, series.statistic));
    }
    return points;
}

#pragma once

#include "data/RecordCursor.h"
#include "data/SeriesPoints.h"
#include "data/VariableKey.h"
#include "support/LoadedSource.h"
#include "support/RecordComparison.h"

#include <array>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

// The points of one series by the shortest way: fragment after fragment, with a reader of its own for each.
class PlainSeries {
public:
    PlainSeries(const DataSet &dataSet, const SeriesRequest &request, double start, double end)
        : dataSet_(dataSet), selector_(request.selector), start_(start), end_(end) {
        const auto key = splitVariableKey(request.key);
        if (!key) {
            return;
        }
        for (const auto &fragment : dataSet.fragments()) {
            if (fragment->isOf(key->instrument, key->tag)) {
                matching_.push_back(fragment.get());
            }
        }
        resolveBounds();
        if (!(start_ <= end_)) {
            return;
        }
        for (const DataFragment *const fragment : matching_) {
            if (const auto column = fragment->valueIndex(key->column); column >= 0) {
                add(*fragment, static_cast<std::size_t>(column));
            }
        }
    }

    const Points &points() const { return points_; }

private:
    void resolveBounds() {
        if (dataSet_.fragments().empty()) {
            return;
        }
        const bool isToTheEnd = end_ == wholeRangeEnd;
        for (const DataFragment *const fragment : matching_) {
            start_ = start_ == wholeRangeStart ? fragment->firstTime() : start_;
            end_ = isToTheEnd ? fragment->latestTime() : end_;
        }
        // Of the whole list, when the bounds found nothing to resolve them.
        const bool isFromTheBegin = start_ == wholeRangeStart;
        start_ = isFromTheBegin ? dataSet_.fragments().front().firstTime() : start_;
        end_ = isToTheEnd && matching_.empty() ? dataSet_.fragments().back().latestTime() : end_;
    }

    void add(const DataFragment &fragment, std::size_t column) {
        const double span = end_ - start_;
        if (span > 5000) {
            addAverages(fragment.series(span > 9000000   ? 3
                                        : span > 1500000 ? 2
                                        : span > 300000  ? 1
                                                         : 0),
                        column);
            return;
        }
        for (const Record &record : readAgain(fragment, start_, end_)) {
            points_.times.push_back(timeOf(record));
            points_.values.push_back(record.values.at(column));
        }
    }

    void addAverages(const AveragedSeries &series, std::size_t column) {
        constexpr std::array<const char *, 3> selectors{"", "max", "min"};
        for (std::size_t i = 0; i < series.size(); ++i) {
            const double time = timeOf(series.stamps()[i]);
            for (std::size_t s = 0; s < selectors.size(); ++s) {
                if (time >= start_ && time <= end_ && selector_ == selectors.at(s)) {
                    points_.times.push_back(time);
                    points_.values.push_back(series.value(static_cast<Statistic>(s), i, column));
                }
            }
        }
    }

    const DataSet &dataSet_;
    std::string selector_;
    double start_;
    double end_;
    std::vector<const DataFragment *> matching_;
    Points points_;
};

// Every series holds exactly its plain points. `found`, when given, is raised by the number of points.
inline testing::AssertionResult sameAsPlain(const DataSet &dataSet,
                                            const std::vector<SeriesRequest> &requests, double start,
                                            double end, std::size_t *found = nullptr) {
    const std::vector<SeriesPoints> all = dataSet.seriesOf(requests, start, end);
    if (all.size() != requests.size()) {
        return testing::AssertionFailure() << all.size() << " series for " << requests.size() << " requests";
    }
    for (std::size_t i = 0; i < requests.size(); ++i) {
        const PlainSeries plain(dataSet, requests[i], start, end);
        const auto times = sameNumbers(*all[i].times, plain.points().times);
        const auto values = sameNumbers(*all[i].values, plain.points().values);
        if (!times || !values) {
            return testing::AssertionFailure()
                   << requests[i].key << " \"" << requests[i].selector << "\" from " << start << " to " << end
                   << "\ntimes: " << times.message() << "\nvalues: " << values.message();
        }
        if (found != nullptr) {
            *found += plain.points().times.size();
        }
    }
    return testing::AssertionSuccess();
}

// Each of the data set's variables with each selector, in an order of its own, some of them twice, and some
// that name nothing.
template <typename RandomNumbers>
std::vector<SeriesRequest> randomRequests(const DataSet &dataSet, RandomNumbers &random) {
    constexpr std::array<const char *, 4> selectors{"", "max", "min", "other"};
    std::vector<SeriesRequest> requests;
    for (const std::string &key : dataSet.variableKeys()) {
        for (const char *const selector : selectors) {
            if (random.oneIn(3)) {
                requests.push_back({key, selector});
            }
        }
    }
    for (const char *const key : {"", "Q", "QA330:DATA", "QA330:DATA:none", "none:DATA:A"}) {
        if (random.oneIn(5)) {
            requests.push_back({key, ""});
        }
    }
    for (std::size_t i = requests.size(); i > 1; --i) {
        std::swap(requests[i - 1], requests[random.below(i)]);
    }
    if (!requests.empty() && random.oneIn(2)) {
        requests.push_back(requests[random.below(requests.size())]);
    }
    return requests;
}

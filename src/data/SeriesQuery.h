#pragma once

#include "data/DataFragment.h"

#include <memory>
#include <string_view>
#include <vector>

class FragmentList;

// The points of one variable between two times: which fragments give them, and at which level.
//
// Made under the lock of the data set that owns the list, read without it: the fragments are shared.
class SeriesQuery {
public:
    // `key` is a variable key; `start` and `end` are UTC seconds or the whole-range bounds.
    SeriesQuery(const FragmentList &fragments, std::string_view key, double start, double end);

    // Appends the points' times (UTC seconds) and values. `selector` is empty for the averages, "max" or
    // "min"; any other gives no points. Short spans are read again from the sources, whatever the selector.
    void read(std::string_view selector, std::vector<double> &times, std::vector<double> &values) const;

private:
    struct Part {
        std::shared_ptr<const DataFragment> fragment;
        std::size_t column;
    };

    void resolveWholeRange(const FragmentList &fragments, std::string_view instrument, std::string_view tag);
    void readRecords(const Part &part, std::vector<double> &times, std::vector<double> &values) const;
    void readSeries(const Part &part, std::size_t level, Statistic statistic, std::vector<double> &times,
                    std::vector<double> &values) const;

    double start_;
    double end_;
    std::vector<Part> parts_;
};

#pragma once

#include "data/AveragedSeries.h"
#include "data/SeriesPoints.h"
#include "data/SeriesQuery.h"

#include <cstddef>
#include <optional>
#include <vector>

class FragmentList;

// The points of several series between the same two times. Short spans are read again from the sources, each
// of them once for all series; those of one variable then have the same points, whatever their selectors.
//
// Made under the lock of the data set that owns the list, read without it: the fragments are shared.
class SeriesBatch {
public:
    // `start` and `end` are UTC seconds or the whole-range bounds, which each instrument and tag resolve for
    // themselves. The selector is empty for the averages, "max" or "min"; any other gives no averages.
    SeriesBatch(const FragmentList &fragments, const std::vector<SeriesRequest> &requests, double start,
                double end, ShortBlocks shortBlocks = ShortBlocks::atTheLevel);

    // The points of each request, in their order.
    std::vector<SeriesPoints> read() const;

private:
    struct Series {
        std::size_t query = 0; // of queries_; beyond them when the key names nothing
        std::size_t column = 0;
        std::optional<Statistic> statistic;
    };

    ShortBlocks shortBlocks_;
    std::vector<SeriesQuery> queries_; // one for each instrument and tag
    std::vector<Series> series_;
};

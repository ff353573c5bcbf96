#pragma once

#include "data/AveragedSeries.h"
#include "data/SeriesPoints.h"
#include "data/SeriesQuery.h"

#include <cstddef>
#include <map>
#include <optional>
#include <utility>
#include <vector>

// Puts the points of one query's fragments together, in the fragments' order. A list that several series have
// is made once.
//
// The query must outlive it. Call pointsOf() when a pass has given the blocks() their lines.
class SeriesLists {
public:
    SeriesLists(const SeriesQuery &query, ShortBlocks shortBlocks);

    // Those whose records are to be read, parallel to the query's fragments; none when it takes averages.
    std::vector<BlockPoints> &blocks() { return blocks_; }

    // Without a statistic only records give points.
    SeriesPoints pointsOf(std::size_t column, std::optional<Statistic> statistic);

private:
    using List = std::shared_ptr<const std::vector<double>>;
    struct Periods { // of one fragment's averaged series, the last one excluded
        const AveragedSeries *series;
        std::size_t first;
        std::size_t last;
    };

    std::vector<bool> partsWith(std::size_t column) const;
    List timesOf(const std::vector<bool> &parts);
    List valuesOf(std::size_t column, Statistic statistic);
    std::vector<double> recordTimes(const std::vector<bool> &parts);
    std::vector<double> periodTimes(const std::vector<bool> &parts) const;
    std::vector<double> recordValues(std::size_t column);
    std::vector<double> periodValues(std::size_t column, Statistic statistic) const;
    std::size_t periodCount(const std::vector<bool> &parts) const;

    const SeriesQuery &query_;
    std::vector<BlockPoints> blocks_;
    std::vector<Periods> periods_;            // parallel to the query's fragments
    std::map<std::vector<bool>, List> times_; // by the fragments that give them
    std::map<std::pair<std::size_t, Statistic>, List> values_;
};

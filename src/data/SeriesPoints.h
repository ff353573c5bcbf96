#pragma once

#include <memory>
#include <string>
#include <vector>

// One series of a plot: a variable key, and the selector of DataSet::series().
struct SeriesRequest {
    std::string key;
    std::string selector;
};

// What a block gives that spans few periods of the level that a span of time asks for. A period that a block
// does not fill gives no point, so that a season of half-hour files would have next to none at the longer
// periods: a plot of them takes shorter ones.
enum class ShortBlocks { atTheLevel, atAFinerLevel };

// The points of one series. Series that have the same times, or the same values, may share them. Never null,
// and of one length.
struct SeriesPoints {
    std::shared_ptr<const std::vector<double>> times =
        std::make_shared<const std::vector<double>>(); // UTC seconds
    std::shared_ptr<const std::vector<double>> values = std::make_shared<const std::vector<double>>();

    void appendTo(std::vector<double> &allTimes, std::vector<double> &allValues) const {
        allTimes.insert(allTimes.end(), times->begin(), times->end());
        allValues.insert(allValues.end(), values->begin(), values->end());
    }
};

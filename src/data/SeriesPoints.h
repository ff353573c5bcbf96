#pragma once

#include <memory>
#include <string>
#include <vector>

// One series of a plot: a variable key, and the selector of DataSet::series().
struct SeriesRequest {
    std::string key;
    std::string selector;
};

// The points of one series. Series that have the same times, or the same values, may share them. Never null,
// and of one length.
struct SeriesPoints {
    std::shared_ptr<const std::vector<double>> times; // UTC seconds
    std::shared_ptr<const std::vector<double>> values;
};

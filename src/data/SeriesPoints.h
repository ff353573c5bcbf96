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
    std::shared_ptr<const std::vector<double>> times =
        std::make_shared<const std::vector<double>>(); // UTC seconds
    std::shared_ptr<const std::vector<double>> values = std::make_shared<const std::vector<double>>();

    void appendTo(std::vector<double> &allTimes, std::vector<double> &allValues) const {
        allTimes.insert(allTimes.end(), times->begin(), times->end());
        allValues.insert(allValues.end(), values->begin(), values->end());
    }
};

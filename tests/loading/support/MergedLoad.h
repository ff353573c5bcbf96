#pragma once

#include "data/DataSet.h"
#include "loading/FileLoading.h"

#include <atomic>
#include <functional>

// What one file has given to a data set of its own, as the viewer loads it: read first, then merged.
struct MergedLoad {
    LoadReport report;
    DataSet data;

    std::size_t records() const {
        std::size_t count = 0;
        for (const auto &fragment : data.fragments()) {
            count += fragment->recordCount();
        }
        return count;
    }
};

// `atPercent` is called at each report of progress, while the file is read.
inline MergedLoad mergedLoad(
    const QString &path, const std::function<void(int percent)> &atPercent = [](int) {}) {
    MergedLoad loaded;
    DataSet source(path.toStdString());
    loaded.report =
        loadFile(path, source, std::atomic<bool>(false), [&](int percent, qint64) { atPercent(percent); });
    loaded.data.merge(source);
    return loaded;
}

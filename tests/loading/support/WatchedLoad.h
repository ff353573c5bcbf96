#pragma once

#include "data/DataSet.h"
#include "loading/FileLoading.h"

#include <QString>

#include <atomic>
#include <cstdint>
#include <functional>
#include <vector>

// One load of a file: what was told while it went on, and what came of it.
struct WatchedLoad {
    explicit WatchedLoad(const QString &path) : data(path.toStdString()) {}

    DataSet data;
    LoadReport report;
    std::vector<int> percents; // of each report of progress, and
    std::vector<qint64> sizes; // the file's size that it gave

    std::vector<std::uint32_t> recordCounts() const {
        std::vector<std::uint32_t> counts;
        for (const auto &fragment : data.fragments()) {
            counts.push_back(fragment->recordCount());
        }
        return counts;
    }
};

using Percents = std::vector<int>;
using Counts = std::vector<std::uint32_t>;
// Called at each report of progress; may cancel the load.
using LoadWatcher = std::function<void(int percent, std::atomic<bool> &cancelled)>;

inline WatchedLoad watchedLoad(
    const QString &path, const LoadWatcher &watch = [](int, std::atomic<bool> &) {},
    bool isCancelled = false) {
    WatchedLoad loaded(path);
    std::atomic<bool> cancelled = isCancelled;
    loaded.report = loadFile(path, loaded.data, cancelled, [&](int percent, qint64 size) {
        loaded.percents.push_back(percent);
        loaded.sizes.push_back(size);
        watch(percent, cancelled);
    });
    return loaded;
}

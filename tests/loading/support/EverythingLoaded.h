#pragma once

#include "data/DataSet.h"
#include "loading/FileLoading.h"
#include "loading/ParsingThreads.h"

#include <QString>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

// One load of a file, and all that can be told of it.
struct EverythingLoaded {
    // Called on each report of progress, on the thread that loads.
    using Watcher = std::function<void(int percent, std::atomic<bool> &cancelled)>;

    // With `threads` beside the one that loads, if any.
    EverythingLoaded(const QString &path, ParsingThreads *threads, const Watcher &watch = {});

    DataSet data;
    LoadReport report;
    std::string progress; // a line for each report
};

// Lines that tell everything that was loaded, numbers by their bits: equal texts are equal loads.
std::string textOf(const EverythingLoaded &loaded);
std::string textOf(const DataSet &data);

// Equal, or the first line that differs.
std::string firstDifference(const std::string &text, const std::string &expected);

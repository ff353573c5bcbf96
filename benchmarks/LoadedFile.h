#pragma once

#include "loading/FileLoading.h"

#include <QString>

#include <stdexcept>
#include <string>

// Loads `path` as the viewer does. Throws std::runtime_error when it is not read whole.
inline DataSet loadWhole(const std::string &path) {
    DataSet source(path);
    const std::atomic<bool> cancelled = false;
    const LoadReport report = loadFile(QString::fromStdString(path), source, cancelled, [](int, qint64) {});
    if (!report.problem.isEmpty() || !report.remark.isEmpty()) {
        throw std::runtime_error(path + ": " + (report.problem + report.remark).toStdString());
    }
    return source;
}

#pragma once

#include "data/DataSet.h"

#include <QString>

#include <atomic>
#include <functional>
#include <vector>

class ParsingThreads;

// What loading one file came to, for people.
struct LoadReport {
    // Set when the file, or a part of it, could not be read as a data file; several problems are joined by ";
    // ".
    QString problem;
    // Set when the file was read but holds no record.
    QString remark;
};

// Called with the percentage of the bytes read (0 first, then growing, 100 last) and the file's size on disk.
using LoadProgress = std::function<void(int percent, qint64 fileSize)>;

// Reads the plain file or archive `fileName` line by line into `source`, which was made for it. Stops soon
// after `cancelled` is set. Never throws for anything that the file holds, nor when memory runs out: then the
// report says so, and what was read before is there. Runs on any thread. With `threads`, those read the
// fields of a large source's records where they can; nothing of what comes out depends on it.
LoadReport loadFile(const QString &fileName, DataSet &source, const std::atomic<bool> &cancelled,
                    const LoadProgress &progress, ParsingThreads *threads = nullptr);

// What there is to say about a loaded file, in the order in which it is shown: wrong checksums, lines that
// could not be handled, then the report.
std::vector<QString> messagesOf(const DataSet &source, const LoadReport &report);

// Why `fileName` cannot be loaded: missing, not a regular file, not readable. Empty when it can.
QString whyNotLoadable(const QString &fileName);

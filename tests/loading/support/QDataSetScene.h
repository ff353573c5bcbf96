#pragma once

#include "loading/QDataSet.h"
#include "loading/QDataSetThread.h"
#include "loading/support/DataText.h"
#include "loading/support/SignalRecorder.h"
#include "loading/support/TempFolder.h"

#include <QFileInfo>
#include <QList>
#include <QString>

#include <cstdint>
#include <string>
#include <string_view>

// A data set with its listener and files, and short words for what tests ask of it.

inline constexpr std::uint32_t start = 1'600'000'000;
inline constexpr int workerCap = 10;

inline QList<QDataSetThread *> workersOf(const QDataSet &set) {
    return set.findChildren<QDataSetThread *>(QString(), Qt::FindDirectChildrenOnly);
}

inline std::uint32_t recordsOf(const QDataSet &set, const std::string &instrument) {
    std::uint32_t records = 0;
    for (const auto &fragment : set.fragmentsOf(instrument, "DATA")) {
        records += fragment->recordCount();
    }
    return records;
}

inline QString numbered(int i) {
    return QStringLiteral("file%1.data").arg(i, 4, 10, QLatin1Char('0'));
}

inline std::string instrumentOf(int i) {
    return "QA" + std::to_string(i);
}

// A data set that is listened to, and a folder for its files.
struct Scene {
    TempFolder folder;
    QDataSet set;
    SignalRecorder recorder{set};

    // Writes a file and adds it.
    QString add(const QString &name, std::string_view text) {
        QString path = folder.write(name, text);
        set.AddFile(path);
        return path;
    }
    bool waitForLoaded(const QString &name, int times = 1) const {
        return recorder.waitForEvents("FileLoaded " + name, times);
    }
    // Until no worker is left, so that no file waits either.
    bool waitForRest() const {
        return SignalRecorder::waitUntil([this] { return workersOf(set).isEmpty(); });
    }
    int loadedCount() const { return recorder.countStartingWith("FileLoaded"); }
    // "Progress NAME PERCENT SIZE" of a file of the folder.
    QString progress(const QString &name, int percent) const {
        return QStringLiteral("Progress %1 %2 %3")
            .arg(name)
            .arg(percent)
            .arg(QFileInfo(folder.path(name)).size());
    }
};

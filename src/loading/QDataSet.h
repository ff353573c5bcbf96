#pragma once

#include "data/DataSet.h"
#include "loading/ParsingThreads.h"

#include <QList>
#include <QObject>
#include <QReadWriteLock>
#include <QSet>
#include <QString>

#include <atomic>
#include <deque>
#include <memory>
#include <set>
#include <string>
#include <vector>

class QDataSetThread;

// The one owner of the loaded data: adds and removes files, loads them on worker threads, answers queries.
//
// Everything but LoadFile is for the interface thread. Queries are safe while files load; those that read
// files again hold the lock only while they pick their fragments.
class QDataSet : public QObject {
    Q_OBJECT

public:
    static constexpr int maximumThreads = 10;

    explicit QDataSet(QObject *parent = nullptr);
    ~QDataSet() override;

    // Loads `fileName` in the background, replacing what was loaded of it before. A name that is no readable
    // regular file is answered with a Message.
    void AddFile(const QString &fileName);
    // Drops all data of `fileName` and stops loading it. A file that still waits for a worker is loaded all
    // the same: this order is kept.
    void RemoveFile(const QString &fileName);

    // Takes in what was loaded without workers of its own, as the companion loads.
    void addLoaded(const DataSet &source);

    // For the workers: reads the file into `source`, reporting by signals.
    void LoadFile(const QString &fileName, DataSet &source, const std::atomic<bool> &cancelled);

    // Queries: see the functions of DataSet of the same names.
    std::set<std::string> variableKeys() const;
    std::uint64_t variableKeysRevision() const;
    bool hasVariableKeys() const;
    std::set<std::string> variableKeysOfInstrument(const std::string &instrument) const;
    std::set<std::string> variableKeysOfInstrumentAndTag(const std::string &instrument,
                                                         const std::string &tag) const;
    std::set<std::string> fileNames() const;
    std::set<std::string> instruments() const;
    std::set<std::string> tagsOfInstrument(const std::string &instrument) const;
    std::string versionOfInstrument(const std::string &instrument) const;
    std::string timeZoneNameOfKey(const std::string &key) const;
    void series(const std::string &key, const std::string &selector, double start, double end,
                std::vector<double> &times, std::vector<double> &values) const;
    std::vector<SeriesPoints> seriesOf(const std::vector<SeriesRequest> &requests, double start, double end,
                                       ShortBlocks shortBlocks = ShortBlocks::atTheLevel) const;
    void valueRange(const std::string &key, double &low, double &high) const;
    void timeRangeOfInstrument(const std::string &instrument, double &first, double &last) const;
    std::vector<std::string> valueNamesOfInstrumentAndTag(const std::string &instrument,
                                                          const std::string &tag) const;
    std::vector<std::string> unitsOfInstrumentAndTag(const std::string &instrument,
                                                     const std::string &tag) const;
    std::vector<std::string> diagnosticNamesOfInstrumentAndTag(const std::string &instrument,
                                                               const std::string &tag) const;
    // For a cursor over their records that outlives the call.
    std::vector<std::shared_ptr<const DataFragment>> fragmentsOf(const std::string &instrument,
                                                                 const std::string &tag) const;

Q_SIGNALS:
    // Percent of the bytes read, and the file's size on disk in bytes.
    void Progress(const QString &fileName, int percent, qint64 fileSize);
    void Message(const QString &fileName, const QString &text);
    void FileLoaded(const QString &fileName);
    void FileRemoved(const QString &fileName);

public Q_SLOTS:
    void OnThreadFinished(QDataSetThread *thread);

private:
    void StartNext();
    void giveUp(QDataSetThread *thread);
    bool isBeingLoaded(const QString &fileName) const;

    DataSet dataSet_;
    std::deque<QString> pending_;
    QList<QDataSetThread *> threads_;
    QSet<QString> overtaken_;       // files with an outdated worker that ended before their last one
    ParsingThreads parsingThreads_; // for a large file while few others load
    mutable QReadWriteLock lock_{QReadWriteLock::NonRecursive};
};

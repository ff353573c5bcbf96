#include "loading/QDataSet.h"

#include "data/LockGuards.h"
#include "data/SeriesBatch.h"
#include "loading/FileLoading.h"
#include "loading/QDataSetThread.h"

#include <QFileInfo>

#include <algorithm>
#include <exception>
#include <thread>

QDataSet::QDataSet(QObject *parent) : QObject(parent), parsingThreads_(std::thread::hardware_concurrency()) {}

QDataSet::~QDataSet() {
    pending_.clear();
    // All are told before the first is waited for, so that they stop side by side.
    for (QDataSetThread *thread : std::as_const(threads_)) {
        thread->cancel();
    }
    for (QDataSetThread *thread : std::as_const(threads_)) {
        thread->waitForEnd();
    }
}

void QDataSet::AddFile(const QString &fileName) {
    RemoveFile(fileName);
    const QString problem = whyNotLoadable(fileName);
    if (!problem.isEmpty()) {
        Q_EMIT Message(fileName, problem);
        return;
    }
    pending_.push_back(fileName);
    Q_EMIT Progress(fileName, 0, QFileInfo(fileName).size());
    StartNext();
}

void QDataSet::RemoveFile(const QString &fileName) {
    // A name that was added and removed in quick succession may have several workers, all of them outdated.
    for (QDataSetThread *thread : std::as_const(threads_)) {
        if (thread->fileName() == fileName) {
            thread->cancel();
        }
    }
    {
        const WriteGuard guard(lock_);
        dataSet_.removeFile(fileName.toStdString());
    }
    Q_EMIT FileRemoved(fileName);
}

void QDataSet::StartNext() {
    while (threads_.size() < maximumThreads && !pending_.empty()) {
        auto *const thread = new QDataSetThread(this, pending_.front());
        pending_.pop_front();
        threads_.append(thread);
        connect(thread, SIGNAL(ThreadFinished(QDataSetThread *)), this,
                SLOT(OnThreadFinished(QDataSetThread *)));
        thread->start();
        if (!thread->isRunning() && !thread->isFinished()) {
            giveUp(thread);
            if (!threads_.empty()) {
                return;
            }
        }
    }
}

// The system gave no thread. The file waits for the end of another one's worker, when there is one.
void QDataSet::giveUp(QDataSetThread *thread) {
    const QString fileName = thread->fileName();
    threads_.removeOne(thread);
    delete thread;
    if (!threads_.empty()) {
        pending_.push_front(fileName);
        return;
    }
    Q_EMIT Message(fileName, QStringLiteral("Loading failed: no thread could be started"));
    Q_EMIT Progress(fileName, 100, QFileInfo(fileName).size());
}

void QDataSet::OnThreadFinished(QDataSetThread *thread) {
    thread->waitForEnd();
    const QString fileName = thread->fileName();
    if (!thread->isCancelled()) {
        {
            const WriteGuard guard(lock_);
            // A file that was added again while it waited for a worker is loaded twice: the later load
            // counts.
            dataSet_.removeFile(fileName.toStdString());
            dataSet_.merge(thread->source());
        }
        Q_EMIT FileLoaded(fileName);
    }
    const bool wasCancelled = thread->isCancelled();
    threads_.removeOne(thread);
    delete thread;
    if (isBeingLoaded(fileName)) {
        if (wasCancelled) {
            overtaken_.insert(fileName);
        }
    } else if (overtaken_.remove(fileName) || wasCancelled) {
        // Nothing more comes for this file: whoever counts unfinished files must not wait for it. What an
        // outdated worker reported may have come behind the last report of its successor.
        Q_EMIT Progress(fileName, 100, QFileInfo(fileName).size());
    }
    StartNext();
}

void QDataSet::addLoaded(const DataSet &source) {
    const WriteGuard guard(lock_);
    dataSet_.merge(source);
}

bool QDataSet::isBeingLoaded(const QString &fileName) const {
    const auto isOfFile = [&fileName](const QDataSetThread *thread) {
        return thread->fileName() == fileName;
    };
    return std::any_of(threads_.begin(), threads_.end(), isOfFile) ||
           std::find(pending_.begin(), pending_.end(), fileName) != pending_.end();
}

void QDataSet::LoadFile(const QString &fileName, DataSet &source, const std::atomic<bool> &cancelled) {
    qint64 lastSize = 0;
    const auto progress = [this, &fileName, &lastSize](int percent, qint64 fileSize) {
        lastSize = fileSize;
        Q_EMIT Progress(fileName, percent, fileSize);
    };
    try {
        const LoadReport report = loadFile(fileName, source, cancelled, progress, &parsingThreads_);
        for (const QString &text : messagesOf(source, report)) {
            Q_EMIT Message(fileName, text);
        }
    } catch (const std::exception &error) {
        // Out of memory, most likely: the program goes on with what it has.
        Q_EMIT Progress(fileName, 100, lastSize);
        Q_EMIT Message(fileName, QStringLiteral("Loading failed: ") + QString::fromUtf8(error.what()));
    }
}

std::set<std::string> QDataSet::variableKeys() const {
    const ReadGuard guard(lock_);
    return dataSet_.variableKeys();
}

std::uint64_t QDataSet::variableKeysRevision() const {
    const ReadGuard guard(lock_);
    return dataSet_.variableKeysRevision();
}

bool QDataSet::hasVariableKeys() const {
    const ReadGuard guard(lock_);
    return dataSet_.hasVariableKeys();
}

std::set<std::string> QDataSet::variableKeysOfInstrument(const std::string &instrument) const {
    const ReadGuard guard(lock_);
    return dataSet_.variableKeysOfInstrument(instrument);
}

std::set<std::string> QDataSet::variableKeysOfInstrumentAndTag(const std::string &instrument,
                                                               const std::string &tag) const {
    const ReadGuard guard(lock_);
    return dataSet_.variableKeysOfInstrumentAndTag(instrument, tag);
}

std::set<std::string> QDataSet::fileNames() const {
    const ReadGuard guard(lock_);
    return dataSet_.fileNames();
}

std::set<std::string> QDataSet::instruments() const {
    const ReadGuard guard(lock_);
    return dataSet_.instruments();
}

std::set<std::string> QDataSet::tagsOfInstrument(const std::string &instrument) const {
    const ReadGuard guard(lock_);
    return dataSet_.tagsOfInstrument(instrument);
}

std::string QDataSet::versionOfInstrument(const std::string &instrument) const {
    const ReadGuard guard(lock_);
    return dataSet_.versionOfInstrument(instrument);
}

std::string QDataSet::timeZoneNameOfKey(const std::string &key) const {
    const ReadGuard guard(lock_);
    return dataSet_.timeZoneNameOfKey(key);
}

void QDataSet::series(const std::string &key, const std::string &selector, double start, double end,
                      std::vector<double> &times, std::vector<double> &values) const {
    seriesOf({{key, selector}}, start, end).front().appendTo(times, values);
}

std::vector<SeriesPoints> QDataSet::seriesOf(const std::vector<SeriesRequest> &requests, double start,
                                             double end, ShortBlocks shortBlocks) const {
    const auto batch = [&] {
        const ReadGuard guard(lock_);
        return SeriesBatch(dataSet_.fragments(), requests, start, end, shortBlocks);
    }();
    return batch.read();
}

void QDataSet::valueRange(const std::string &key, double &low, double &high) const {
    const ReadGuard guard(lock_);
    dataSet_.valueRange(key, low, high);
}

void QDataSet::timeRangeOfInstrument(const std::string &instrument, double &first, double &last) const {
    const ReadGuard guard(lock_);
    dataSet_.timeRangeOfInstrument(instrument, first, last);
}

std::vector<std::string> QDataSet::valueNamesOfInstrumentAndTag(const std::string &instrument,
                                                                const std::string &tag) const {
    const ReadGuard guard(lock_);
    return dataSet_.valueNamesOfInstrumentAndTag(instrument, tag);
}

std::vector<std::string> QDataSet::unitsOfInstrumentAndTag(const std::string &instrument,
                                                           const std::string &tag) const {
    const ReadGuard guard(lock_);
    return dataSet_.unitsOfInstrumentAndTag(instrument, tag);
}

std::vector<std::string> QDataSet::diagnosticNamesOfInstrumentAndTag(const std::string &instrument,
                                                                     const std::string &tag) const {
    const ReadGuard guard(lock_);
    return dataSet_.diagnosticNamesOfInstrumentAndTag(instrument, tag);
}

std::vector<std::shared_ptr<const DataFragment>> QDataSet::fragmentsOf(const std::string &instrument,
                                                                       const std::string &tag) const {
    const ReadGuard guard(lock_);
    return dataSet_.fragmentsOf(instrument, tag);
}

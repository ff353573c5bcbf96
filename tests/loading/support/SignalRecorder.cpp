#include "loading/support/SignalRecorder.h"

#include "loading/QDataSet.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

#include <algorithm>

SignalRecorder::SignalRecorder(const QDataSet &source) {
    const bool isConnected =
        connect(&source, SIGNAL(Progress(const QString &, int, qint64)),
                SLOT(OnProgress(const QString &, int, qint64))) &&
        connect(&source, SIGNAL(Message(const QString &, const QString &)),
                SLOT(OnMessage(const QString &, const QString &))) &&
        connect(&source, SIGNAL(FileLoaded(const QString &)), SLOT(OnFileLoaded(const QString &))) &&
        connect(&source, SIGNAL(FileRemoved(const QString &)), SLOT(OnFileRemoved(const QString &)));
    if (!isConnected) {
        qFatal("a signal of QDataSet is missing");
    }
}

QStringList SignalRecorder::eventsOf(const QString &file) const {
    QStringList found;
    std::copy_if(events_.begin(), events_.end(), std::back_inserter(found),
                 [&file](const QString &event) { return event.section(' ', 1, 1) == file; });
    return found;
}

int SignalRecorder::countStartingWith(const QString &begin) const {
    return static_cast<int>(std::count_if(
        events_.begin(), events_.end(), [&begin](const QString &event) { return event.startsWith(begin); }));
}

bool SignalRecorder::waitUntil(const std::function<bool()> &isReached) {
    const QDeadlineTimer deadline(120'000);
    QTimer wakeUp;
    wakeUp.start(static_cast<int>(deadline.remainingTime()) + 1);
    while (!isReached()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

bool SignalRecorder::waitForEvents(const QString &event, int count) const {
    return waitUntil([&] { return this->count(event) >= count; });
}

void SignalRecorder::OnProgress(const QString &fileName, int percent, qint64 size) {
    record("Progress", fileName, QStringLiteral(" %1 %2").arg(percent).arg(size));
}

void SignalRecorder::OnMessage(const QString &fileName, const QString &text) {
    record("Message", fileName, ' ' + text);
}

void SignalRecorder::OnFileLoaded(const QString &fileName) {
    record("FileLoaded", fileName);
}

void SignalRecorder::OnFileRemoved(const QString &fileName) {
    record("FileRemoved", fileName);
}

void SignalRecorder::record(const char *signal, const QString &fileName, const QString &rest) {
    if (QThread::currentThread() != thread()) {
        qFatal("%s came on a worker's thread", signal);
    }
    const QString event = QLatin1String(signal) + ' ' + fileName.section('/', -1) + rest;
    events_.append(event);
    if (onEvent) {
        onEvent(event);
    }
}

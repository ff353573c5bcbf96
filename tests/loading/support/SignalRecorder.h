#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class QDataSet;

// Writes down the signals of a QDataSet in the order in which they reach the interface thread, each as one
// line: "Progress a.data 0 1234", "Message a.data Checksum errors: 2", "FileLoaded a.data", "FileRemoved
// a.data". Files are named without their folder.
class SignalRecorder : public QObject {
    Q_OBJECT

public:
    explicit SignalRecorder(const QDataSet &source);

    const QStringList &events() const { return events_; }
    QStringList eventsOf(const QString &file) const;
    int count(const QString &event) const { return static_cast<int>(events_.count(event)); }
    int countStartingWith(const QString &begin) const;
    void clear() { events_.clear(); }

    // Processes events until `isReached` holds. False when it does not come true.
    static bool waitUntil(const std::function<bool()> &isReached);
    bool waitForEvents(const QString &event, int count = 1) const;

    // Called at each signal, after it was written down.
    std::function<void(const QString &event)> onEvent;

private:
    void record(const char *signal, const QString &fileName, const QString &rest = QString());

    QStringList events_;

public Q_SLOTS:
    void OnProgress(const QString &fileName, int percent, qint64 size);
    void OnMessage(const QString &fileName, const QString &text);
    void OnFileLoaded(const QString &fileName);
    void OnFileRemoved(const QString &fileName);
};

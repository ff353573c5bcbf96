#pragma once

#include "data/DataSet.h"

#include <QString>
#include <QThread>

#include <atomic>

class QDataSet;

// Loads one file into a data set of its own, on a thread of its own.
class QDataSetThread : public QThread {
    Q_OBJECT

public:
    QDataSetThread(QDataSet *owner, const QString &fileName);

    void cancel() { cancelled_ = true; }
    bool isCancelled() const { return cancelled_; }
    const QString &fileName() const { return fileName_; }
    // Belongs to the worker until ThreadFinished.
    const DataSet &source() const { return source_; }

    // Waits for the end of run(), however long that takes.
    void waitForEnd();

Q_SIGNALS:
    void ThreadFinished(QDataSetThread *thread);

protected:
    void run() override;

private:
    std::atomic<bool> cancelled_ = false;
    QDataSet *owner_;
    DataSet source_;
    QString fileName_;
};

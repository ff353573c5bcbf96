#include "loading/QDataSetThread.h"

#include "data/LockGuards.h"
#include "loading/QDataSet.h"

QDataSetThread::QDataSetThread(QDataSet *owner, const QString &fileName)
    : QThread(owner), owner_(owner), source_(fileName.toStdString()), fileName_(fileName) {}

void QDataSetThread::run() {
    if (owner_ != nullptr) {
        owner_->LoadFile(fileName_, source_, cancelled_);
    }
    Q_EMIT ThreadFinished(this);
    announceThreadEnd(this);
}

void QDataSetThread::waitForEnd() {
    wait();
    acceptThreadEnd(this);
}

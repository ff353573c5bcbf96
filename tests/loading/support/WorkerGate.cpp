#include "loading/support/WorkerGate.h"

#include "loading/QDataSet.h"

#include <QThread>

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>

struct WorkerGate::State {
    mutable std::mutex mutex;
    std::condition_variable changed;
    Chooser isHeld;
    const QThread *interfaceThread = QThread::currentThread();
    std::map<QString, int> permits;
    int held = 0;
    bool isOpen = false;

    void pass(const QString &fileName, int percent) {
        // AddFile tells its progress on the interface thread.
        if (QThread::currentThread() == interfaceThread || !isHeld(fileName, percent)) {
            return;
        }
        std::unique_lock lock(mutex);
        ++held;
        changed.notify_all();
        changed.wait(lock, [&] { return isOpen || permits[fileName] > 0; });
        if (!isOpen) {
            --permits[fileName];
        }
        --held;
        changed.notify_all();
    }
};

WorkerGate::WorkerGate(const QDataSet &source, Chooser isHeld) : state_(std::make_shared<State>()) {
    state_->isHeld = std::move(isHeld);
    QObject::connect(&source, &QDataSet::Progress, [state = state_](const QString &fileName, int percent) {
        state->pass(fileName, percent);
    });
}

WorkerGate::~WorkerGate() {
    open();
}

bool WorkerGate::waitForHeld(int count) {
    std::unique_lock lock(state_->mutex);
    return state_->changed.wait_for(lock, std::chrono::seconds(120), [&] { return state_->held == count; });
}

int WorkerGate::held() const {
    const std::lock_guard lock(state_->mutex);
    return state_->held;
}

void WorkerGate::letGo(const QString &fileName) {
    const std::lock_guard lock(state_->mutex);
    ++state_->permits[fileName];
    state_->changed.notify_all();
}

void WorkerGate::open() {
    const std::lock_guard lock(state_->mutex);
    state_->isOpen = true;
    state_->changed.notify_all();
}

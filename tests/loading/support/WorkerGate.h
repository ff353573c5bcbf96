#pragma once

#include <QString>

#include <functional>
#include <memory>

class QDataSet;

// Holds the workers of a QDataSet inside a Progress signal until they are let go, so that a test knows where
// they are without timing. Opens for good when it is destroyed.
class WorkerGate {
public:
    using Chooser = std::function<bool(const QString &fileName, int percent)>;

    // Holds each worker at the signals that `isHeld` picks: by default the first, before anything is read.
    // It is asked on the workers' threads.
    explicit WorkerGate(
        const QDataSet &source, Chooser isHeld = [](const QString &, int percent) { return percent == 0; });
    ~WorkerGate();
    WorkerGate(const WorkerGate &) = delete;
    WorkerGate &operator=(const WorkerGate &) = delete;

    // Waits until as many workers are held; false when that does not come true.
    bool waitForHeld(int count);
    int held() const;
    // Lets a worker of `fileName` go, now or when it comes.
    void letGo(const QString &fileName);
    // Lets all go and holds nobody any more.
    void open();

private:
    struct State;
    std::shared_ptr<State> state_; // shared with the connection, which may outlive this object by a signal
};

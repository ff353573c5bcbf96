// Threads of Qt that write to one place without a lock, as a mistake in the programs would: the thread
// sanitizer must report it, whatever is suppressed of Qt's own. With the programs' guards it must not.

#include "data/LockGuards.h"

#include <QCoreApplication>
#include <QReadWriteLock>
#include <QThread>

#include <array>
#include <cstdio>
#include <memory>
#include <string_view>

class Count : public QObject {
    Q_OBJECT

public:
    void addGuarded() {
        const WriteGuard guard(lock_);
        value_ = value_ + 1;
    }

public Q_SLOTS:
    void add() { value_ = value_ + 1; }
    void endThread() { thread()->quit(); }

private:
    volatile int value_ = 0; // so that no compiler leaves a write out
    QReadWriteLock lock_;
};

namespace {

// As the workers that load files.
void addInThreads(Count &count, void (Count::*add)()) {
    std::array<std::unique_ptr<QThread>, 2> threads;
    for (auto &thread : threads) {
        thread.reset(QThread::create([&count, add] { (count.*add)(); }));
        thread->start();
    }
    for (auto &thread : threads) {
        thread->wait();
    }
}

// As a queued signal: the event loop calls, out of Qt's library.
void addInEventLoop(Count &count) {
    QThread thread;
    count.moveToThread(&thread);
    thread.start();
    QMetaObject::invokeMethod(&count, "add", Qt::QueuedConnection);
    QMetaObject::invokeMethod(&count, "endThread", Qt::QueuedConnection);
    count.add();
    thread.wait();
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const std::string_view how = argc > 1 ? argv[1] : "";
    Count count;
    if (how == "threads") {
        addInThreads(count, &Count::add);
    } else if (how == "event-loop") {
        addInEventLoop(count);
    } else if (how == "guarded-threads") {
        addInThreads(count, &Count::addGuarded);
    } else {
        std::fputs("Usage: deliberate_race threads|event-loop|guarded-threads\n", stderr);
        return 2;
    }
    std::puts("no report");
    return 0;
}

#include "DeliberateRace.moc"

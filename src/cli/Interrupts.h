#pragma once

#include <csignal>

// Ctrl-C (and a request to terminate) ends the process at once, by that signal, unless it comes while
// something is written that must not be cut: see UncutWrite. A second one always ends it at once.
void installInterruptHandling();

// While it lives on the main thread, an interrupt is only noted; its end then ends the process.
class UncutWrite {
public:
    UncutWrite();
    ~UncutWrite();
    UncutWrite(const UncutWrite &) = delete;
    UncutWrite &operator=(const UncutWrite &) = delete;

    // True when the process is to end as soon as what is written may be cut.
    bool isInterrupted() const;
};

// Threads that are started while it lives leave interrupts to the main thread.
class InterruptsBlocked {
public:
    InterruptsBlocked();
    ~InterruptsBlocked();
    InterruptsBlocked(const InterruptsBlocked &) = delete;
    InterruptsBlocked &operator=(const InterruptsBlocked &) = delete;

private:
    sigset_t previous_{};
};

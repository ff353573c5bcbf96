#include "cli/Interrupts.h"

#include <array>
#include <pthread.h>

namespace {

constexpr std::array<int, 2> interrupts{SIGINT, SIGTERM};

// Shared by the main thread and the handler that runs on it.
volatile std::sig_atomic_t writing = 0;
volatile std::sig_atomic_t noted = 0;

// The system's own handling is back in place when the handler runs, so raising the signal again ends the
// process by it.
extern "C" void onInterrupt(int signal) {
    if (writing != 0) {
        noted = signal;
    } else {
        ::raise(signal);
    }
}

} // namespace

void installInterruptHandling() {
    for (const int signal : interrupts) {
        struct sigaction action {};
        // A process that was told to ignore interrupts goes on doing so.
        if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) {
            continue;
        }
        action = {};
        action.sa_handler = onInterrupt;
        // Writes that wait are not taken up again: they must learn of the interrupt.
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        ::sigaction(signal, &action, nullptr);
    }
}

UncutWrite::UncutWrite() {
    writing = 1;
}

UncutWrite::~UncutWrite() {
    writing = 0;
    if (noted != 0) {
        ::raise(noted);
    }
}

bool UncutWrite::isInterrupted() const {
    return noted != 0;
}

InterruptsBlocked::InterruptsBlocked() {
    sigset_t blocked;
    sigemptyset(&blocked);
    for (const int signal : interrupts) {
        sigaddset(&blocked, signal);
    }
    ::pthread_sigmask(SIG_BLOCK, &blocked, &previous_);
}

InterruptsBlocked::~InterruptsBlocked() {
    ::pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
}

#include "support/RunningCase.h"

#include "support/SanitizerBuild.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstddef>
#include <unistd.h>
#include <utility>

#ifdef FVQA_SANITIZER_BUILD
#include <sanitizer/common_interface_defs.h>
#endif

namespace {

// A dying process may neither allocate nor take locks, so all is there before.
std::array<char, 256> line{};
std::size_t lineLength = 0; // 0 while no case runs

void tellCase() {
    for (std::size_t at = 0; at < lineLength;) {
        const ssize_t written = ::write(STDERR_FILENO, line.data() + at, lineLength - at);
        if (written <= 0) {
            return;
        }
        at += static_cast<std::size_t>(written);
    }
}

// The sanitizers report the others themselves, and call us when they have.
#ifdef FVQA_SANITIZER_BUILD
constexpr std::array deadlySignals{SIGABRT, SIGILL};
#else
constexpr std::array deadlySignals{SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL};
#endif
std::array<struct sigaction, deadlySignals.size()> actionsBefore{};

// Tells the case and leaves the rest to whoever took the signal before.
void onDeadlySignal(int signal) {
    tellCase();
    for (std::size_t i = 0; i < deadlySignals.size(); ++i) {
        if (deadlySignals[i] == signal) {
            ::sigaction(signal, &actionsBefore[i], nullptr);
        }
    }
    ::raise(signal);
}

void watchForDeath() {
#ifdef FVQA_SANITIZER_BUILD
    __sanitizer_set_death_callback(tellCase);
#endif
    struct sigaction action {};
    action.sa_handler = onDeadlySignal;
    for (std::size_t i = 0; i < deadlySignals.size(); ++i) {
        ::sigaction(deadlySignals[i], &action, &actionsBefore[i]);
    }
}

} // namespace

RunningCase::RunningCase(std::string text) : text_(std::move(text)) {
    static const bool isWatching = [] {
        watchForDeath();
        return true;
    }();
    static_cast<void>(isWatching);
    const std::string whole = "\nIt died in the case " + text_.substr(0, 200) + '\n';
    std::copy(whole.begin(), whole.end(), line.begin());
    lineLength = whole.size();
}

RunningCase::~RunningCase() {
    lineLength = 0;
}

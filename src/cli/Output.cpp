#include "cli/Output.h"

#include "cli/Interrupts.h"
#include "cli/StandardError.h"

#include <cerrno>
#include <unistd.h>

namespace {

constexpr std::size_t blockSize = std::size_t{256} * 1024;

[[noreturn]] void fail() {
    throw OutputError(errno, std::generic_category());
}

} // namespace

Output::Output(int descriptor, StandardError &standardError)
    : descriptor_(descriptor), standardError_(standardError) {}

void Output::write(std::string_view lines) {
    held_.append(lines);
    if (held_.size() >= blockSize) {
        flush();
    }
}

void Output::finish() {
    flush();
    // A full disk on a server may show only now.
    if (::close(descriptor_) != 0) {
        fail();
    }
}

void Output::flush() {
    if (held_.empty()) {
        return;
    }
    const StandardError::Pause pause(standardError_);
    const UncutWrite uncut;
    std::string_view rest = held_;
    bool atLineEnd = true;
    while (!rest.empty()) {
        // After an interrupt, only the line that has been begun is written.
        std::string_view piece = rest;
        if (uncut.isInterrupted()) {
            piece = atLineEnd ? std::string_view() : rest.substr(0, rest.find('\n') + 1);
        }
        if (piece.empty()) {
            return;
        }
        const ssize_t count = ::write(descriptor_, piece.data(), piece.size());
        if (count < 0 && errno != EINTR) {
            fail();
        }
        if (count > 0) {
            atLineEnd = piece[static_cast<std::size_t>(count) - 1] == '\n';
            rest.remove_prefix(static_cast<std::size_t>(count));
        }
    }
    held_.clear();
}

#include "cli/StandardError.h"

#include <cerrno>
#include <iostream>
#include <unistd.h>

namespace {

constexpr std::string_view linePrefix = "fvqa300-cli: ";
constexpr std::string_view eraseLine = "\r\033[K";

} // namespace

StandardError::StandardError(int descriptor) : descriptor_(descriptor), previous_(std::cerr.rdbuf(this)) {}

StandardError::~StandardError() {
    std::cerr.rdbuf(previous_);
    erase();
    for (const auto &[thread, line] : unfinished_) {
        if (!line.empty()) {
            writeLine(line);
        }
    }
}

bool StandardError::hasFailures() const {
    const std::lock_guard guard(mutex_);
    return hasFailures_;
}

void StandardError::remark(std::string_view line) {
    const std::lock_guard guard(mutex_);
    writeLine(line);
}

void StandardError::allowStatus(bool allowed) {
    const std::lock_guard guard(mutex_);
    statusAllowed_ = allowed;
}

void StandardError::showStatus(std::string_view status) {
    const std::lock_guard guard(mutex_);
    if (statusAllowed_) {
        status_ = status;
        writeRaw(std::string(eraseLine) + status_);
    }
}

void StandardError::eraseStatus() {
    const std::lock_guard guard(mutex_);
    erase();
}

StandardError::Pause::Pause(StandardError &standardError) : lock_(standardError.mutex_) {
    standardError.erase();
}

StandardError::int_type StandardError::overflow(int_type c) {
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
        const char character = traits_type::to_char_type(c);
        take({&character, 1});
    }
    return traits_type::not_eof(c);
}

std::streamsize StandardError::xsputn(const char *text, std::streamsize count) {
    take({text, static_cast<std::size_t>(count)});
    return count;
}

void StandardError::take(std::string_view text) {
    const std::lock_guard guard(mutex_);
    hasFailures_ = true;
    std::string &line = unfinished_[std::this_thread::get_id()];
    for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        line.append(text.substr(0, end));
        writeLine(line);
        line.clear();
        text.remove_prefix(end + 1);
    }
    line.append(text);
}

void StandardError::writeLine(std::string_view line) {
    std::string whole(status_.empty() ? std::string_view() : eraseLine);
    whole.append(linePrefix).append(line).append("\n").append(status_);
    writeRaw(whole);
}

// There is nowhere to report that standard error itself cannot be written.
void StandardError::writeRaw(std::string_view text) const {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor_, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return;
        }
        text.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
}

void StandardError::erase() {
    if (!status_.empty()) {
        writeRaw(eraseLine);
        status_.clear();
    }
}

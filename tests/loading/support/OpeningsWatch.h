#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>
#include <sys/inotify.h>
#include <unistd.h>

// Counts how often files of a folder are opened.
class OpeningsWatch {
public:
    explicit OpeningsWatch(const std::string &folder) : queue_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        // With the closings, equal events never follow each other: those would count as one.
        if (queue_ < 0 || ::inotify_add_watch(queue_, folder.c_str(), IN_OPEN | IN_CLOSE) < 0) {
            throw std::runtime_error("the folder cannot be watched");
        }
    }
    ~OpeningsWatch() { ::close(queue_); }
    OpeningsWatch(const OpeningsWatch &) = delete;
    OpeningsWatch &operator=(const OpeningsWatch &) = delete;

    // Since the last call.
    std::size_t count() const {
        std::size_t openings = 0;
        std::array<char, 65536> bytes{};
        for (ssize_t size = 0; (size = ::read(queue_, bytes.data(), bytes.size())) > 0;) {
            for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
                inotify_event event{};
                std::memcpy(&event, &bytes.at(at), sizeof event);
                openings += (event.mask & IN_OPEN) != 0 ? 1 : 0;
                at += sizeof event + event.len;
            }
        }
        return openings;
    }

private:
    int queue_;
};

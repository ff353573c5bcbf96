#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

// The C library's reader of the same zone file, to compare with. Sets the process's TZ while it lives.
class LibraryClock {
public:
    explicit LibraryClock(const std::string &zoneFile);
    ~LibraryClock();
    LibraryClock(const LibraryClock &) = delete;
    LibraryClock &operator=(const LibraryClock &) = delete;

    std::tm localTime(std::int64_t utcSeconds) const;

    // The file's transitions since 1970, in order.
    const std::vector<std::int64_t> &transitions() const { return transitions_; }

private:
    std::optional<std::string> previousZone_;
    std::vector<std::int64_t> transitions_;
};

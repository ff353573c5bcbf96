#pragma once

#include <cstdint>
#include <mutex>
#include <string>

class StandardError;

// A bar on standard error that shows how much of a total is done; erased when it goes. Any thread may call.
class ProgressBar {
public:
    // `total` in any unit; nothing is shown for 0.
    ProgressBar(StandardError &standardError, std::string title, std::int64_t total);
    ~ProgressBar();
    ProgressBar(const ProgressBar &) = delete;
    ProgressBar &operator=(const ProgressBar &) = delete;

    // More of the total is done.
    void advance(std::int64_t amount);

private:
    void draw(int percent);

    StandardError &standardError_;
    std::string title_;
    std::int64_t total_;
    std::mutex mutex_; // guards all below
    std::int64_t done_ = 0;
    int shownPercent_ = -1;
};

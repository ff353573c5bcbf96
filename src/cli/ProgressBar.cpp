#include "cli/ProgressBar.h"

#include "cli/StandardError.h"

#include <algorithm>
#include <utility>

ProgressBar::ProgressBar(StandardError &standardError, std::string title, std::int64_t total)
    : standardError_(standardError), title_(std::move(title)), total_(total) {
    advance(0);
}

ProgressBar::~ProgressBar() {
    standardError_.eraseStatus();
}

void ProgressBar::advance(std::int64_t amount) {
    const std::lock_guard guard(mutex_);
    done_ += amount;
    if (total_ <= 0) {
        return;
    }
    // Files may have grown since their sizes were summed.
    const auto percent =
        static_cast<int>(100.0 * std::min(1.0, static_cast<double>(done_) / static_cast<double>(total_)));
    if (percent > shownPercent_) {
        shownPercent_ = percent;
        draw(percent);
    }
}

void ProgressBar::draw(int percent) {
    constexpr int cells = 40;
    const auto filled = static_cast<std::size_t>(percent * cells / 100);
    const std::string number = std::to_string(percent);
    standardError_.showStatus(title_ + " [" + std::string(filled, '#') + std::string(cells - filled, '-') +
                              "] " + std::string(3 - number.size(), ' ') + number + " %");
}

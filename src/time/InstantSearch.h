#pragma once

#include "time/Timezone.h"

#include <cstdint>
#include <ctime>

// Search for the instant at which a zone's clock shows a given local time: first in steps that double until
// the time is between two instants, then by halving. Never leaves the instants whose year fits an int, so it
// ends for any fields; without an exact hit the instant looked at last is the answer.
class InstantSearch {
public:
    InstantSearch(Timezone &zone, const std::tm &wanted) : zone_(zone), wanted_(wanted) {}

    void run(std::int64_t guess);

    // What was looked at last.
    std::int64_t instant() const { return instant_; }
    const std::tm &calendar() const { return calendar_; }
    const TimezoneInfo &info() const { return info_; }

private:
    int compareAt(std::int64_t instant);
    void stepBack();
    void stepForward();
    void bisect(std::int64_t lo, std::int64_t hi);

    Timezone &zone_;
    const std::tm &wanted_;
    std::int64_t instant_ = 0;
    std::tm calendar_{};
    TimezoneInfo info_;
};

#include "time/InstantSearch.h"

#include <algorithm>

namespace {

// Instants whose local year fits an int whatever 32-bit offset the zone has.
constexpr std::int64_t largestOffset = std::int64_t{1} << 31;
constexpr std::int64_t firstInstant = -67768040609740800 + largestOffset;
constexpr std::int64_t lastInstant = 67768036191676799 - largestOffset;

constexpr std::int64_t firstStep = 3600;

// -1, 0 or 1 as `a` is before, at or after `b`. Fields out of range compare as they stand.
int compareCalendars(const std::tm &a, const std::tm &b) {
    for (const auto field :
         {&std::tm::tm_year, &std::tm::tm_mon, &std::tm::tm_mday, &std::tm::tm_hour, &std::tm::tm_min}) {
        if (a.*field != b.*field) {
            return a.*field < b.*field ? -1 : 1;
        }
    }
    return a.tm_sec == b.tm_sec ? 0 : a.tm_sec < b.tm_sec ? -1 : 1;
}

} // namespace

void InstantSearch::run(std::int64_t guess) {
    const int order = compareAt(std::clamp(guess, firstInstant, lastInstant));
    if (order < 0) {
        stepBack();
    } else if (order > 0) {
        stepForward();
    }
}

int InstantSearch::compareAt(std::int64_t instant) {
    instant_ = instant;
    zone_.localTime(instant, &calendar_, &info_);
    return compareCalendars(wanted_, calendar_);
}

void InstantSearch::stepBack() {
    int order = -1;
    std::int64_t hi = instant_;
    for (std::int64_t step = firstStep; order < 0; step *= 2) {
        if (instant_ == firstInstant) {
            return;
        }
        hi = instant_;
        order = compareAt(std::max(hi - step, firstInstant));
    }
    if (order != 0) {
        bisect(instant_, hi);
    }
}

void InstantSearch::stepForward() {
    int order = 1;
    std::int64_t lo = instant_;
    for (std::int64_t step = firstStep; order > 0; step *= 2) {
        if (instant_ == lastInstant) {
            return;
        }
        lo = instant_;
        order = compareAt(std::min(lo + step, lastInstant));
    }
    if (order != 0) {
        bisect(lo, instant_);
    }
}

void InstantSearch::bisect(std::int64_t lo, std::int64_t hi) {
    while (hi - lo >= 2) {
        const std::int64_t middle = lo + (hi - lo) / 2;
        const int order = compareAt(middle);
        if (order == 0) {
            return;
        }
        (order < 0 ? hi : lo) = middle;
    }
}

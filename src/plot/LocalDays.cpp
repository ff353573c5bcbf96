#include "plot/LocalDays.h"

#include <tuple>

namespace {

constexpr int secondsPerDay = 86400;

int secondOfDay(const std::tm &local) {
    return local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec;
}

bool isEarlierDay(const std::tm &a, const std::tm &b) {
    return std::tie(a.tm_year, a.tm_mon, a.tm_mday) < std::tie(b.tm_year, b.tm_mon, b.tm_mday);
}

} // namespace

std::int64_t startOfDay(const std::tm &date, Timezone &zone) {
    std::tm midnight{};
    midnight.tm_year = date.tm_year;
    midnight.tm_mon = date.tm_mon;
    midnight.tm_mday = date.tm_mday;
    midnight.tm_isdst = -1;
    const std::int64_t found = zone.makeTime(midnight);
    // The search for a midnight that was skipped ends on either side of the gap.
    std::tm shown{};
    return isEarlierDay(*zone.localTime(found, &shown), date) ? found + 1 : found;
}

std::int64_t nearestMidnight(std::int64_t utcSeconds, Timezone &zone) {
    std::tm local{};
    zone.localTime(utcSeconds, &local);
    const int second = secondOfDay(local);
    if (second == 0) {
        return utcSeconds;
    }
    if (second >= secondsPerDay / 2) {
        // Some hours into the next day, so that a clock set back meanwhile does not hold the date.
        zone.localTime(utcSeconds + secondsPerDay - second + secondsPerDay / 4, &local);
    }
    return startOfDay(local, zone);
}

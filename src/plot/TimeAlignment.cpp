#include "plot/TimeAlignment.h"

#include "plot/LocalDays.h"

#include <algorithm>
#include <cmath>
#include <ctime>

namespace {

constexpr std::int64_t secondsPerDay = 86400;
constexpr double calendarEnd = 9007199254740992; // 2^53

int secondOfHour(const std::tm &local) {
    return local.tm_min * 60 + local.tm_sec;
}

int secondOfDay(const std::tm &local) {
    return local.tm_hour * 3600 + secondOfHour(local);
}

// `first` plus the whole lengths that fit up to `last`, and one more on demand. The span has 32 bits and
// wraps beyond 136 years.
TimeSpan wholeLengths(std::int64_t first, std::int64_t last, std::int64_t length, bool oneMore) {
    const auto span = static_cast<std::uint32_t>(last - first);
    const std::int64_t lengths = span / static_cast<std::uint32_t>(length) + (oneMore ? 1U : 0U);
    return {first, first + lengths * length};
}

// Begin of the month that is `months` after January 1900.
std::int64_t startOfMonth(std::int64_t months, Timezone &zone) {
    std::tm date{};
    date.tm_year = static_cast<int>(months / 12);
    date.tm_mon = static_cast<int>(months % 12);
    if (date.tm_mon < 0) {
        date.tm_mon += 12;
        --date.tm_year;
    }
    date.tm_mday = 1;
    return startOfDay(date, zone);
}

TimeSpan alignToMonths(const std::tm &first, const std::tm &last, int count, Timezone &zone) {
    const auto roundedDown = [count](const std::tm &local) {
        return std::int64_t{12} * local.tm_year + local.tm_mon - local.tm_mon % count;
    };
    const bool isWhole = last.tm_mday == 1 && secondOfDay(last) == 0;
    return {startOfMonth(roundedDown(first), zone),
            startOfMonth(roundedDown(last) + (isWhole ? 0 : count), zone)};
}

TimeSpan alignToYears(const std::tm &first, const std::tm &last, int count, Timezone &zone) {
    const auto roundedDown = [count](const std::tm &local) {
        return std::int64_t{12} * (local.tm_year - local.tm_year % count);
    };
    const bool isWhole = last.tm_yday == 0 && secondOfDay(last) == 0;
    return {startOfMonth(roundedDown(first), zone),
            startOfMonth(roundedDown(last) + (isWhole ? 0 : 12 * count), zone)};
}

} // namespace

std::int64_t wholeSeconds(double utcSeconds) {
    return std::isnan(utcSeconds)
               ? 0
               : static_cast<std::int64_t>(std::clamp(utcSeconds, -calendarEnd, calendarEnd));
}

std::optional<TimeSpan> alignTimes(double x1, double x2, const TimeStep &step, Timezone &zone) {
    if (!(x1 >= -calendarEnd && x1 <= x2 && x2 <= calendarEnd)) {
        return std::nullopt;
    }
    const std::int64_t t1 = wholeSeconds(x1);
    const std::int64_t t2 = wholeSeconds(x2 + 0.999);
    std::tm local1{};
    std::tm local2{};
    zone.localTime(t1, &local1);
    zone.localTime(t2, &local2);

    const int count = step.count;
    switch (step.unit) {
    case TimeUnit::seconds:
        return wholeLengths(t1 - local1.tm_sec % count, t2, count, false);
    case TimeUnit::minutes:
        return wholeLengths(t1 - (local1.tm_min % count * 60 + local1.tm_sec), t2, 60L * count,
                            local2.tm_sec >= 1);
    case TimeUnit::hours:
        return wholeLengths(t1 - (local1.tm_hour % count * 3600 + secondOfHour(local1)), t2, 3600L * count,
                            secondOfHour(local2) != 0);
    case TimeUnit::days:
        return wholeLengths(t1 - (local1.tm_mday % count * secondsPerDay + secondOfDay(local1)), t2,
                            secondsPerDay * count, !(local2.tm_mday == 1 && secondOfDay(local2) == 0));
    case TimeUnit::months:
        return alignToMonths(local1, local2, count, zone);
    case TimeUnit::years:
        return alignToYears(local1, local2, count, zone);
    }
    return std::nullopt;
}

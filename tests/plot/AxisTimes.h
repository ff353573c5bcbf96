#pragma once

#include "time/Timezone.h"

#include <chrono>
#include <cstdint>
#include <ctime>
#include <string>

// UTC seconds of a calendar time in UTC.
constexpr std::int64_t utc(int year, unsigned month, unsigned day, std::int64_t hour = 0,
                           std::int64_t minute = 0, std::int64_t second = 0) {
    using namespace std::chrono;
    const sys_days date{std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day)};
    return date.time_since_epoch().count() * std::int64_t{86400} + hour * 3600 + minute * 60 + second;
}

inline Timezone zoneNamed(const std::string &name) {
    return Timezone(FVQA_ZONEINFO_DIR, name);
}

// "2021-03-04 13:05:07" on the zone's clock.
inline std::string localText(std::int64_t utcSeconds, Timezone &zone) {
    std::tm local{};
    zone.localTime(utcSeconds, &local);
    char text[64];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    return text;
}

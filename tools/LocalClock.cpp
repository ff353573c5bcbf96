#include "tools/LocalClock.h"

#include <utility>

namespace {

void setDigits(std::string &text, std::size_t position, std::size_t count, int value) {
    for (std::size_t i = position + count; i > position; --i, value /= 10) {
        text[i - 1] = static_cast<char>('0' + value % 10);
    }
}

} // namespace

LocalClock::LocalClock(Timezone zone) : zone_(std::move(zone)), date_("0000-00-00"), time_("00:00:00:") {}

void LocalClock::moveTo(std::int64_t utcSeconds) {
    std::tm local{};
    TimezoneInfo info;
    zone_.localTime(utcSeconds, &local, &info);
    utc_ = utcSeconds;
    if (!started_) {
        started_ = true;
        sunOffset_ = info.utcOffset;
    }
    seconds_ = std::to_string(utcSeconds);
    setDigits(date_, 0, 4, local.tm_year + 1900);
    setDigits(date_, 5, 2, local.tm_mon + 1);
    setDigits(date_, 8, 2, local.tm_mday);
    setDigits(time_, 0, 2, local.tm_hour);
    setDigits(time_, 3, 2, local.tm_min);
    setDigits(time_, 6, 2, local.tm_sec);
}

std::string LocalClock::fileStamp() const {
    return date_ + "T" + time_.substr(0, 2) + time_.substr(3, 2) + time_.substr(6, 2);
}

double LocalClock::dayFraction() const {
    constexpr std::int64_t day = 86400;
    const std::int64_t second = ((utc_ + sunOffset_) % day + day) % day;
    return static_cast<double>(second) / static_cast<double>(day);
}

#include "data/RecordClock.h"

namespace {

constexpr int tmYearBase = 1900;

bool isSameLocalTime(const RecordStamp &a, const RecordStamp &b) {
    return a.second == b.second && a.minute == b.minute && a.hour == b.hour && a.day == b.day &&
           a.month == b.month && a.year == b.year;
}

std::tm toCalendar(const RecordStamp &stamp) {
    std::tm calendar{};
    calendar.tm_year = stamp.year - tmYearBase;
    calendar.tm_mon = stamp.month - 1;
    calendar.tm_mday = stamp.day;
    calendar.tm_hour = stamp.hour;
    calendar.tm_min = stamp.minute;
    calendar.tm_sec = stamp.second;
    calendar.tm_isdst = -1; // the zone decides
    return calendar;
}

void setDate(RecordStamp &stamp, const std::tm &calendar) {
    stamp.year = static_cast<std::uint16_t>(calendar.tm_year + tmYearBase);
    stamp.month = static_cast<std::uint8_t>(calendar.tm_mon + 1);
    stamp.day = static_cast<std::uint8_t>(calendar.tm_mday);
}

void setTimeOfDay(RecordStamp &stamp, const std::tm &calendar) {
    stamp.hour = static_cast<std::uint8_t>(calendar.tm_hour);
    stamp.minute = static_cast<std::uint8_t>(calendar.tm_min);
    stamp.second = static_cast<std::uint8_t>(calendar.tm_sec);
}

} // namespace

void RecordClock::complete(RecordStamp &stamp) {
    constexpr std::uint8_t dateAndTime = RecordStamp::hasDate | RecordStamp::hasTimeOfDay;
    if (stamp.flags == dateAndTime && (stamp.seconds == 0 || zone_.isUnknown())) {
        secondsFromLocalTime(stamp);
    } else {
        localTimeFromSeconds(stamp);
        stamp.flags = dateAndTime;
    }
}

void RecordClock::secondsFromLocalTime(RecordStamp &stamp) {
    hasSearchedZone_ = hasSearchedZone_ || !zone_.isUnknown();
    if (!sharesSeconds_ || !isSameLocalTime(stamp, last_)) {
        std::tm calendar = toCalendar(stamp);
        TimezoneInfo info;
        const std::int64_t seconds = zone_.makeTime(calendar, &info);
        std::tm found{};
        zone_.localTime(seconds, &found);
        last_ = stamp;
        last_.seconds = static_cast<std::uint32_t>(seconds);
        last_.utcOffset = info.utcOffset;
        RecordStamp met = stamp;
        setDate(met, found);
        setTimeOfDay(met, found);
        // A skipped local time is not met by any instant, and searching for it again may end elsewhere.
        sharesSeconds_ = isSameLocalTime(met, stamp);
        sharesLocalTime_ = false;
    }
    stamp.seconds = last_.seconds;
    stamp.utcOffset = last_.utcOffset;
}

void RecordClock::localTimeFromSeconds(RecordStamp &stamp) {
    if (!sharesLocalTime_ || stamp.seconds != last_.seconds) {
        std::tm calendar{};
        TimezoneInfo info;
        zone_.localTime(stamp.seconds, &calendar, &info);
        last_.seconds = stamp.seconds;
        last_.utcOffset = info.utcOffset;
        setDate(last_, calendar);
        setTimeOfDay(last_, calendar);
        sharesLocalTime_ = true;
        sharesSeconds_ = false;
    }
    stamp.utcOffset = last_.utcOffset;
    if ((stamp.flags & RecordStamp::hasDate) == 0) {
        stamp.year = last_.year;
        stamp.month = last_.month;
        stamp.day = last_.day;
    }
    if ((stamp.flags & RecordStamp::hasTimeOfDay) == 0) {
        stamp.hour = last_.hour;
        stamp.minute = last_.minute;
        stamp.second = last_.second;
    }
}

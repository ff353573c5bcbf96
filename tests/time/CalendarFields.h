#pragma once

#include <ctime>
#include <string>

// A local time as people write it; month 1 to 12.
inline std::tm calendar(int year, int month, int day, int hour = 0, int minute = 0, int second = 0,
                        int isDst = -1) {
    std::tm fields{};
    fields.tm_year = year - 1900;
    fields.tm_mon = month - 1;
    fields.tm_mday = day;
    fields.tm_hour = hour;
    fields.tm_min = minute;
    fields.tm_sec = second;
    fields.tm_isdst = isDst;
    return fields;
}

// "2020-3-29 1:59:59": the six fields that name a local time, for comparing and for messages.
inline std::string written(const std::tm &fields) {
    const auto number = [](long long value) { return std::to_string(value); };
    return number(fields.tm_year + 1900LL) + "-" + number(fields.tm_mon + 1LL) + "-" +
           number(fields.tm_mday) + " " + number(fields.tm_hour) + ":" + number(fields.tm_min) + ":" +
           number(fields.tm_sec);
}

// The same with weekday, day of year and DST flag: "2020-3-29 1:59:59 w0 y88 d0".
inline std::string writtenInFull(const std::tm &fields) {
    return written(fields) + " w" + std::to_string(fields.tm_wday) + " y" + std::to_string(fields.tm_yday) +
           " d" + std::to_string(fields.tm_isdst);
}

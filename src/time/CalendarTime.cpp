#include "time/CalendarTime.h"

#include <limits>

namespace {

constexpr std::int64_t secondsPerDay = 86400;

// The calendar repeats every 400 years. Years begin in March here, so that the leap day comes last.
constexpr std::int64_t daysPerEra = 146097;
constexpr std::int64_t daysFromEraToEpoch = 719468; // 0000-03-01 to 1970-01-01
constexpr std::uint32_t weekdayOfEra = 3;           // each era begins on a Wednesday

// Quotient toward minus infinity, and the remainder that goes with it.
struct Division {
    std::int64_t quotient;
    std::uint32_t remainder;
};

constexpr Division divideDown(std::int64_t number, std::int64_t divisor) {
    std::int64_t quotient = number / divisor;
    std::int64_t remainder = number % divisor;
    if (remainder < 0) {
        remainder += divisor;
        --quotient;
    }
    return {quotient, static_cast<std::uint32_t>(remainder)};
}

} // namespace

bool breakDownUtc(std::int64_t seconds, std::tm &calendar) {
    const auto [day, secondOfDay] = divideDown(seconds, secondsPerDay);
    const auto [era, dayOfEra] = divideDown(day + daysFromEraToEpoch, daysPerEra);

    const std::uint32_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::uint32_t dayOfMarchYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    // From March on, month lengths follow the line 30.6 * month, in whole numbers.
    const std::uint32_t marchMonth = (5 * dayOfMarchYear + 2) / 153;
    const bool isNextYear = marchMonth >= 10; // January and February

    const std::int64_t year = era * 400 + yearOfEra + (isNextYear ? 1 : 0) - 1900;
    if (year < std::numeric_limits<int>::min() || year > std::numeric_limits<int>::max()) {
        return false;
    }
    const bool isLeapYear = yearOfEra % 4 == 0 && (yearOfEra % 100 != 0 || yearOfEra == 0);
    const std::uint32_t dayOfYear =
        isNextYear ? dayOfMarchYear - 306 : dayOfMarchYear + 59 + (isLeapYear ? 1 : 0);

    calendar.tm_sec = static_cast<int>(secondOfDay % 60);
    calendar.tm_min = static_cast<int>(secondOfDay / 60 % 60);
    calendar.tm_hour = static_cast<int>(secondOfDay / 3600);
    calendar.tm_mday = static_cast<int>(dayOfMarchYear - (153 * marchMonth + 2) / 5 + 1);
    calendar.tm_mon = static_cast<int>(isNextYear ? marchMonth - 10 : marchMonth + 2);
    calendar.tm_year = static_cast<int>(year);
    calendar.tm_wday = static_cast<int>((dayOfEra + weekdayOfEra) % 7);
    calendar.tm_yday = static_cast<int>(dayOfYear);
    calendar.tm_isdst = 0;
    return true;
}

#include "plot/TimeLabels.h"

#include <array>
#include <cstddef>
#include <ctime>

namespace {

constexpr std::array monthNames{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

std::tm localTime(std::int64_t utcSeconds, Timezone &zone) {
    std::tm local{};
    return *zone.localTime(utcSeconds, &local);
}

std::string padded(std::int64_t number, std::size_t width) {
    std::string digits = std::to_string(number);
    return digits.size() < width ? digits.insert(0, width - digits.size(), '0') : digits;
}

std::string timeOfDay(const std::tm &local) {
    if (local.tm_hour == 0 && local.tm_min == 0 && local.tm_sec == 0) {
        return {};
    }
    std::string text = padded(local.tm_hour, 2) + ":" + padded(local.tm_min, 2);
    if (local.tm_sec != 0) {
        text += ":" + padded(local.tm_sec, 2);
    }
    return text;
}

std::string dayLine(const std::tm &local) {
    return std::string(monthNames[static_cast<std::size_t>(local.tm_mon)]) + " " +
           std::to_string(local.tm_mday) + "\n";
}

std::string year(const std::tm &local) {
    return padded(local.tm_year + std::int64_t{1900}, 4);
}

} // namespace

std::string timeLabelText(std::int64_t utcSeconds, std::optional<std::int64_t> reference, Timezone &zone) {
    const std::tm local = localTime(utcSeconds, zone);
    std::string text = timeOfDay(local);
    if (!text.empty()) {
        text += '\n';
    }
    if (!reference) {
        return text + dayLine(local) + year(local);
    }
    const std::tm other = localTime(*reference, zone);
    if (local.tm_year != other.tm_year) {
        return text + dayLine(local) + year(local);
    }
    return local.tm_mon == other.tm_mon && local.tm_mday == other.tm_mday ? text : text + dayLine(local);
}

std::string timeOfDayLabelText(std::int64_t utcSeconds, Timezone &zone) {
    const std::string text = timeOfDay(localTime(utcSeconds, zone));
    return text.empty() ? timeLabelText(utcSeconds, std::nullopt, zone) : text;
}

#pragma once

#include "cli/Arguments.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

// Reading the values of options.

inline std::string quoted(std::string_view text) {
    return "'" + std::string(text) + "'";
}

// The whole text as a number, in no locale's manner.
template <typename Number>
std::optional<Number> numberFrom(std::string_view text) {
    Number number{};
    const char *const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return number;
}

// UTC seconds. Throws UsageError.
inline double timeFrom(std::string_view option, std::string_view value) {
    const auto time = numberFrom<double>(value);
    if (!time || std::isnan(*time)) {
        throw UsageError(std::string(option) + " takes a time in UTC seconds, not " + quoted(value));
    }
    return *time;
}

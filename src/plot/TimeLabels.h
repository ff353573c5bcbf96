#pragma once

#include "time/Timezone.h"

#include <cstdint>
#include <optional>
#include <string>

// Texts of a time axis' labels, in the zone's local time. They are English in every locale.

// "13:05", "13:05:07" when there are seconds, nothing at midnight; below it, where it differs from the
// reference's or there is no reference, the date: "Mar 4", and below that the year unless the reference has
// the same. Time and day keep the line feed behind them when nothing follows.
std::string timeLabelText(std::int64_t utcSeconds, std::optional<std::int64_t> reference, Timezone &zone);

// The time of day alone; at midnight, which has none, the whole date.
std::string timeOfDayLabelText(std::int64_t utcSeconds, Timezone &zone);

#pragma once

#include "time/Timezone.h"

#include <cstdint>
#include <ctime>

// Midnights of a zone as UTC seconds. Where the clock is set forward at midnight, the day begins with the
// first second that it shows.

// Begin of the day that year, month and day of `date` name; the other fields do not matter.
std::int64_t startOfDay(const std::tm &date, Timezone &zone);

// The midnight nearest to `utcSeconds`.
std::int64_t nearestMidnight(std::int64_t utcSeconds, Timezone &zone);

#pragma once

#include <cstdint>
#include <ctime>

// Breaks seconds since 1970-01-01 00:00:00 into the nine standard calendar fields of the proleptic Gregorian
// calendar, as the C run time's gmtime does (DST flag 0), but without its lock, which ten loading threads
// would queue at. Returns false, leaving `calendar` as it is, when the year does not fit an int.
bool breakDownUtc(std::int64_t seconds, std::tm &calendar);

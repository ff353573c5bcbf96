#pragma once

#include "plot/TimeSteps.h"
#include "time/Timezone.h"

#include <cstdint>
#include <optional>

// From `first` to `last`, in whole UTC seconds.
struct TimeSpan {
    std::int64_t first;
    std::int64_t last;
};

// An axis value without its fraction. Values beyond some hundred million years, where a double has no whole
// seconds left and calendars end, give the bound; what is no number gives 0.
std::int64_t wholeSeconds(double utcSeconds);

// The times from `x1` to `x2` (not before `x1`) widened to local times that are whole for the step. None when
// an end is no number or beyond any calendar.
//
// Widened as it always has been, so that axes keep their ends: an end on a whole minute may be rounded down
// to the step, and days are counted by 86,400 s and by the day of the month.
std::optional<TimeSpan> alignTimes(double x1, double x2, const TimeStep &step, Timezone &zone);

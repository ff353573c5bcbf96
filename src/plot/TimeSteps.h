#pragma once

#include <array>

enum class TimeUnit { seconds, minutes, hours, days, months, years };

// A distance between two labelled ticks of a time axis that reads well on a calendar: `count` units.
struct TimeStep {
    double seconds; // nominal: what months and years have on average does not matter here
    TimeUnit unit;
    int count;
    double minorSeconds; // distance of the small ticks between
};

// All steps, the finest first. The last one, a year, is for everything that is too long for the others.
extern const std::array<TimeStep, 16> timeSteps;

// The finest step of which at most `budget` fit into `width` seconds; a year when none does, also when
// `width` is no number.
const TimeStep &timeStepForWidth(double width, int budget);

// The finest step that is no shorter than `seconds`, whatever its sign; a year when there is none. A step's
// own seconds give that step.
const TimeStep &timeStepForSeconds(double seconds);

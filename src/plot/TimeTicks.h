#pragma once

#include "plot/TimeAlignment.h"

#include <QList>

// Positions of a time axis' ticks in UTC seconds, ascending. No list grows beyond `maxTicks`: what would
// follow is left out, so that a fine step over years costs neither time nor memory.

constexpr int maxTicks = 10000;

// The labelled ticks, from the aligned start to before the aligned end. Those of days lie on the midnights
// nearest to whole multiples of 86,400 s, those of months and years on the month's first midnight, whatever
// the clock did between.
QList<double> majorTicks(const TimeSpan &aligned, const TimeStep &step, Timezone &zone);

struct SmallTicks {
    QList<double> minor;
    QList<double> medium; // half way between two major ticks
};

// The ticks behind each of `major`: at every `minorStep` before the next `step`, or a single medium one when
// the minor steps do not fit; none for a minor step of 0.
SmallTicks smallTicks(const QList<double> &major, double step, double minorStep);

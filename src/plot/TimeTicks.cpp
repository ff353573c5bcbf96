#include "plot/TimeTicks.h"

#include "plot/LocalDays.h"

#include <algorithm>
#include <cmath>

namespace {

QList<double> evenTicks(const TimeSpan &aligned, std::int64_t distance) {
    QList<double> ticks;
    for (std::int64_t time = aligned.first; time < aligned.last && ticks.size() < maxTicks;
         time += distance) {
        ticks.append(static_cast<double>(time));
    }
    return ticks;
}

QList<double> dayTicks(const TimeSpan &aligned, int days, Timezone &zone) {
    QList<double> ticks = evenTicks(aligned, 86400L * days);
    for (double &tick : ticks) {
        tick = static_cast<double>(nearestMidnight(static_cast<std::int64_t>(tick), zone));
    }
    return ticks;
}

QList<double> monthTicks(const TimeSpan &aligned, int months, Timezone &zone) {
    QList<double> ticks;
    std::tm date{};
    zone.localTime(aligned.first, &date);
    date.tm_mday = 1;
    for (std::int64_t time = aligned.first; time < aligned.last && ticks.size() < maxTicks;
         time = startOfDay(date, zone)) {
        ticks.append(static_cast<double>(time));
        date.tm_mon += months;
        date.tm_year += date.tm_mon / 12;
        date.tm_mon %= 12;
    }
    return ticks;
}

// Whether the minor steps reach beyond the step, further than rounding explains.
bool overshoots(double minorSteps, double step) {
    return minorSteps > step * (1 + 1e-6);
}

} // namespace

QList<double> majorTicks(const TimeSpan &aligned, const TimeStep &step, Timezone &zone) {
    switch (step.unit) {
    case TimeUnit::seconds:
        return evenTicks(aligned, step.count);
    case TimeUnit::minutes:
        return evenTicks(aligned, 60L * step.count);
    case TimeUnit::hours:
        return evenTicks(aligned, 3600L * step.count);
    case TimeUnit::days:
        return dayTicks(aligned, step.count, zone);
    case TimeUnit::months:
        return monthTicks(aligned, step.count, zone);
    case TimeUnit::years:
        return monthTicks(aligned, 12 * step.count, zone);
    }
    return {};
}

SmallTicks smallTicks(const QList<double> &major, double step, double minorStep) {
    SmallTicks ticks;
    if (minorStep == 0) {
        return ticks;
    }
    // No more than can be kept, so that the count below fits an int.
    const double parts = std::min(std::round(std::abs(step / minorStep)), maxTicks + 1.0);
    const auto add = [step](QList<double> &list, double tick) {
        if (list.size() < maxTicks) {
            list.append(std::abs(tick) <= 1e-6 * step ? 0.0 : tick);
        }
    };
    if (overshoots(parts * minorStep, step)) {
        for (const double tick : major) {
            add(ticks.medium, tick + step / 2);
        }
        return ticks;
    }
    const int count = static_cast<int>(parts) - 1;
    const int middle = count % 2 == 1 ? count / 2 : -1;
    for (const double tick : major) {
        for (int i = 0; i < count; ++i) {
            add(i == middle ? ticks.medium : ticks.minor, tick + (i + 1) * minorStep);
        }
    }
    return ticks;
}

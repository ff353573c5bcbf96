#include "plot/TimeSteps.h"

#include <algorithm>
#include <cmath>
#include <iterator>

const std::array<TimeStep, 16> timeSteps{{
    {1, TimeUnit::seconds, 1, 0.25},
    {60, TimeUnit::minutes, 1, 15},
    {300, TimeUnit::minutes, 5, 60},
    {900, TimeUnit::minutes, 15, 300},
    {1800, TimeUnit::minutes, 30, 600},
    {3600, TimeUnit::hours, 1, 900},
    {7200, TimeUnit::hours, 2, 1800},
    {21600, TimeUnit::hours, 6, 3600},
    {86400, TimeUnit::days, 1, 21600},
    {172800, TimeUnit::days, 2, 43200},
    {345600, TimeUnit::days, 4, 86400},
    {604800, TimeUnit::days, 7, 86400},
    // A little short of 14 days, which is kept: it decides from which span on months are taken, and since no
    // whole number of its minor steps fits, its ticks have a single one between them.
    {1205600, TimeUnit::days, 14, 172800},
    {2592000, TimeUnit::months, 1, 648000},
    {7776000, TimeUnit::months, 3, 2592000},
    {31536000, TimeUnit::years, 1, 7884000},
}};

namespace {

template <typename Fits>
const TimeStep &firstStep(const Fits &fits) {
    const auto *const year = std::prev(timeSteps.end());
    return *std::find_if(timeSteps.begin(), year, fits);
}

} // namespace

const TimeStep &timeStepForWidth(double width, int budget) {
    return firstStep([=](const TimeStep &step) { return budget >= width / step.seconds; });
}

const TimeStep &timeStepForSeconds(double seconds) {
    const double wanted = std::abs(seconds);
    return firstStep([=](const TimeStep &step) { return step.seconds >= wanted; });
}

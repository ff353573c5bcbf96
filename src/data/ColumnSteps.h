#pragma once

// What a value does to the sum and the extremes of its column. Without a name, as it is also built for
// processors of one kind only.
namespace {

// One step of a compensated sum (Kahan).
[[maybe_unused]] inline void addCompensated(double &sum, double &compensation, double value) {
    const double corrected = value - compensation;
    const double total = sum + corrected;
    compensation = (total - sum) - corrected;
    sum = total;
}

// A value that is not a number changes no extreme.
[[maybe_unused]] inline void widen(double &minimum, double &maximum, double low, double high) {
    minimum = low < minimum ? low : minimum;
    maximum = high > maximum ? high : maximum;
}

} // namespace

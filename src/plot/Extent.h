#pragma once

#include <algorithm>
#include <limits>

// A closed range of numbers. Empty at first, with the bounds from which the first number widens it.
struct Extent {
    double low = std::numeric_limits<double>::max();
    double high = std::numeric_limits<double>::lowest();

    bool isEmpty() const { return !(low <= high); }
    double width() const { return high - low; }

    void include(double number) {
        low = std::min(low, number);
        high = std::max(high, number);
    }
    void include(const Extent &other) {
        low = std::min(low, other.low);
        high = std::max(high, other.high);
    }
};

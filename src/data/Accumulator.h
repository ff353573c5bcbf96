#pragma once

#include "data/Record.h"

#include <cstdint>
#include <limits>
#include <vector>

// Start values of running extremes: an interval without a single number still holds them.
inline constexpr double emptyMinimum = std::numeric_limits<double>::max();
inline constexpr double emptyMaximum = -std::numeric_limits<double>::max();

// Sums and extremes of the records of one period, column by column. Sums are compensated (Kahan), so that
// averages over long periods keep their precision.
class Accumulator {
public:
    void resize(std::size_t columns);
    void add(const Record &record);
    // Takes in a whole lower period: its sums in one compensated step.
    void merge(const Accumulator &lower);
    void reset();

    std::uint32_t count() const { return count_; }
    // Time fields of the last record taken in, and the OR of all diagnostic words.
    const RecordStamp &stamp() const { return stamp_; }
    const std::vector<double> &sums() const { return sums_; }
    const std::vector<double> &minima() const { return minima_; }
    const std::vector<double> &maxima() const { return maxima_; }

private:
    void takeStamp(const RecordStamp &stamp);

    RecordStamp stamp_;
    std::uint32_t count_ = 0;
    std::vector<double> sums_;
    std::vector<double> compensations_;
    std::vector<double> minima_;
    std::vector<double> maxima_;
};

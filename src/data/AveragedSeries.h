#pragma once

#include "data/Accumulator.h"
#include "data/Record.h"

#include <cstddef>
#include <span>
#include <vector>

enum class Statistic { average, maximum, minimum };

// Averages, minima and maxima of all columns over successive periods of one length.
//
// The values of one period lie side by side, and the three statistics share the periods' stamps: the period's
// end, with the local time of its last record and the OR of its diagnostic words. Stamps only grow.
class AveragedSeries {
public:
    void setColumns(std::size_t columns) { columns_ = columns; }
    // Appends the period that ends at `end` (UTC seconds).
    void append(std::uint32_t end, const Accumulator &period);
    void releaseSpareMemory();

    std::size_t size() const { return stamps_.size(); }
    std::span<const RecordStamp> stamps() const { return stamps_; }
    // The values of period `index`, one for each column.
    std::span<const double> values(Statistic statistic, std::size_t index) const;
    double value(Statistic statistic, std::size_t index, std::size_t column) const;

    // Index of the first period whose end is not before `utcSeconds`.
    std::size_t firstFrom(double utcSeconds) const;
    // Of the first one whose end is after `utcSeconds`.
    std::size_t firstBehind(double utcSeconds) const;

private:
    std::size_t columns_ = 0;
    std::vector<RecordStamp> stamps_;
    std::vector<double> values_; // for each period its averages, then its maxima, then its minima
};

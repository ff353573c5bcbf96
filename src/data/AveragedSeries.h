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
    // Makes room for one more period, whose extremes fit into single precision unless `mayBeWide`. Changes no
    // more than that, also when it throws std::bad_alloc.
    void makeRoom(bool mayBeWide);
    // Appends the period that ends at `end` (UTC seconds). Throws nothing once there is room.
    void append(std::uint32_t end, const Accumulator &period);
    void releaseSpareMemory();

    std::size_t size() const { return stamps_.size(); }
    // Memory that one more period takes.
    std::size_t bytesPerPeriod() const {
        const std::size_t extreme = wideExtremes_.empty() ? sizeof(float) : sizeof(double);
        return sizeof(RecordStamp) + columns_ * (sizeof(double) + 2 * extreme);
    }
    std::span<const RecordStamp> stamps() const { return stamps_; }
    double value(Statistic statistic, std::size_t index, std::size_t column) const;

    // Index of the first period whose end is not before `utcSeconds`.
    std::size_t firstFrom(double utcSeconds) const;
    // Of the first one whose end is after `utcSeconds`.
    std::size_t firstBehind(double utcSeconds) const;

private:
    void appendExtremes(bool isWide, std::span<const double> extremes, double empty);
    void widenExtremes();

    std::size_t columns_ = 0;
    std::vector<RecordStamp> stamps_;
    std::vector<double> averages_;
    // For each period its maxima, then its minima. Values were read in single precision, so their extremes
    // fit into half the memory; a not-a-number stands for a column without a number. A diagnostic word may
    // not fit: then all extremes move to the wide ones.
    std::vector<float> extremes_;
    std::vector<double> wideExtremes_; // empty while all fit
};

// Whether all extremes of the period are numbers of single precision, or there are none.
bool fitSinglePrecision(const Accumulator &period);

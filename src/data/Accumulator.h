#pragma once

#include "data/AlignedDoubles.h"
#include "data/Record.h"

#include <cstdint>
#include <limits>
#include <span>

struct ColumnSums;

// Start values of running extremes: an interval without a single number still holds them.
inline constexpr double emptyMinimum = std::numeric_limits<double>::max();
inline constexpr double emptyMaximum = -std::numeric_limits<double>::max();

// Sums and extremes of the records of one period, column by column. Sums are compensated (Kahan), so that
// averages over long periods keep their precision.
class Accumulator {
public:
    void resize(std::size_t columns);
    // Takes in a record: `values` has one for each column.
    void add(const RecordStamp &stamp, const double *values);
    void add(const Record &record) { add(record, record.values.data()); }
    // Takes in a whole lower period: its sums in one compensated step.
    void merge(const Accumulator &lower);
    void reset();

    std::uint32_t count() const { return count_; }
    // Time fields of the last record taken in, and the OR of all diagnostic words.
    const RecordStamp &stamp() const { return stamp_; }
    std::span<const double> sums() const { return part(0); }
    std::span<const double> minima() const { return part(2); }
    std::span<const double> maxima() const { return part(3); }

private:
    std::span<const double> part(std::size_t index) const {
        return {values_.data() + index * partSize_, columns_};
    }
    ColumnSums columns();
    void takeStamp(const RecordStamp &stamp);

    RecordStamp stamp_;
    std::uint32_t count_ = 0;
    std::size_t columns_ = 0;
    std::size_t partSize_ = 0;
    AlignedDoubles values_; // sums, their compensations, minima, maxima; each of whole cache lines
};

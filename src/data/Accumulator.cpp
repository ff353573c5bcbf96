#include "data/Accumulator.h"

#include "data/ColumnSteps.h"
#include "data/RecordKernels.h"

#include <algorithm>

void Accumulator::resize(std::size_t columns) {
    constexpr std::size_t parts = 4;
    columns_ = columns;
    partSize_ = AlignedDoubles::roundedUp(columns);
    values_ = AlignedDoubles(parts * partSize_);
    reset();
}

ColumnSums Accumulator::columns() {
    double *const sums = values_.data();
    return {sums, sums + partSize_, sums + 2 * partSize_, sums + 3 * partSize_};
}

void Accumulator::add(const RecordStamp &stamp, const double *values) {
    recordKernels().addColumns(columns_, values, columns());
    takeStamp(stamp);
    ++count_;
}

void Accumulator::merge(const Accumulator &lower) {
    const ColumnSums to = columns();
    for (std::size_t i = 0; i < columns_; ++i) {
        addCompensated(to.sums[i], to.compensations[i], lower.sums()[i]);
        widen(to.minima[i], to.maxima[i], lower.minima()[i], lower.maxima()[i]);
    }
    takeStamp(lower.stamp_);
    count_ += lower.count_;
}

void Accumulator::takeStamp(const RecordStamp &stamp) {
    const std::uint32_t words = stamp_.diagnosticWord | stamp.diagnosticWord;
    stamp_ = stamp;
    stamp_.diagnosticWord = words;
}

void Accumulator::reset() {
    const ColumnSums all = columns();
    std::fill_n(all.sums, columns_, 0.0);
    std::fill_n(all.compensations, columns_, 0.0);
    std::fill_n(all.minima, columns_, emptyMinimum);
    std::fill_n(all.maxima, columns_, emptyMaximum);
    count_ = 0;
    stamp_.diagnosticWord = 0;
}

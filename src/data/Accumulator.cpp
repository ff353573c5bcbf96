#include "data/Accumulator.h"

#include "data/ColumnSteps.h"
#include "data/RecordKernels.h"

#include <algorithm>

void Accumulator::resize(std::size_t columns) {
    sums_.resize(columns);
    compensations_.resize(columns);
    minima_.resize(columns);
    maxima_.resize(columns);
    reset();
}

void Accumulator::add(const Record &record) {
    recordKernels().addColumns(sums_.size(), record.values.data(),
                               {sums_.data(), compensations_.data(), minima_.data(), maxima_.data()});
    takeStamp(record);
    ++count_;
}

void Accumulator::merge(const Accumulator &lower) {
    for (std::size_t i = 0; i < sums_.size(); ++i) {
        addCompensated(sums_[i], compensations_[i], lower.sums_[i]);
        widen(minima_[i], maxima_[i], lower.minima_[i], lower.maxima_[i]);
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
    std::fill(sums_.begin(), sums_.end(), 0.0);
    std::fill(compensations_.begin(), compensations_.end(), 0.0);
    std::fill(minima_.begin(), minima_.end(), emptyMinimum);
    std::fill(maxima_.begin(), maxima_.end(), emptyMaximum);
    count_ = 0;
    stamp_.diagnosticWord = 0;
}

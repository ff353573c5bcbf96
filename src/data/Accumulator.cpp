#include "data/Accumulator.h"

#include <algorithm>

namespace {

// One step of a compensated sum (Kahan).
inline void addCompensated(double &sum, double &compensation, double value) {
    const double corrected = value - compensation;
    const double total = sum + corrected;
    compensation = (total - sum) - corrected;
    sum = total;
}

// A value that is not a number changes no extreme.
inline void widen(double &minimum, double &maximum, double low, double high) {
    minimum = low < minimum ? low : minimum;
    maximum = high > maximum ? high : maximum;
}

} // namespace

void Accumulator::resize(std::size_t columns) {
    sums_.resize(columns);
    compensations_.resize(columns);
    minima_.resize(columns);
    maxima_.resize(columns);
    reset();
}

void Accumulator::add(const Record &record) {
    const std::size_t columns = sums_.size();
    const double *const values = record.values.data();
    double *const sums = sums_.data();
    double *const compensations = compensations_.data();
    double *const minima = minima_.data();
    double *const maxima = maxima_.data();
    for (std::size_t i = 0; i < columns; ++i) {
        addCompensated(sums[i], compensations[i], values[i]);
        widen(minima[i], maxima[i], values[i], values[i]);
    }
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

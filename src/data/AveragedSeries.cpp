#include "data/AveragedSeries.h"

#include <algorithm>

namespace {

constexpr std::size_t statistics = 3;

} // namespace

void AveragedSeries::append(std::uint32_t end, const Accumulator &period) {
    RecordStamp stamp = period.stamp();
    stamp.seconds = end;
    stamp.nanoseconds = 0;
    stamps_.push_back(stamp);
    for (const double sum : period.sums()) {
        values_.push_back(sum / period.count());
    }
    values_.insert(values_.end(), period.maxima().begin(), period.maxima().end());
    values_.insert(values_.end(), period.minima().begin(), period.minima().end());
}

void AveragedSeries::releaseSpareMemory() {
    stamps_.shrink_to_fit();
    values_.shrink_to_fit();
}

std::span<const double> AveragedSeries::values(Statistic statistic, std::size_t index) const {
    const std::size_t first = (index * statistics + static_cast<std::size_t>(statistic)) * columns_;
    return std::span(values_).subspan(first, columns_);
}

double AveragedSeries::value(Statistic statistic, std::size_t index, std::size_t column) const {
    return values_[(index * statistics + static_cast<std::size_t>(statistic)) * columns_ + column];
}

std::size_t AveragedSeries::firstFrom(double utcSeconds) const {
    const auto found =
        std::partition_point(stamps_.begin(), stamps_.end(),
                             [utcSeconds](const RecordStamp &stamp) { return timeOf(stamp) < utcSeconds; });
    return static_cast<std::size_t>(found - stamps_.begin());
}

std::size_t AveragedSeries::firstBehind(double utcSeconds) const {
    const auto found =
        std::partition_point(stamps_.begin(), stamps_.end(),
                             [utcSeconds](const RecordStamp &stamp) { return timeOf(stamp) <= utcSeconds; });
    return static_cast<std::size_t>(found - stamps_.begin());
}

#include "data/AveragedSeries.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr std::size_t extremesOfPeriod = 2;

bool fitsSinglePrecision(double value) {
    return std::isinf(value) || (std::abs(value) <= std::numeric_limits<float>::max() &&
                                 static_cast<double>(static_cast<float>(value)) == value);
}

bool allFit(std::span<const double> extremes, double empty) {
    return std::all_of(extremes.begin(), extremes.end(),
                       [empty](double extreme) { return extreme == empty || fitsSinglePrecision(extreme); });
}

// `empty` is the extreme of a column without a number.
float narrowed(double value, double empty) {
    return value == empty ? std::numeric_limits<float>::quiet_NaN() : static_cast<float>(value);
}

// Like reserve(), but as generous as push_back(): periods come one by one.
template <typename Value>
void makeRoomFor(std::vector<Value> &list, std::size_t more) {
    if (list.capacity() - list.size() < more) {
        list.reserve(std::max(list.size() + more, 2 * list.capacity()));
    }
}

} // namespace

bool fitSinglePrecision(const Accumulator &period) {
    return allFit(period.maxima(), emptyMaximum) && allFit(period.minima(), emptyMinimum);
}

void AveragedSeries::makeRoom(bool mayBeWide) {
    const std::size_t extremes = extremesOfPeriod * columns_;
    const bool isWide = !wideExtremes_.empty();
    makeRoomFor(stamps_, 1);
    makeRoomFor(averages_, columns_);
    if (!isWide) {
        makeRoomFor(extremes_, extremes);
    }
    if (isWide || mayBeWide) {
        makeRoomFor(wideExtremes_, extremes + (isWide ? 0 : extremes_.size()));
    }
}

void AveragedSeries::append(std::uint32_t end, const Accumulator &period) {
    const bool fit = fitSinglePrecision(period);
    makeRoom(!fit);
    for (const double sum : period.sums()) {
        averages_.push_back(sum / period.count());
    }
    const bool isWide = !fit || !wideExtremes_.empty();
    if (isWide) {
        widenExtremes();
    }
    appendExtremes(isWide, period.maxima(), emptyMaximum);
    appendExtremes(isWide, period.minima(), emptyMinimum);
    RecordStamp stamp = period.stamp();
    stamp.seconds = end;
    stamp.nanoseconds = 0;
    stamps_.push_back(stamp);
}

void AveragedSeries::appendExtremes(bool isWide, std::span<const double> extremes, double empty) {
    if (isWide) {
        wideExtremes_.insert(wideExtremes_.end(), extremes.begin(), extremes.end());
        return;
    }
    for (const double extreme : extremes) {
        extremes_.push_back(narrowed(extreme, empty));
    }
}

void AveragedSeries::widenExtremes() {
    for (std::size_t i = 0; i < extremes_.size(); ++i) {
        const bool isMaximum = i / columns_ % extremesOfPeriod == 0;
        const double empty = isMaximum ? emptyMaximum : emptyMinimum;
        wideExtremes_.push_back(std::isnan(extremes_[i]) ? empty : extremes_[i]);
    }
    extremes_ = {};
}

void AveragedSeries::releaseSpareMemory() {
    stamps_.shrink_to_fit();
    averages_.shrink_to_fit();
    extremes_.shrink_to_fit();
    wideExtremes_.shrink_to_fit();
}

double AveragedSeries::value(Statistic statistic, std::size_t index, std::size_t column) const {
    if (statistic == Statistic::average) {
        return averages_[index * columns_ + column];
    }
    const bool isMaximum = statistic == Statistic::maximum;
    const std::size_t at = (index * extremesOfPeriod + (isMaximum ? 0 : 1)) * columns_ + column;
    if (!wideExtremes_.empty()) {
        return wideExtremes_[at];
    }
    const float extreme = extremes_[at];
    return std::isnan(extreme) ? (isMaximum ? emptyMaximum : emptyMinimum) : extreme;
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

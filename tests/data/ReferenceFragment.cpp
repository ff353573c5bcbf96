#include "ReferenceFragment.h"

#include "support/RecordComparison.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::array<std::uint64_t, 4> lengths{60, 300, 1800, 7200};
constexpr double largest = std::numeric_limits<double>::max();

const RecordStamp &stampOf(const Record &record) {
    return record;
}

bool isEarlier(const RecordStamp &a, const RecordStamp &b) {
    return a.seconds < b.seconds || (a.seconds == b.seconds && a.nanoseconds < b.nanoseconds);
}

} // namespace

void ReferenceFragment::take(const Record &record, std::uint64_t offset, std::uint64_t length) {
    const std::uint64_t t = record.seconds;
    if (all_.empty()) {
        pendingHalfHour_ = t - t % 1800;
        for (std::size_t level = 0; level < lengths.size(); ++level) {
            periods_[level].pendingEnd = t - t % lengths[level];
        }
    }
    lastTime_ = static_cast<double>(t) + static_cast<double>(record.nanoseconds) / 1e9;
    firstTime_ = firstTime_ == 0 ? lastTime_ : firstTime_;
    firstOffset_ = firstOffset_ == 0 ? offset : firstOffset_;
    endOffset_ = offset + length;
    if (t >= pendingHalfHour_) {
        index_[pendingHalfHour_] = offset;
        pendingHalfHour_ = t - t % 1800 + 1800;
    }
    lookAt(0, record);
    periods_[0].records.push_back(record);
    periods_[0].parts.push_back(record.values);
    all_.push_back(record);
}

void ReferenceFragment::lookAt(std::size_t level, const Record &record) {
    const std::uint64_t t = record.seconds;
    std::uint64_t &end = periods_[level].pendingEnd;
    const bool isBehind = end < t || (end == t && record.nanoseconds >= 1);
    if (!isBehind) {
        return;
    }
    if (!periods_[level].records.empty()) {
        close(level);
    }
    end = t - t % lengths[level] + lengths[level];
    if (level < 3) {
        lookAt(level + 1, record);
    }
}

void ReferenceFragment::close(std::size_t level) {
    Period &period = periods_[level];
    const std::vector<double> sums = sumsOf(period.parts);
    Entry entry;
    entry.stamp = period.records.back();
    entry.stamp.seconds = static_cast<std::uint32_t>(period.pendingEnd);
    entry.stamp.nanoseconds = 0;
    for (const Record &record : period.records) {
        entry.stamp.diagnosticWord |= record.diagnosticWord;
    }
    for (const double sum : sums) {
        entry.averages.push_back(sum / static_cast<double>(period.records.size()));
    }
    entry.minima = minimaOf(period.records);
    entry.maxima = maximaOf(period.records);
    series_[level].push_back(entry);
    if (level < 3) {
        Period &upper = periods_[level + 1];
        upper.records.insert(upper.records.end(), period.records.begin(), period.records.end());
        upper.parts.push_back(sums);
    }
    period.records.clear();
    period.parts.clear();
}

std::vector<double> ReferenceFragment::sumsOf(const std::vector<std::vector<double>> &parts) const {
    std::vector<double> sums;
    for (std::size_t column = 0; column < columns_; ++column) {
        double sum = 0;
        double lost = 0; // what the additions so far gave too much
        for (const std::vector<double> &part : parts) {
            const double wanted = part[column] - lost;
            const double reached = sum + wanted;
            lost = (reached - sum) - wanted;
            sum = reached;
        }
        sums.push_back(sum);
    }
    return sums;
}

std::vector<double> ReferenceFragment::minimaOf(const std::vector<Record> &records) const {
    std::vector<double> minima(columns_, largest);
    for (const Record &record : records) {
        for (std::size_t column = 0; column < columns_; ++column) {
            if (record.values[column] < minima[column]) {
                minima[column] = record.values[column];
            }
        }
    }
    return minima;
}

std::vector<double> ReferenceFragment::maximaOf(const std::vector<Record> &records) const {
    std::vector<double> maxima(columns_, -largest);
    for (const Record &record : records) {
        for (std::size_t column = 0; column < columns_; ++column) {
            if (record.values[column] > maxima[column]) {
                maxima[column] = record.values[column];
            }
        }
    }
    return maxima;
}

testing::AssertionResult ReferenceFragment::isMatchedBy(const DataFragment &fragment) const {
    if (fragment.recordCount() != all_.size()) {
        return testing::AssertionFailure() << fragment.recordCount() << " records instead of " << all_.size();
    }
    if (bitsOf(fragment.firstTime()) != bitsOf(firstTime_) ||
        bitsOf(fragment.lastTime()) != bitsOf(lastTime_)) {
        return testing::AssertionFailure()
               << "time range " << fragment.firstTime() << " to " << fragment.lastTime() << " instead of "
               << firstTime_ << " to " << lastTime_;
    }
    if (fragment.firstOffset() != firstOffset_ || fragment.endOffset() != endOffset_) {
        return testing::AssertionFailure()
               << "bytes " << fragment.firstOffset() << " to " << fragment.endOffset() << " instead of "
               << firstOffset_ << " to " << endOffset_;
    }
    const auto &entries = fragment.halfHourIndex().entries();
    if (!std::equal(
            entries.begin(), entries.end(), index_.begin(), index_.end(),
            [](const auto &a, const auto &b) { return a.first == b.first && a.second == b.second; })) {
        return testing::AssertionFailure() << "index " << testing::PrintToString(entries) << " instead of "
                                           << testing::PrintToString(index_);
    }
    for (std::size_t level = 0; level < lengths.size(); ++level) {
        const auto result = seriesAreMatchedBy(fragment, level);
        if (!result) {
            return result;
        }
    }
    return extremesAreMatchedBy(fragment);
}

testing::AssertionResult ReferenceFragment::seriesAreMatchedBy(const DataFragment &fragment,
                                                               std::size_t level) const {
    const AveragedSeries &series = fragment.series(level);
    const std::vector<Entry> &expected = series_[level];
    if (series.size() != expected.size()) {
        return testing::AssertionFailure()
               << series.size() << " periods of " << lengths[level] << " s instead of " << expected.size();
    }
    for (std::size_t i = 0; i < expected.size(); ++i) {
        for (const auto &result :
             {sameStamps(series.stamps()[i], expected[i].stamp),
              sameNumbers(periodOf(series, Statistic::average, i, expected[i].averages.size()),
                          expected[i].averages),
              sameNumbers(periodOf(series, Statistic::minimum, i, expected[i].minima.size()),
                          expected[i].minima),
              sameNumbers(periodOf(series, Statistic::maximum, i, expected[i].maxima.size()),
                          expected[i].maxima)}) {
            if (!result) {
                return testing::AssertionFailure()
                       << "period " << i << " of " << lengths[level] << " s: " << result.message();
            }
        }
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult ReferenceFragment::extremesAreMatchedBy(const DataFragment &fragment) const {
    if (all_.empty()) {
        return testing::AssertionSuccess();
    }
    // The first of equal times stands for the earliest, and for the latest.
    RecordStamp earliest = stampOf(*std::min_element(all_.begin(), all_.end(), isEarlier));
    RecordStamp latest = stampOf(*std::max_element(all_.begin(), all_.end(), isEarlier));
    const auto byWord = [](const Record &a, const Record &b) { return a.diagnosticWord < b.diagnosticWord; };
    earliest.diagnosticWord = std::min_element(all_.begin(), all_.end(), byWord)->diagnosticWord;
    latest.diagnosticWord = std::max_element(all_.begin(), all_.end(), byWord)->diagnosticWord;
    for (const auto &result :
         {sameStamps(fragment.minimumRecord(), earliest), sameStamps(fragment.maximumRecord(), latest),
          sameNumbers(fragment.minimumRecord().values, minimaOf(all_)),
          sameNumbers(fragment.maximumRecord().values, maximaOf(all_))}) {
        if (!result) {
            return testing::AssertionFailure() << "whole block: " << result.message();
        }
    }
    return testing::AssertionSuccess();
}

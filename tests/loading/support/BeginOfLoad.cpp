#include "loading/support/BeginOfLoad.h"

#include "support/LoadedSource.h"
#include "support/RecordComparison.h"

#include <algorithm>
#include <span>
#include <vector>

namespace {

// Null when there is none.
const DataFragment *sameBlockOf(const DataSet &whole, const DataFragment &block) {
    for (const auto &other : whole.fragments()) {
        if (other->tag() == block.tag() && other->blockBegin() == block.blockBegin() &&
            other->header().subFileName == block.header().subFileName) {
            return other.get();
        }
    }
    return nullptr;
}

testing::AssertionResult isBeginOf(const AveragedSeries &series, const AveragedSeries &whole,
                                   std::size_t columns) {
    if (series.size() > whole.size()) {
        return testing::AssertionFailure() << series.size() << " periods instead of " << whole.size();
    }
    for (std::size_t i = 0; i < series.size(); ++i) {
        if (const auto same = sameStamps(series.stamps()[i], whole.stamps()[i]); !same) {
            return testing::AssertionFailure() << "period " << i << ": " << same.message();
        }
        for (const Statistic statistic : {Statistic::average, Statistic::maximum, Statistic::minimum}) {
            if (const auto same = sameNumbers(periodOf(series, statistic, i, columns),
                                              periodOf(whole, statistic, i, columns));
                !same) {
                return testing::AssertionFailure() << "period " << i << ": " << same.message();
            }
        }
    }
    return testing::AssertionSuccess();
}

// The block's extremes are those of its records.
testing::AssertionResult hasExtremesOf(const DataFragment &block, const std::vector<Record> &records) {
    std::vector<double> minima(block.valueCount(), emptyMinimum);
    std::vector<double> maxima(block.valueCount(), emptyMaximum);
    for (const Record &record : records) {
        for (std::size_t i = 0; i < record.values.size(); ++i) {
            minima[i] = std::min(minima[i], record.values[i]);
            maxima[i] = std::max(maxima[i], record.values[i]);
        }
    }
    if (const auto same = sameNumbers(block.minimumRecord().values, minima); !same) {
        return same;
    }
    return sameNumbers(block.maximumRecord().values, maxima);
}

testing::AssertionResult isBeginOf(const DataFragment &block, const DataFragment &whole) {
    const std::vector<Record> records = readAgain(block);
    if (records.size() != block.recordCount()) {
        return testing::AssertionFailure()
               << "of " << block.recordCount() << " records " << records.size() << " are read again";
    }
    std::vector<Record> expected = readAgain(whole);
    expected.resize(std::min(expected.size(), records.size()));
    if (const auto same = sameRecords(records, expected); !same) {
        return same;
    }
    if (block.firstTime() != timeOf(records.front()) || block.lastTime() != timeOf(records.back())) {
        return testing::AssertionFailure() << "the block does not end at its last record";
    }
    for (std::size_t level = 0; level < DataFragment::periods.size(); ++level) {
        if (const auto same = isBeginOf(block.series(level), whole.series(level), block.valueCount());
            !same) {
            return testing::AssertionFailure() << "level " << level << ", " << same.message();
        }
    }
    return hasExtremesOf(block, records);
}

} // namespace

testing::AssertionResult isBeginOf(const DataSet &loaded, const DataSet &whole) {
    for (const auto &block : loaded.fragments()) {
        const DataFragment *const other = sameBlockOf(whole, *block);
        if (other == nullptr) {
            return testing::AssertionFailure() << "a block of its own at byte " << block->blockBegin();
        }
        if (const auto isBegin = isBeginOf(*block, *other); !isBegin) {
            return testing::AssertionFailure()
                   << "in the block at byte " << block->blockBegin() << ": " << isBegin.message();
        }
    }
    return testing::AssertionSuccess();
}

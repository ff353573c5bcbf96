#pragma once

#include "data/DataFragment.h"
#include "data/Record.h"

#include <array>
#include <cstdint>
#include <gtest/gtest.h>
#include <map>
#include <vector>

// What a fragment keeps about its records, worked out the plain way: every open period holds all its records,
// and everything about it is computed when it closes. Slow, and sharing no code with the fragment.
class ReferenceFragment {
public:
    explicit ReferenceFragment(std::size_t columns) : columns_(columns) {}

    // Takes a record that came from the line at `offset` with `length` bytes.
    void take(const Record &record, std::uint64_t offset, std::uint64_t length);

    // Whether `fragment` holds the same to the last bit.
    testing::AssertionResult isMatchedBy(const DataFragment &fragment) const;

private:
    struct Period {
        std::uint64_t pendingEnd = 0; // wide enough for the period behind the last time there is
        std::vector<Record> records;
        std::vector<std::vector<double>> parts; // what is summed up: values, or the sums of lower periods
    };
    struct Entry {
        RecordStamp stamp;
        std::vector<double> averages;
        std::vector<double> minima;
        std::vector<double> maxima;
    };

    void lookAt(std::size_t level, const Record &record);
    void close(std::size_t level);
    std::vector<double> sumsOf(const std::vector<std::vector<double>> &parts) const;
    std::vector<double> minimaOf(const std::vector<Record> &records) const;
    std::vector<double> maximaOf(const std::vector<Record> &records) const;

    testing::AssertionResult seriesAreMatchedBy(const DataFragment &fragment, std::size_t level) const;
    testing::AssertionResult extremesAreMatchedBy(const DataFragment &fragment) const;

    std::size_t columns_;
    std::vector<Record> all_;
    double firstTime_ = 0;
    double lastTime_ = 0;
    std::uint64_t firstOffset_ = 0;
    std::uint64_t endOffset_ = 0;
    std::uint64_t pendingHalfHour_ = 0;
    std::map<std::uint64_t, std::uint64_t> index_;
    std::array<Period, 4> periods_;
    std::array<std::vector<Entry>, 4> series_;
};

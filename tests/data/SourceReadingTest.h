#pragma once

#include "data/Record.h"
#include "support/LoadedSource.h"
#include "support/ScratchFolder.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

// What the tests of reading records again have in common.

inline std::vector<double> timesOf(const std::vector<Record> &records) {
    std::vector<double> times;
    times.reserve(records.size());
    for (const Record &record : records) {
        times.push_back(timeOf(record));
    }
    return times;
}

inline std::vector<double> firstValuesOf(const std::vector<Record> &records) {
    std::vector<double> values;
    values.reserve(records.size());
    for (const Record &record : records) {
        values.push_back(record.values.at(0));
    }
    return values;
}

// Every number from `first` to `last` in steps.
inline std::vector<double> numbers(double first, double last, double step) {
    std::vector<double> all;
    for (double number = first; number <= last; number += step) {
        all.push_back(number);
    }
    return all;
}

// Lines of records, one every `step` seconds, `rest` behind the seconds of each.
inline std::string recordsOf(const std::string &tag, std::uint32_t first, std::uint32_t last,
                             std::uint32_t step, const std::string &rest = "\t1") {
    std::string text;
    for (std::uint32_t seconds = first; seconds <= last; seconds += step) {
        text.append(tag).append(1, '\t').append(std::to_string(seconds)).append(rest).append(1, '\n');
    }
    return text;
}

class SourceReadingTest : public testing::Test {
protected:
    // A time on no half hour.
    static constexpr std::uint32_t begin = 1500001234;

    // A source of the instrument Q.
    DataSet load(const std::string &text, const std::string &name = "a.data") const {
        return loadSource(folder_.write(name, "Instrument:\tQ\n" + text));
    }

    ScratchFolder folder_;
};

#pragma once

#include "data/AveragedSeries.h"
#include "data/Record.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <ostream>
#include <span>
#include <tuple>
#include <vector>

inline std::uint64_t bitsOf(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

// Equal to the last bit. The bits of "not a number" carry nothing: which of them an addition keeps is up to
// the compiler.
inline bool isSameNumber(double a, double b) {
    return (a != a && b != b) || bitsOf(a) == bitsOf(b);
}

inline std::ostream &operator<<(std::ostream &stream, const RecordStamp &stamp) {
    return stream << stamp.seconds << " s + " << stamp.nanoseconds << " ns, word " << stamp.diagnosticWord
                  << ", offset " << stamp.utcOffset << ", " << stamp.year << '-' << int{stamp.month} << '-'
                  << int{stamp.day} << ' ' << int{stamp.hour} << ':' << int{stamp.minute} << ':'
                  << int{stamp.second} << ", flags " << int{stamp.flags};
}

inline bool isSameStamp(const RecordStamp &a, const RecordStamp &b) {
    const auto fields = [](const RecordStamp &stamp) {
        return std::tie(stamp.seconds, stamp.nanoseconds, stamp.diagnosticWord, stamp.utcOffset, stamp.year,
                        stamp.month, stamp.day, stamp.hour, stamp.minute, stamp.second, stamp.flags);
    };
    return fields(a) == fields(b);
}

inline testing::AssertionResult sameStamps(const RecordStamp &actual, const RecordStamp &expected) {
    if (isSameStamp(actual, expected)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "got      " << actual << "\nexpected " << expected;
}

// The values of one period of a series, one for each column.
inline std::vector<double> periodOf(const AveragedSeries &series, Statistic statistic, std::size_t index,
                                    std::size_t columns) {
    std::vector<double> values;
    for (std::size_t column = 0; column < columns; ++column) {
        values.push_back(series.value(statistic, index, column));
    }
    return values;
}

inline testing::AssertionResult sameNumbers(std::span<const double> actual,
                                            std::span<const double> expected) {
    if (actual.size() != expected.size()) {
        return testing::AssertionFailure() << actual.size() << " numbers instead of " << expected.size();
    }
    for (std::size_t i = 0; i < actual.size(); ++i) {
        if (!isSameNumber(actual[i], expected[i])) {
            return testing::AssertionFailure()
                   << "number " << i << " is " << testing::PrintToString(actual[i]) << ", expected "
                   << testing::PrintToString(expected[i]);
        }
    }
    return testing::AssertionSuccess();
}

// Equal in every bit, those of "not a number" too: nothing was computed with these values.
inline bool isSameRecord(const Record &a, const Record &b) {
    return isSameStamp(a, b) && a.values.size() == b.values.size() &&
           (a.values.empty() ||
            std::memcmp(a.values.data(), b.values.data(), a.values.size() * sizeof(double)) == 0);
}

inline testing::AssertionResult sameRecords(const std::vector<Record> &actual,
                                            const std::vector<Record> &expected) {
    const std::size_t common = std::min(actual.size(), expected.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (!isSameRecord(actual[i], expected[i])) {
            return testing::AssertionFailure()
                   << "record " << i << " of " << expected.size() << " differs\ngot      "
                   << static_cast<const RecordStamp &>(actual[i]) << " values "
                   << testing::PrintToString(actual[i].values) << "\nexpected "
                   << static_cast<const RecordStamp &>(expected[i]) << " values "
                   << testing::PrintToString(expected[i].values);
        }
    }
    if (actual.size() != expected.size()) {
        return testing::AssertionFailure() << actual.size() << " records instead of " << expected.size();
    }
    return testing::AssertionSuccess();
}

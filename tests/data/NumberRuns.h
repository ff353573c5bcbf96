#pragma once

#include "EveryLevel.h"
#include "data/NumberReading.h"
#include "data/ValueRun.h"
#include "support/HeapText.h"
#include "support/RecordComparison.h"

#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <string_view>
#include <vector>

// What comes of reading numbers from a line: how far it went, the numbers, and where the cursor stood.
struct NumbersFound {
    bool good = true;
    std::vector<double> values;
    std::ptrdiff_t end = 0;
};

inline NumbersFound readOneByOne(std::string_view line, std::ptrdiff_t from, std::uint32_t count) {
    NumbersFound outcome;
    const HeapText text(line);
    TextCursor cursor{text.begin() + from, text.end()};
    for (std::uint32_t i = 0; i < count; ++i) {
        float value = 0;
        if (!readFloat(cursor, value)) {
            outcome.good = false;
            return outcome;
        }
        outcome.values.push_back(value);
    }
    outcome.end = cursor.at - text.begin();
    return outcome;
}

inline NumbersFound readTogether(std::string_view line, std::ptrdiff_t from, std::uint32_t count) {
    NumbersFound outcome;
    const HeapText text(line);
    TextCursor cursor{text.begin() + from, text.end()};
    outcome.values.resize(count);
    outcome.good = readFloats(cursor, text.begin(), count, outcome.values.data());
    outcome.end = cursor.at - text.begin();
    return outcome;
}

inline testing::AssertionResult readsAsOneByOne(std::string_view line, std::ptrdiff_t from,
                                                std::uint32_t count) {
    const NumbersFound expected = readOneByOne(line, from, count);
    for (const VectorLevel level : EveryLevel::available()) {
        useVectorLevel(level);
        const NumbersFound outcome = readTogether(line, from, count);
        bool same = outcome.good == expected.good;
        if (same && expected.good) {
            same = outcome.end == expected.end;
            for (std::size_t i = 0; i < count; ++i) {
                same = same && bitsOf(outcome.values[i]) == bitsOf(expected.values[i]);
            }
        }
        if (!same) {
            return testing::AssertionFailure() << testing::PrintToString(line) << " from " << from << ", "
                                               << count << " numbers, level " << static_cast<int>(level);
        }
    }
    return testing::AssertionSuccess();
}

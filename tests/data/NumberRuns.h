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

inline NumbersFound readOneByOne(const HeapText &line, std::ptrdiff_t from, std::uint32_t count) {
    NumbersFound outcome;
    TextCursor cursor{line.begin() + from, line.end()};
    for (std::uint32_t i = 0; i < count; ++i) {
        float value = 0;
        if (!readFloat(cursor, value)) {
            outcome.good = false;
            return outcome;
        }
        outcome.values.push_back(value);
    }
    outcome.end = cursor.at - line.begin();
    return outcome;
}

// The line lies in memory of its own, so that no byte beside it can be read unseen.
inline NumbersFound readTogether(const HeapText &line, std::ptrdiff_t from, std::uint32_t count) {
    NumbersFound outcome;
    TextCursor cursor{line.begin() + from, line.end()};
    outcome.values.resize(count);
    outcome.good = readFloats(cursor, line.begin(), count, outcome.values.data());
    outcome.end = cursor.at - line.begin();
    return outcome;
}

inline testing::AssertionResult readsAsOneByOne(std::string_view line, std::ptrdiff_t from,
                                                std::uint32_t count) {
    const HeapText text(line);
    const NumbersFound expected = readOneByOne(text, from, count);
    for (const VectorLevel level : EveryLevel::available()) {
        useVectorLevel(level);
        const NumbersFound outcome = readTogether(text, from, count);
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

#include "time/TimeValue.h"

#include <gtest/gtest.h>
#include <limits>

TEST(FormatSecondsNanos, NanosecondsArePaddedToNineDigits) {
    EXPECT_EQ(formatSecondsNanos({5, 7}), "5.000000007");
}

TEST(FormatSecondsNanos, NegativeFractionOfNoSecondsHasItsSignInFront) {
    EXPECT_EQ(formatSecondsNanos({0, -250000000}), "-0.250000000");
}

TEST(FormatSecondsNanos, ZeroHasNoSign) {
    EXPECT_EQ(formatSecondsNanos({0, 0}), "0.000000000");
}

TEST(FormatSecondsNanos, EachSignOfSecondsHasItsRule) {
    struct Row {
        TimeValue value;
        const char *text = nullptr;
    };
    constexpr auto smallest = std::numeric_limits<std::int32_t>::min();
    constexpr auto largest = std::numeric_limits<std::int32_t>::max();
    for (const Row &row : {
             Row{{1, 999999999}, "1.999999999"},
             Row{{0, 1}, "0.000000001"},
             Row{{0, 250000000}, "0.250000000"},
             Row{{0, -1}, "-0.000000001"},
             Row{{-1, 0}, "-1.000000000"},
             Row{{-5, -7}, "-5.000000007"},
             Row{{-5, -250000000}, "-5.250000000"},
             // The parts of a difference normally agree in sign; one that does not keeps its own.
             Row{{5, -7}, "5.-000000007"},
             Row{{-5, 7}, "-5.-000000007"},
             Row{{largest, 0}, "2147483647.000000000"},
             Row{{smallest, smallest}, "-2147483648.2147483648"},
             Row{{0, smallest}, "-0.2147483648"},
         }) {
        EXPECT_EQ(formatSecondsNanos(row.value), row.text);
    }
}

#include "tools/Random.h"

#include "tools/Waves.h"

#include <cmath>
#include <gtest/gtest.h>

TEST(Random, FirstNumbersOfASeedNeverChange) {
    Random random(1, 2);
    EXPECT_EQ(random.next(), 9793979767479580297U);
    EXPECT_EQ(random.next(), 17992739674594014422U);
}

TEST(Random, StreamsOfOneSeedDiffer) {
    Random first(7, 1);
    Random second(7, 2);
    EXPECT_NE(first.next(), second.next());
}

TEST(Random, UniformStaysBelowItsEnd) {
    Random random(3, 1);
    double sum = 0;
    for (int i = 0; i < 100000; ++i) {
        const double value = random.uniform(-2, 4);
        ASSERT_GE(value, -2);
        ASSERT_LT(value, 4);
        sum += value;
    }
    EXPECT_NEAR(sum / 100000, 1, 0.03);
}

TEST(Random, NormalHasMeanZeroAndDeviationOne) {
    Random random(3, 1);
    double sum = 0;
    double squares = 0;
    constexpr int count = 200000;
    for (int i = 0; i < count; ++i) {
        const double value = random.normal();
        sum += value;
        squares += value * value;
    }
    EXPECT_NEAR(sum / count, 0, 0.01);
    EXPECT_NEAR(squares / count, 1, 0.01);
}

TEST(Waves, SineOfTurnsFollowsTheSine) {
    for (int i = -3000; i <= 3000; ++i) {
        const double turns = i / 1000.0;
        ASSERT_NEAR(sineOfTurns(turns), std::sin(turns * 6.283185307179586), 4e-6) << turns;
    }
}

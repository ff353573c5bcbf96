#include "data/ValueRun.h"

#include "NumberRuns.h"
#include "RandomFields.h"
#include "RandomNumberTexts.h"
#include "support/RandomNumbers.h"
#include "support/SanitizerBuild.h"

#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

TEST(ValueRun, ReadsRandomLinesAsReadingOneByOneDoes) {
    const EveryLevel levels;
    RandomNumberTexts texts(20190605);
    RandomFields lines(11);
    RandomNumbers random(12);
    std::size_t good = 0;
    for (std::size_t round = scaledDown(400'000); round > 0; --round) {
        const std::string line = random.oneIn(4) ? texts.number() + "\t" + texts.number()
                                                 : lines.line(random.below(random.oneIn(20) ? 200 : 60));
        const auto from = static_cast<std::ptrdiff_t>(random.oneIn(2) ? random.below(line.size() + 1)
                                                                      : line.size() / (random.below(10) + 1));
        const auto count = static_cast<std::uint32_t>(random.below(70));
        ASSERT_TRUE(readsAsOneByOne(line, from, count));
        good += readOneByOne(HeapText(line), from, count).good && count > 8;
    }
    EXPECT_GT(good, scaledDown(20'000));
}

// Each text stands alone in its field, between plain neighbours that are good company for a vector.
TEST(ValueRun, ReadsEveryShortFieldAsReadingOneByOneDoes) {
    const EveryLevel levels;
    static constexpr std::string_view alphabet = "095.-+e ";
    constexpr std::size_t longest = isSanitizerBuild ? 4 : 6;
    for (std::size_t length = 0; length <= longest; ++length) {
        std::size_t texts = 1;
        for (std::size_t i = 0; i < length; ++i) {
            texts *= alphabet.size();
        }
        for (std::size_t number = 0; number < texts; ++number) {
            std::string text;
            for (std::size_t i = 0, left = number; i < length; ++i, left /= alphabet.size()) {
                text += alphabet[left % alphabet.size()];
            }
            const std::string line = "1559368800\t1\t-2.5\t33\t" + text + "\t0.25\t-7\t8.125\t9\t10";
            ASSERT_TRUE(readsAsOneByOne(line, 10, 9));
        }
    }
}

TEST(ValueRun, ReadsPlainDecimalsAsStrtofReadsThem) {
    const EveryLevel levels;
    RandomNumbers random(13);
    constexpr std::uint32_t count = 12;
    for (std::size_t round = scaledDown(300'000); round > 0; --round) {
        std::string line = "DATA\t1234567";
        std::array<float, count> expected{};
        for (float &value : expected) {
            std::string text = std::to_string(random.bits()).substr(0, 1 + random.below(8));
            if (text.size() < 8 && !random.oneIn(4)) {
                text.insert(random.below(text.size() + 1), ".");
            }
            if (random.oneIn(3)) {
                text.insert(0, "-");
            }
            value = std::strtof(text.c_str(), nullptr);
            line += '\t' + text;
        }
        for (const VectorLevel level : EveryLevel::available()) {
            useVectorLevel(level);
            const NumbersFound outcome = readTogether(HeapText(line), 12, count);
            ASSERT_TRUE(outcome.good) << line;
            ASSERT_EQ(outcome.end, static_cast<std::ptrdiff_t>(line.size())) << line;
            for (std::size_t i = 0; i < count; ++i) {
                ASSERT_EQ(bitsOf(outcome.values[i]), bitsOf(expected[i])) << line << ' ' << i;
            }
        }
    }
}

TEST(ValueRun, GoesOnBehindAFieldThatFillsManyLooksAtTheLine) {
    const EveryLevel levels;
    for (const std::size_t zeros : {60U, 64U, 65U, 1000U, 1024U, 1025U, 3000U}) {
        const std::string longField(zeros, '0');
        EXPECT_TRUE(readsAsOneByOne("123456789\t1\t" + longField + "5.5\t2\t-3\t4\t5\t6\t7\t8\t9", 9, 11));
        EXPECT_TRUE(readsAsOneByOne("123456789\t1\t2\t-3\t4\t5\t6\t7\t8\t9\t" + longField, 9, 10));
        EXPECT_TRUE(readsAsOneByOne("123456789\t1\t2\t" + longField + "x", 9, 4));
    }
}

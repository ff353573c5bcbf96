#include "export/GeneralNumber.h"

#include "data/EveryLevel.h"
#include "support/RandomNumbers.h"
#include "support/SanitizerBuild.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <locale>
#include <span>
#include <streambuf>
#include <string>
#include <vector>

namespace {

// A stream buffer that is emptied quickly between numbers.
class Digits : public std::streambuf {
public:
    std::string_view text() const { return {pbase(), static_cast<std::size_t>(pptr() - pbase())}; }
    void clear() { setp(memory_.data(), memory_.data() + memory_.size()); }

private:
    std::array<char, 64> memory_{};
};

std::string generalOf(double value) {
    std::array<char, generalNumberRoom> room{};
    return {room.data(), writeGeneral(room.data(), value)};
}

std::string generalFieldsOf(std::span<const double> values) {
    std::string room(values.size() * generalNumberRoom, '?');
    room.resize(static_cast<std::size_t>(writeGeneralFields(room.data(), values) - room.data()));
    return room;
}

// At every level of vectors: what writeGeneral() makes of each value, with a tab behind it.
void expectSameFields(std::span<const double> values) {
    const EveryLevel levels;
    std::string expected;
    for (const double value : values) {
        expected.append(generalOf(value)) += '\t';
    }
    for (const VectorLevel level : EveryLevel::available()) {
        useVectorLevel(level);
        ASSERT_EQ(generalFieldsOf(values), expected);
    }
}

// Compares with what a stream writes in the classic locale, also for many numbers at a time.
class StreamComparison {
public:
    StreamComparison() : stream_(&digits_) {
        stream_.imbue(std::locale::classic());
        row_.reserve(numbersOfRow);
    }
    ~StreamComparison() { expectSameFields(row_); }
    StreamComparison(const StreamComparison &) = delete;
    StreamComparison &operator=(const StreamComparison &) = delete;

    void expectSame(double value) {
        if (std::isnan(value)) {
            value = std::fabs(value); // a stream shows the sign
        }
        digits_.clear();
        stream_ << value;
        std::array<char, generalNumberRoom> room{};
        const char *const end = writeGeneral(room.data(), value);
        const std::string_view written(room.data(), static_cast<std::size_t>(end - room.data()));
        ++count_;
        if (written != digits_.text() && ++differences_ < 10) {
            ADD_FAILURE() << written << " instead of " << digits_.text();
        }
        row_.push_back(value);
        if (row_.size() == numbersOfRow) {
            expectSameFields(row_);
            row_.clear();
        }
    }
    void expectSameBothSigns(double value) {
        expectSame(value);
        expectSame(-value);
    }
    std::size_t count() const { return count_; }

private:
    // More than are written at once, and no multiple of what a vector holds.
    static constexpr std::size_t numbersOfRow = 1003;

    Digits digits_;
    std::ostream stream_;
    std::size_t count_ = 0;
    std::size_t differences_ = 0;
    std::vector<double> row_;
};

constexpr std::size_t rounds = scaledDown(2'000'000);

TEST(GeneralNumber, NotANumberHasNoSign) {
    EXPECT_EQ(generalOf(std::numeric_limits<double>::quiet_NaN()), "nan");
    EXPECT_EQ(generalOf(-std::numeric_limits<double>::quiet_NaN()), "nan");
    EXPECT_EQ(generalOf(std::bit_cast<double>(0xfff0000000000001ULL)), "nan");
}

TEST(GeneralNumber, SixDigitsCountInFixedOrExponentNotation) {
    const std::vector<std::pair<double, std::string>> rows{
        {1.25, "1.25"},
        {-0.0031, "-0.0031"},
        {0, "0"},
        {-0.0, "-0"},
        {100, "100"},
        {123456, "123456"},
        {1234567, "1.23457e+06"},
        {999999.5, "1e+06"},
        {999999.4375, "999999"},
        {0.0001, "0.0001"},
        {0.00001, "1e-05"},
        {0.000099999, "9.9999e-05"},
        {std::numeric_limits<double>::infinity(), "inf"},
        {-std::numeric_limits<double>::infinity(), "-inf"},
        {-std::numeric_limits<double>::denorm_min(), "-4.94066e-324"},
        {1559415600, "1.55942e+09"},
    };
    for (const auto &[value, text] : rows) {
        EXPECT_EQ(generalOf(value), text);
    }
}

// A tie goes to the even digit.
TEST(GeneralNumber, TiesAreRoundedAsAStreamRoundsThem) {
    EXPECT_EQ(generalOf(2.03125), "2.03125");
    EXPECT_EQ(generalOf(100000.5), "100000");
    EXPECT_EQ(generalOf(100001.5), "100002");
    EXPECT_EQ(generalOf(10000.25), "10000.2");
    EXPECT_EQ(generalOf(10000.75), "10000.8");
    StreamComparison comparison;
    for (std::size_t i = 0; i < scaledDown(1'000'000); ++i) {
        // Halves, quarters, ... of all that has six digits and a little more.
        comparison.expectSame(static_cast<double>(i) / 2);
        comparison.expectSame(static_cast<double>(2'000'000 + i) / 8);
        comparison.expectSame(static_cast<double>(2 * i + 1) / 1024);
        comparison.expectSame(static_cast<double>(2 * i + 1) / (1 << 20));
    }
}

TEST(GeneralNumber, RandomBitsOfDoublePrecisionAreWrittenAsByAStream) {
    RandomNumbers random(1);
    StreamComparison comparison;
    for (std::size_t i = 0; i < rounds; ++i) {
        comparison.expectSame(std::bit_cast<double>(random.bits()));
    }
    EXPECT_EQ(comparison.count(), rounds);
}

TEST(GeneralNumber, RandomBitsOfSinglePrecisionAreWrittenAsByAStream) {
    RandomNumbers random(2);
    StreamComparison comparison;
    for (std::size_t i = 0; i < rounds; ++i) {
        comparison.expectSame(std::bit_cast<float>(static_cast<std::uint32_t>(random.bits())));
        // From 2^-16 to 2^24: where the notation changes.
        const auto exponent = static_cast<std::uint32_t>(random.between(127 - 16, 127 + 24));
        const auto fraction = static_cast<std::uint32_t>(random.below(1U << 23));
        comparison.expectSameBothSigns(std::bit_cast<float>(exponent << 23 | fraction));
    }
}

// Decimal numbers of 1 to 9 digits as an analyser writes them, in both precisions.
TEST(GeneralNumber, TypicalValuesAreWrittenAsByAStream) {
    RandomNumbers random(3);
    StreamComparison comparison;
    constexpr std::array<double, 13> divisors{1,   1e1, 1e2, 1e3,  1e4,  1e5, 1e6,
                                              1e7, 1e8, 1e9, 1e10, 1e11, 1e12};
    for (std::size_t i = 0; i < rounds; ++i) {
        const std::uint64_t digits = random.below(random.oneIn(2) ? 1'000'000'000 : 10'000'000);
        const double value = static_cast<double>(digits) / random.pick(divisors);
        comparison.expectSameBothSigns(value);
        comparison.expectSame(static_cast<float>(value));
    }
}

TEST(GeneralNumber, NeighboursOfPowersOfTenAndTwoAreWrittenAsByAStream) {
    StreamComparison comparison;
    const auto expectAround = [&comparison](double value) {
        double below = value;
        double above = value;
        auto singleBelow = static_cast<float>(value);
        float singleAbove = singleBelow;
        for (int i = 0; i < 20; ++i) {
            for (const double near : {below, above}) {
                comparison.expectSameBothSigns(near);
            }
            for (const float near : {singleBelow, singleAbove}) {
                comparison.expectSameBothSigns(near);
            }
            below = std::nextafter(below, 0.0);
            above = std::nextafter(above, HUGE_VAL);
            singleBelow = std::nextafter(singleBelow, 0.0F);
            singleAbove = std::nextafter(singleAbove, HUGE_VALF);
        }
    };
    for (int exponent = -320; exponent <= 308; ++exponent) {
        const double power = std::pow(10.0, exponent);
        expectAround(std::min(power, 1e38));
        expectAround(power * 0.9999995); // rounds up to the next power
    }
    for (int exponent = -126; exponent <= 127; ++exponent) {
        expectAround(std::ldexp(1.0, exponent));
    }
    comparison.expectSameBothSigns(std::numeric_limits<double>::max());
    comparison.expectSameBothSigns(std::numeric_limits<double>::min());
    comparison.expectSameBothSigns(std::numeric_limits<double>::denorm_min());
    comparison.expectSameBothSigns(std::numeric_limits<double>::infinity());
    comparison.expectSameBothSigns(std::numeric_limits<float>::denorm_min());
    EXPECT_GT(comparison.count(), 100'000U);
}

// Neighbours of every kind: none changes what becomes of another one.
TEST(GeneralNumber, RowsOfEveryLengthAreWrittenAsTheirNumbersAlone) {
    constexpr std::array<double, 12> kinds{0.0,   -0.0,     412.345F, -0.25, 9999995, 999999.5,
                                           1e-4F, 0.00321F, 1e300,    0.1,   -1e-300, 123456};
    RandomNumbers random(4);
    for (std::size_t length = 0; length <= 200; ++length) {
        std::vector<double> values(length);
        for (double &value : values) {
            value = random.oneIn(20) ? std::numeric_limits<double>::quiet_NaN() : random.pick(kinds);
        }
        expectSameFields(values);
    }
}

// The least numbers of single precision become 0 there, those of double precision do not.
TEST(GeneralNumber, NumbersThatVanishInSinglePrecisionAreNoZeros) {
    const std::vector<double> values{1e-300, -1e-46, std::numeric_limits<double>::denorm_min(), 0};
    EXPECT_EQ(generalFieldsOf(values), "1e-300\t-1e-46\t4.94066e-324\t0\t");
    expectSameFields(values);
}

// No two values of so few bits may hide a wrong entry of a table.
TEST(GeneralNumber, EveryWholeNumberOfSixDigitsIsWrittenAsByAStream) {
    StreamComparison comparison;
    for (int number = 0; number <= 1'100'000; number += isSanitizerBuild ? 7 : 1) {
        comparison.expectSameBothSigns(number);
    }
}

} // namespace

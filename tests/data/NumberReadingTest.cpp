#include "data/NumberReading.h"

#include "LibraryNumbers.h"
#include "RandomNumberTexts.h"
#include "support/HeapText.h"
#include "support/SanitizerBuild.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <clocale>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace std::string_view_literals;

// Calls `check` with every text of up to `longest` characters of `alphabet`, until one fails.
template <typename Check>
void checkAllTexts(std::string_view alphabet, std::size_t longest, Check check) {
    std::vector<std::size_t> choice;
    std::string text;
    while (choice.size() <= longest) {
        text.clear();
        for (const std::size_t c : choice) {
            text += alphabet[c];
        }
        ASSERT_TRUE(check(text));
        std::size_t i = 0;
        while (i < choice.size() && ++choice[i] == alphabet.size()) {
            choice[i++] = 0;
        }
        if (i == choice.size()) {
            choice.push_back(0);
        }
    }
}

} // namespace

TEST(NumberReading, TakesTheSixWhiteSpaceCharactersOfTheCLocaleAndNoOther) {
    std::string whiteSpace;
    for (int c = 0; c < 256; ++c) {
        if (isWhiteSpace(static_cast<char>(c))) {
            whiteSpace += static_cast<char>(c);
        }
    }
    EXPECT_EQ(whiteSpace, "\t\n\v\f\r ");
}

TEST(NumberReading, SkippingWhiteSpaceStopsAtTheEndOfTheText) {
    const HeapText text(" \t\r\n\v\f");
    TextCursor cursor{text.begin(), text.end()};
    skipWhiteSpace(cursor);
    EXPECT_EQ(cursor.at, text.end());
}

TEST(NumberReading, ReadsOddSpellingsAsStrtofDoes) {
    for (const std::string_view text : {""sv,
                                        " "sv,
                                        "+"sv,
                                        "-"sv,
                                        "."sv,
                                        "-."sv,
                                        ".e1"sv,
                                        "e1"sv,
                                        "+-5"sv,
                                        "-+5"sv,
                                        "+ 5"sv,
                                        "--5"sv,
                                        "5"sv,
                                        "+5"sv,
                                        "-5"sv,
                                        "-0"sv,
                                        "5."sv,
                                        ".5"sv,
                                        "5.e2"sv,
                                        "5..2"sv,
                                        "1e"sv,
                                        "1e+"sv,
                                        "1e-"sv,
                                        "1e+x"sv,
                                        "1E5"sv,
                                        "1e5.5"sv,
                                        "1e05"sv,
                                        "0x"sv,
                                        "0x."sv,
                                        "0x.g"sv,
                                        "0xg"sv,
                                        "0x1"sv,
                                        "0X1F"sv,
                                        "0x.8"sv,
                                        "0x1."sv,
                                        "0x1.8p3"sv,
                                        "0x1p"sv,
                                        "0x1p+"sv,
                                        "0x1p-"sv,
                                        "0x1pz"sv,
                                        "0x1p+-3"sv,
                                        "0xp1"sv,
                                        "0x1e2"sv,
                                        "0x1p-149"sv,
                                        "0x1p-150"sv,
                                        "0x1.000001p-150"sv,
                                        "0x0p99999"sv,
                                        "0x1p99999999999999999999"sv,
                                        "0x1p-99999999999999999999"sv,
                                        "0x0p99999999999999999999"sv,
                                        "0e99999999999999999999"sv,
                                        "1e99999999999999999999"sv,
                                        "1e-99999999999999999999"sv,
                                        "inf"sv,
                                        "-inf"sv,
                                        "INFINITY"sv,
                                        "infinit"sv,
                                        "in"sv,
                                        "nan"sv,
                                        "-nan"sv,
                                        "+nan"sv,
                                        "nan()"sv,
                                        "nan(abc_1)"sv,
                                        "nan(a"sv,
                                        "nan(a-)"sv,
                                        "1,5"sv,
                                        "1 5"sv,
                                        "0b1"sv,
                                        "1f"sv,
                                        "1_0"sv,
                                        "1'000"sv,
                                        "\xa0"
                                        "5"sv,
                                        "5\0"
                                        "6"sv,
                                        "\0"sv}) {
        EXPECT_TRUE(readsAsStrtof(std::string(text)));
    }
}

TEST(NumberReading, BeyondTheRangeOfSinglePrecisionGivesInfinityOrWhatStrtofGives) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr float smallest = std::numeric_limits<float>::denorm_min();
    struct Row {
        const char *text;
        float value;
    };
    for (const Row &row :
         {Row{"1e39", infinity}, Row{"-1e39", -infinity}, Row{"3.4028235e38", 3.4028235e38F},
          Row{"3.4028235677e38", 3.4028235e38F}, Row{"3.4028236e38", infinity}, Row{"1e-46", 0.0F},
          Row{"-1e-46", -0.0F}, Row{"1e-45", smallest}, Row{"0.8e-45", smallest}, Row{"0x1p128", infinity},
          Row{"0x1p-149", smallest}, Row{"0x1p-160", 0.0F}}) {
        EXPECT_EQ(std::bit_cast<std::uint32_t>(readFloatFrom(row.text).value),
                  std::bit_cast<std::uint32_t>(row.value))
            << row.text;
        EXPECT_TRUE(readsAsStrtof(row.text));
    }
}

TEST(NumberReading, ReadsEveryShortTextAsStrtofDoes) {
    checkAllTexts("01.exp+-infa()\t", isSanitizerBuild ? 3 : 5, readsAsStrtof);
}

TEST(NumberReading, ReadsRandomTextsOfManyShapesAsStrtofDoes) {
    RandomNumberTexts texts(20190601);
    for (std::size_t i = scaledDown(4'000'000); i > 0; --i) {
        ASSERT_TRUE(readsAsStrtof(texts.number()));
    }
}

TEST(NumberReading, ReadsOddIntegersAsStrtollDoes) {
    for (const std::string_view text : {""sv,
                                        " "sv,
                                        "+"sv,
                                        "-"sv,
                                        "+-5"sv,
                                        "- 5"sv,
                                        "5"sv,
                                        "+5"sv,
                                        "-5"sv,
                                        "007"sv,
                                        "0x10"sv,
                                        "5.9"sv,
                                        "5e3"sv,
                                        "x"sv,
                                        "\t\n\v\f\r 12\t13"sv,
                                        "9223372036854775807"sv,
                                        "9223372036854775808"sv,
                                        "-9223372036854775808"sv,
                                        "-9223372036854775809"sv,
                                        "99999999999999999999x"sv,
                                        "-99999999999999999999"sv,
                                        "00000000000000000000000000000000000001"sv,
                                        "1\0"
                                        "2"sv,
                                        "\xb2"sv}) {
        EXPECT_TRUE(readsAsStrtoll(std::string(text)));
    }
}

TEST(NumberReading, IntegersBeyond64BitsAreClampedAsStrtollClampsThem) {
    errno = 0;
    EXPECT_EQ(strtollFrom("9223372036854775808").value, std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(errno, ERANGE);
    EXPECT_EQ(readIntegerFrom("9223372036854775808").value, std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(readIntegerFrom("-9223372036854775809").value, std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(readIntegerFrom("-9223372036854775808").value, std::numeric_limits<std::int64_t>::min());
}

TEST(NumberReading, ReadsEveryShortTextAsStrtollDoes) {
    checkAllTexts("0189+-x.\t \x80", isSanitizerBuild ? 3 : 5, readsAsStrtoll);
}

TEST(NumberReading, ReadsRandomIntegersAsStrtollDoes) {
    RandomNumberTexts texts(20190602);
    for (std::size_t i = scaledDown(2'000'000); i > 0; --i) {
        ASSERT_TRUE(readsAsStrtoll(texts.integer()));
    }
}

TEST(NumberReading, ReadsTheSameNumbersUnderALocaleWithDecimalCommas) {
    RandomNumberTexts texts(20190603);
    struct Sample {
        std::string text;
        NumberFound<float> number;
        NumberFound<std::int64_t> integer;
    };
    std::vector<Sample> samples;
    for (std::size_t i = scaledDown(200'000); i > 0; --i) {
        std::string text = texts.number();
        const NumberFound<float> number = strtofFrom(text);
        const NumberFound<std::int64_t> integer = strtollFrom(text);
        samples.push_back({std::move(text), number, integer});
    }
    if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) {
        GTEST_SKIP() << "the locale de_DE.UTF-8 is not installed";
    }
    const bool hasDecimalComma = strtofFrom("1,5").value == 1.5F;
    std::size_t different = 0;
    std::string example;
    for (const Sample &sample : samples) {
        if (!isSame(readFloatFrom(sample.text), sample.number) ||
            !isSame(readIntegerFrom(sample.text), sample.integer)) {
            ++different;
            example = sample.text;
        }
    }
    std::setlocale(LC_ALL, "C");
    EXPECT_TRUE(hasDecimalComma);
    EXPECT_EQ(different, 0U) << "for instance " << testing::PrintToString(example);
}

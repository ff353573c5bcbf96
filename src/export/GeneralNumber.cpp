#include "export/GeneralNumber.h"

#include "data/VectorLevel.h"
#include "export/FixedTexts.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace {

constexpr int significantDigits = 6;
// Decimal exponents that print without "e".
constexpr int lowestFixed = -4;
constexpr int highestFixed = 5;

constexpr std::array<double, 11> thresholds{1e-4, 1e-3, 1e-2, 1e-1, 1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6};
constexpr std::array<double, 10> powers{1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};

// Of a number's bits those that single precision does not have.
constexpr std::uint64_t bitsBeyondSingle = (std::uint64_t{1} << 29) - 1;

// Binary exponents of the numbers from 1e-4 to 1e6.
constexpr int lowestBinary = -14;
constexpr int highestBinary = 19;

// Ten to the power of `exponent`, from lowestFixed to one above highestFixed.
constexpr double thresholdOf(int exponent) {
    return thresholds[static_cast<unsigned>(exponent - lowestFixed)];
}

// For each binary exponent the largest decimal exponent of its numbers.
constexpr auto decimalExponents = [] {
    std::array<int, highestBinary - lowestBinary + 1> exponents{};
    double limit = 1.0 / 8192; // above every number of the first binary exponent
    for (int &exponent : exponents) {
        exponent = lowestFixed;
        while (exponent <= highestFixed && thresholdOf(exponent + 1) < limit) {
            ++exponent;
        }
        limit *= 2;
    }
    return exponents;
}();

// The two digits of 0 to 99, the first one in the low byte.
constexpr auto digitPairs = [] {
    std::array<std::uint16_t, 100> pairs{};
    for (unsigned i = 0; i < pairs.size(); ++i) {
        pairs[i] = static_cast<std::uint16_t>(('0' + i / 10) | (('0' + i % 10) << 8));
    }
    return pairs;
}();

char *writeSlowly(char *out, double value) {
    return std::to_chars(out, out + generalNumberRoom, value, std::chars_format::general, significantDigits)
        .ptr;
}

// What is left of six digits in fixed notation when the zeros behind the last one that counts are gone.
// `digits` holds them, the first in the low byte.
char *writeFixed(char *out, std::uint64_t digits, int exponent) {
    constexpr std::uint64_t noDigits = 0x303030303030; // six zeros
    const int significant = (63 - std::countl_zero(digits ^ noDigits)) / 8 + 1;
    if (exponent < 0) {
        constexpr std::string_view zeroes = "0.0000";
        std::copy(zeroes.begin(), zeroes.end(), out);
        out += 1 - exponent;
        std::memcpy(out, &digits, sizeof digits);
        return out + significant;
    }
    const int whole = exponent + 1;
    const std::uint64_t fraction = digits >> (8 * whole);
    std::memcpy(out, &digits, sizeof digits);
    out[whole] = '.';
    std::memcpy(out + whole + 1, &fraction, sizeof fraction);
    return out + (significant > whole ? significant + 1 : whole);
}

// Values of a data file came through single precision. Such a number has 24 bits, ten to the ninth has 21
// without its twos, so their product is exact, and one rounding gives the right digits.
char *writeFast(char *out, double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const int binary = static_cast<int>(bits >> 52 & 0x7ff) - 1023;
    if (binary < lowestBinary || binary > highestBinary || (bits & bitsBeyondSingle) != 0) {
        return nullptr;
    }
    const double magnitude = std::fabs(value);
    int exponent = decimalExponents[static_cast<unsigned>(binary - lowestBinary)];
    exponent -= magnitude < thresholdOf(exponent) ? 1 : 0;
    if (exponent < lowestFixed || exponent > highestFixed) {
        return nullptr;
    }
    // Adding 2^52 rounds to a whole number, ties to the even one, and leaves it in the low bits.
    const double shifted = magnitude * powers[static_cast<unsigned>(highestFixed - exponent)] + 0x1p52;
    auto number = static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(shifted));
    if (number == 1'000'000) {
        number = 100'000;
        if (++exponent > highestFixed) {
            return nullptr;
        }
    }
    const std::uint64_t digits = digitPairs[number / 10000] |
                                 std::uint64_t{digitPairs[number / 100 % 100]} << 16 |
                                 std::uint64_t{digitPairs[number % 100]} << 32;
    *out = '-';
    return writeFixed(out + (bits >> 63), digits, exponent);
}

// At most FixedTexts::most of them.
char *writeMany(char *out, FixedTextsKernel kernel, std::span<const double> values) {
    FixedTexts fixed; // NOLINT(cppcoreguidelines-pro-type-member-init): the kernel fills it
    const std::uint64_t leftOut = kernel(values.data(), values.size(), fixed);
    constexpr std::string_view zeroes("0.0000\0\0", sizeof(std::uint64_t));
    for (std::size_t i = 0; i < values.size(); ++i) {
        if ((leftOut >> i & 1U) != 0) {
            out = writeGeneral(out, values[i]);
        } else {
            *out = '-';
            out += std::bit_cast<std::uint64_t>(values[i]) >> 63;
            std::memcpy(out, zeroes.data(), zeroes.size());
            out += fixed.leading[i];
            std::memcpy(out, &fixed.texts[i], sizeof fixed.texts[i]);
            out += fixed.lengths[i];
        }
        *out++ = '\t';
    }
    return out;
}

} // namespace

char *writeGeneral(char *out, double value) {
    if constexpr (std::endian::native == std::endian::little) {
        if (char *const end = writeFast(out, value)) {
            return end;
        }
    }
    if (value == 0) {
        *out = '-';
        out += std::signbit(value) ? 1 : 0;
        *out = '0';
        return out + 1;
    }
    if (std::isnan(value)) {
        constexpr std::string_view name = "nan";
        return std::copy(name.begin(), name.end(), out);
    }
    return writeSlowly(out, value);
}

char *writeGeneralFields(char *out, std::span<const double> values) {
    if (vectorLevel() >= VectorLevel::bits256) {
        if (const FixedTextsKernel kernel = fixedTexts256()) {
            for (; !values.empty(); values = values.subspan(std::min(values.size(), FixedTexts::most))) {
                out = writeMany(out, kernel, values.first(std::min(values.size(), FixedTexts::most)));
            }
            return out;
        }
    }
    for (const double value : values) {
        out = writeGeneral(out, value);
        *out++ = '\t';
    }
    return out;
}

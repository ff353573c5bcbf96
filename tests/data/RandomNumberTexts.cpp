#include "RandomNumberTexts.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

namespace {

using namespace std::string_view_literals;

constexpr std::array words{
    "inf"sv,  "INF"sv,   "Infinity"sv, "INFINITY"sv, "infinit"sv,   "infinityx"sv, "in"sv,       "i"sv,
    "nan"sv,  "NaN"sv,   "NAN()"sv,    "nan("sv,     "nan(1f_Z)"sv, "nan(1-)"sv,   "nan(12"sv,   "na"sv,
    "nano"sv, "infe5"sv, "1inf"sv,     "0nan"sv,     "nan(\0)"sv,   "n"sv,         "iNfInItY1"sv};
constexpr std::array starts{""sv,    ""sv,    ""sv,   ""sv,   "+"sv,  "-"sv,  " "sv,    "\t\n\v\f\r "sv,
                            "  -"sv, "\t+"sv, "+-"sv, "-+"sv, "- "sv, "--"sv, "\x85"sv, "\xa0 "sv,
                            "\b"sv};
constexpr std::array tails{""sv,  ""sv,   ""sv,  "\t12"sv, " "sv,  "x"sv,    "e"sv,  "e+"sv, "e-"sv,
                           "."sv, ".."sv, "f"sv, "p"sv,    "p+"sv, "\xff"sv, "\0"sv, "5"sv,  "%"sv};
constexpr std::string_view alphabet = "00123456789..eEpPxX+-infatyINFATYabcdf()_ \t\n\v\f\r,\0\x80\xff"sv;
constexpr std::string_view hexDigits = "0123456789abcdefABCDEF";

// All the digits of a number that is a sum of powers of two.
std::string allDigits(double value) {
    constexpr int significant = 160; // enough for the midpoint of any two neighbouring floats
    std::array<char, 256> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::scientific, significant);
    return {buffer.data(), result.ptr};
}

} // namespace

std::string RandomNumberTexts::number() {
    std::string text;
    switch (random_.below(9)) {
    case 0:
        text = decimal();
        break;
    case 1:
        text = decimal() + exponent('e', random_.oneIn(2) ? 60 : 400);
        break;
    case 2:
        text = shortest();
        break;
    case 3:
        text = nearHalfway();
        break;
    case 4:
        text = shortNearHalfway();
        break;
    case 5:
        text = hexadecimal();
        break;
    case 6:
        text = word();
        break;
    case 7:
        return soup();
    default:
        return mutated(random_.oneIn(2) ? shortest() : hexadecimal());
    }
    return beginning() + text + tail();
}

std::string RandomNumberTexts::integer() {
    if (random_.oneIn(8)) {
        return soup();
    }
    static constexpr std::array<std::int64_t, 8> edges{0,
                                                       std::numeric_limits<std::int32_t>::max(),
                                                       std::numeric_limits<std::uint32_t>::max(),
                                                       std::numeric_limits<std::int64_t>::max(),
                                                       std::numeric_limits<std::int64_t>::min(),
                                                       -1,
                                                       255,
                                                       65536};
    std::string text = random_.oneIn(3) ? std::to_string(random_.pick(edges)) : digits(25);
    if (random_.oneIn(6)) {
        text.insert(0, random_.below(30), '0');
    }
    if (random_.oneIn(4)) {
        text = mutated(text);
    }
    return beginning() + text + tail();
}

std::string RandomNumberTexts::digits(std::size_t most) {
    std::string text(random_.below(most + 1), '0');
    for (char &c : text) {
        c = static_cast<char>('0' + random_.below(10));
    }
    return text;
}

std::string RandomNumberTexts::exponent(char mark, std::int64_t limit) {
    std::string text(1, random_.oneIn(4) ? static_cast<char>(mark - 32) : mark);
    if (random_.oneIn(40)) { // beyond any integer
        return text + (random_.oneIn(2) ? "-" : "") + "9" + digits(30);
    }
    const std::int64_t value = random_.between(-limit, limit);
    if (value >= 0 && random_.oneIn(2)) {
        text += '+';
    }
    return text + std::to_string(value);
}

std::string RandomNumberTexts::decimal() {
    std::string text(random_.oneIn(8) ? random_.below(60) : 0, '0');
    text += digits(random_.oneIn(6) ? 60 : 9);
    if (!random_.oneIn(4)) {
        text += '.';
        text.append(random_.oneIn(8) ? random_.below(60) : 0, '0');
        text += digits(random_.oneIn(6) ? 60 : 9);
    }
    return text;
}

// A float in few digits, any of its 2^32 patterns.
std::string RandomNumberTexts::shortest() {
    const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random_.bits()));
    std::array<char, 64> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), result.ptr};
}

// The number halfway between two neighbouring floats.
double RandomNumberTexts::halfway() {
    constexpr std::uint32_t largest = 0x7F7FFFFF;
    std::uint32_t pattern = static_cast<std::uint32_t>(random_.below(largest + std::uint64_t{1}));
    if (random_.oneIn(4)) { // subnormal ones
        pattern >>= random_.between(8, 30);
    }
    const double low = std::bit_cast<float>(pattern);
    constexpr double beyondLargest = 3.4028236692093846e38; // 2^128, where the next float would be
    const double high = pattern == largest ? beyondLargest : std::bit_cast<float>(pattern + 1);
    return low + (high - low) / 2;
}

// Such a number, or a hair beside it: rounding must look at all digits.
std::string RandomNumberTexts::nearHalfway() {
    const double middle = halfway();
    std::string text = allDigits(middle);
    const std::size_t mark = text.find('e');
    switch (random_.below(4)) {
    case 0: // just above
        text.insert(mark, std::string(random_.below(40), '0') + '1');
        break;
    case 1: // just below
        text = allDigits(std::nextafter(middle, 0));
        break;
    case 2: // cut off
        text.erase(2 + random_.below(mark - 2), random_.below(mark));
        break;
    default:
        break;
    }
    return text;
}

// Such a number in the few digits of a plain decimal: the nearest double may be the middle itself, and only
// the digits tell on which side the text lies.
std::string RandomNumberTexts::shortNearHalfway() {
    const double significand = static_cast<double>(random_.between(1 << 23, (1 << 24) - 1)) + 0.5;
    const double middle = std::ldexp(significand, static_cast<int>(random_.between(-23, 26)));
    const int places = std::max(0, 14 - static_cast<int>(std::floor(std::log10(middle)))); // 15 digits in all
    std::array<char, 64> buffer{};
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), middle, std::chars_format::fixed, places);
    return {buffer.data(), result.ptr};
}

std::string RandomNumberTexts::hexadecimal() {
    const auto hex = [this](std::size_t most) {
        std::string text(random_.below(most + 1), '0');
        for (char &c : text) {
            c = random_.pick(hexDigits);
        }
        return text;
    };
    std::string text = random_.oneIn(4) ? "0X" : "0x";
    text.append(random_.oneIn(8) ? random_.below(40) : 0, '0');
    text += hex(random_.oneIn(6) ? 40 : 7);
    if (random_.oneIn(2)) {
        text += '.';
        text.append(random_.oneIn(8) ? random_.below(40) : 0, '0');
        text += hex(random_.oneIn(6) ? 40 : 7);
    }
    if (!random_.oneIn(3)) {
        text += exponent('p', random_.oneIn(2) ? 10 : 200);
    }
    return text;
}

std::string RandomNumberTexts::word() {
    return std::string(random_.pick(words));
}

std::string RandomNumberTexts::soup() {
    std::string text(random_.below(13), '0');
    for (char &c : text) {
        c = random_.pick(alphabet);
    }
    return text;
}

std::string RandomNumberTexts::mutated(std::string text) {
    const std::size_t at = text.empty() ? 0 : random_.below(text.size());
    switch (random_.below(3)) {
    case 0:
        text.insert(at, 1, random_.pick(alphabet));
        break;
    case 1:
        text.erase(at, 1);
        break;
    default:
        text.resize(at);
        break;
    }
    return text;
}

std::string RandomNumberTexts::beginning() {
    return std::string(random_.pick(starts));
}

std::string RandomNumberTexts::tail() {
    return std::string(random_.pick(tails));
}

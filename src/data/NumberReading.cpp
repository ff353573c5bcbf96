#include "data/NumberReading.h"

#include "data/EightBytes.h"
#include "data/PlainFields.h"
#include "data/ShortDecimal.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>
#include <system_error>

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isHexDigit(char c) {
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// Takes a sign; true for "-".
bool takeSign(TextCursor &cursor) {
    if (cursor.at == cursor.end || (*cursor.at != '+' && *cursor.at != '-')) {
        return false;
    }
    return *cursor.at++ == '-';
}

// "0x" counts as the start of a hexadecimal number only when a digit follows, with or without a point before
// it.
bool startsHexadecimal(const TextCursor &cursor) {
    const auto length = cursor.end - cursor.at;
    if (length < 3 || cursor.at[0] != '0' || (cursor.at[1] != 'x' && cursor.at[1] != 'X')) {
        return false;
    }
    return isHexDigit(cursor.at[2]) || (cursor.at[2] == '.' && length > 3 && isHexDigit(cursor.at[3]));
}

// Where a hexadecimal number that starts at `at` must end at the latest: GCC's library takes "p+-1" for an
// exponent.
const char *limitOfHexadecimal(const char *at, const char *end) {
    at = std::find_if_not(at, end, [](char c) { return isHexDigit(c) || c == '.'; });
    return end - at > 2 && at[1] == '+' && at[2] == '-' ? at : end;
}

// Decides whether the number in [at, end), which is out of range, is too large or too small: by the place of
// its first significant digit and its exponent.
bool isTooLarge(const char *at, const char *end, bool hexadecimal) {
    const char exponentMark = hexadecimal ? 'p' : 'e';
    std::int64_t place = 0; // of the first significant digit; 0 is just before the point
    bool significant = false;
    bool behindPoint = false;
    for (; at != end && (*at | 0x20) != exponentMark; ++at) {
        if (*at == '.') {
            behindPoint = true;
        } else if (!significant && *at == '0') {
            place -= behindPoint ? 1 : 0;
        } else {
            significant = true;
            place += behindPoint ? 0 : 1;
        }
    }
    if (at == end) {
        return place > 0;
    }
    TextCursor cursor{at + 1, end};
    std::int64_t exponent = 0;
    readInteger(cursor, exponent);
    // Clamped far outside any real exponent, so that the sum cannot overflow.
    constexpr std::int64_t limit = std::numeric_limits<std::int64_t>::max() / 4;
    exponent = std::min(std::max(exponent, -limit), limit);
    return exponent + place * (hexadecimal ? 4 : 1) > 0;
}

// Digits with a point somewhere among them: their number without the point, and how many stand behind it.
struct Decimal {
    std::uint64_t digits = 0;
    std::ptrdiff_t fraction = 0;
};

bool takeShortDecimal(TextCursor &cursor, Decimal &decimal) {
    ShortDecimal taken;
    const int length = takeShortDecimal(cursor.at, cursor.end, taken);
    decimal = {taken.digits, static_cast<std::ptrdiff_t>(taken.fraction)};
    cursor.at += length;
    return length > 0;
}

// Reads an integer of at most 15 digits that has 16 bytes of the line to itself. False, with the cursor
// unmoved, for any other one.
bool takeShortInteger(TextCursor &cursor, std::int64_t &value) {
    constexpr std::ptrdiff_t width = 8;
    if (!canTakeEightBytes || cursor.end - cursor.at < 2 * width) {
        return false;
    }
    const auto digitsIn = [](std::uint64_t bytes) { return firstPlaceOf(noDigitsIn(bytes)); };
    // Of `count` digits, at least one, behind zeros.
    const auto upTo = [](std::uint64_t bytes, int count) { return numberOf(bytes << (64 - 8 * count)); };
    const std::uint64_t first = eightDigitsAt(cursor.at);
    const int count = digitsIn(first);
    if (count < width) {
        value = upTo(first, count);
        cursor.at += count;
        return true;
    }
    const std::uint64_t second = eightDigitsAt(cursor.at + width);
    const int more = digitsIn(second);
    // The two lengths that times have go ways of their own: where the next field begins is then foreseen, not
    // waited for.
    if (more == 2) {
        value = numberOf(first) * std::int64_t{100} + static_cast<std::uint8_t>(joinedToPairs(second));
        cursor.at += width + 2;
        return true;
    }
    if (more == 1) {
        value = numberOf(first) * std::int64_t{10} + static_cast<std::uint8_t>(second);
        cursor.at += width + 1;
        return true;
    }
    if (more == width) {
        return false;
    }
    static constexpr std::int64_t powersOfTen[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000};
    value = numberOf(first) * powersOfTen[more] + (more > 0 ? upTo(second, more) : 0);
    cursor.at += width + more;
    return true;
}

// The same, for at most 15 digits before anything that does not go on with the number.
bool takeDecimal(TextCursor &cursor, Decimal &decimal) {
    constexpr std::ptrdiff_t exactDigits = 15; // any integer of so many digits is a double without rounding
    const char *at = cursor.at;
    std::uint64_t digits = 0;
    const auto takeDigits = [&] {
        const char *const begin = at;
        for (; at != cursor.end && isDigit(*at); ++at) {
            digits = digits * 10 + static_cast<std::uint64_t>(*at - '0');
        }
        return at - begin;
    };
    const std::ptrdiff_t whole = takeDigits();
    std::ptrdiff_t fraction = 0;
    if (at != cursor.end && *at == '.') {
        ++at;
        fraction = takeDigits();
    }
    const bool goesOn = at != cursor.end && ((*at | 0x20) == 'e' || (*at | 0x20) == 'x');
    if (goesOn || whole + fraction == 0 || whole + fraction > exactDigits) {
        return false;
    }
    decimal = {digits, fraction};
    cursor.at = at;
    return true;
}

// Reads the plain numbers that analysers write, such as "412.345": digits, perhaps a point, no exponent.
// False, with the cursor unmoved, when the text is anything else or the short way might not round as the long
// one.
bool readPlainDecimal(TextCursor &cursor, float &magnitude) {
    static constexpr double powersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                             1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    TextCursor behind = cursor;
    Decimal decimal;
    if (!takeShortDecimal(behind, decimal) && !takeDecimal(behind, decimal)) {
        return false;
    }
    // Where both numbers are singles without rounding, their quotient is the single nearest to the text's
    // value.
    constexpr std::uint64_t largestExact = std::uint64_t{1} << 24U;
    if (decimal.digits <= largestExact && decimal.fraction < std::ssize(exactPowersOfTen)) {
        magnitude = static_cast<float>(decimal.digits) / exactPowersOfTen[decimal.fraction];
        cursor = behind;
        return true;
    }
    // Both numbers are exact, so the quotient is the double nearest to the text's value. Rounding it on to
    // single precision is right unless it lies just between two singles: then the side of the text's value is
    // lost.
    const double nearest = static_cast<double>(decimal.digits) / powersOfTen[decimal.fraction];
    constexpr std::uint64_t droppedBits = (std::uint64_t{1} << 29U) - 1;
    constexpr std::uint64_t halfway = std::uint64_t{1} << 28U;
    if ((std::bit_cast<std::uint64_t>(nearest) & droppedBits) == halfway) {
        return false;
    }
    magnitude = static_cast<float>(nearest);
    cursor = behind;
    return true;
}

} // namespace

bool readInteger(TextCursor &cursor, std::int64_t &value) {
    skipWhiteSpace(cursor);
    const bool negative = takeSign(cursor);
    if (cursor.at == cursor.end || !isDigit(*cursor.at)) {
        return false;
    }
    if (takeShortInteger(cursor, value)) {
        value = negative ? -value : value;
        return true;
    }
    // So many digits always fit.
    constexpr std::ptrdiff_t fitting = 18;
    const char *const last = cursor.at + std::min(cursor.end - cursor.at, fitting);
    const char *at = cursor.at;
    std::int64_t sum = 0;
    for (; at != last && isDigit(*at); ++at) {
        sum = sum * 10 + (*at - '0');
    }
    if (at == cursor.end || !isDigit(*at)) {
        value = negative ? -sum : sum;
        cursor.at = at;
        return true;
    }
    // Gathered as a negative number, whose range is the larger one.
    constexpr auto lowest = std::numeric_limits<std::int64_t>::min();
    std::int64_t gathered = 0;
    bool clamped = false;
    for (; cursor.at != cursor.end && isDigit(*cursor.at); ++cursor.at) {
        const std::int64_t digit = *cursor.at - '0';
        if (clamped || gathered < lowest / 10 || (gathered == lowest / 10 && digit > -(lowest % 10))) {
            clamped = true;
        } else {
            gathered = gathered * 10 - digit;
        }
    }
    if (clamped) {
        gathered = lowest;
    }
    if (negative) {
        value = gathered;
    } else {
        value = gathered == lowest ? std::numeric_limits<std::int64_t>::max() : -gathered;
    }
    return true;
}

bool readFloat(TextCursor &cursor, float &value) {
    skipWhiteSpace(cursor);
    const bool negative = takeSign(cursor);
    if (cursor.at == cursor.end || *cursor.at == '-' || *cursor.at == '+') {
        return false;
    }
    float magnitude = 0;
    if (readPlainDecimal(cursor, magnitude)) {
        value = negative ? -magnitude : magnitude;
        return true;
    }
    const bool hexadecimal = startsHexadecimal(cursor);
    const char *const begin = cursor.at + (hexadecimal ? 2 : 0);
    const auto format = hexadecimal ? std::chars_format::hex : std::chars_format::general;
    const char *const limit = hexadecimal ? limitOfHexadecimal(begin, cursor.end) : cursor.end;
    const auto [end, error] = std::from_chars(begin, limit, magnitude, format);
    if (error == std::errc::result_out_of_range) {
        magnitude = isTooLarge(begin, end, hexadecimal) ? std::numeric_limits<float>::infinity() : 0.0F;
    } else if (error != std::errc()) {
        return false;
    }
    value = negative ? -magnitude : magnitude;
    cursor.at = end;
    return true;
}

bool passFloats(TextCursor &cursor, std::uint32_t count, PlainFields &plain) {
    for (;;) {
        count -= plain.pass(cursor, count);
        float ignored = 0;
        if (count == 0) {
            return true;
        }
        if (!readFloat(cursor, ignored)) {
            return false;
        }
        --count;
    }
}

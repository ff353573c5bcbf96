#pragma once

#include "data/PlainKernels.h"
#include "data/RecordKernels.h"

#include <cstddef>
#include <cstdint>

// The kernels written for vectors of any width: `Vector` says what its operations are. In a namespace without
// a name, because each level is built for processors of its own and must not share code.
namespace {

constexpr std::ptrdiff_t lookSize = 64; // bytes

// Appends the places of the bits in `tabs`, whose first one stands for byte `at`. Most looks find a dozen at
// most, so that many are written without asking.
template <typename Vector>
inline std::uint32_t appendEnds(std::uint64_t tabs, std::int32_t at, std::uint32_t count, FieldEnds &fields) {
    constexpr int unasked = 12;
    const auto found = static_cast<std::uint32_t>(__builtin_popcountll(tabs));
    std::int32_t *to = fields.ends + 1 + count;
    const auto append = [&] {
        *to++ = at + Vector::firstOf(tabs);
        tabs &= tabs - 1;
    };
    for (int i = 0; i < unasked; ++i) {
        append();
    }
    while (tabs != 0) { // NOLINT(bugprone-infinite-loop): append() takes one off
        append();
    }
    return count + found;
}

template <typename Vector>
std::uint32_t findFields(const char *begin, const char *from, const char *end, std::uint32_t wanted,
                         FieldEnds &fields) {
    fields.ends[0] = -1;
    std::uint32_t count = 0;
    const char *const last = end - from > FieldEnds::farthest ? from + FieldEnds::farthest : end;
    const char *at = from;
    for (; count < wanted && last - at >= lookSize; at += lookSize) {
        count = appendEnds<Vector>(Vector::tabs(at), static_cast<std::int32_t>(at - from), count, fields);
    }
    const std::ptrdiff_t left = last - at;
    if (count < wanted && left > 0) {
        if (last - begin >= lookSize) {
            count = appendEnds<Vector>(Vector::tabs(last - lookSize) >> (lookSize - left),
                                       static_cast<std::int32_t>(at - from), count, fields);
        } else {
            for (; at != last; ++at) {
                if (*at == '\t') {
                    fields.ends[++count] = static_cast<std::int32_t>(at - from);
                }
            }
        }
    }
    if (count < wanted && last == end) {
        fields.ends[++count] = static_cast<std::int32_t>(end - from);
    }
    return count < wanted ? count : wanted;
}

// What is still to be divided, field by field, so that no step waits for a quotient.
struct Quotients {
    std::int32_t digits[FieldEnds::most];
    // In the lowest three bits the index of the divisor, in the highest one a minus.
    std::uint32_t divisors[FieldEnds::most];
};

// Reads eight fields side by side, each in eight bytes of its own. Gives those left out.
//
// A field's bytes stand at the end of its eight, which is where the last digit belongs; the bytes before the
// point are moved up by one place, over it, and then the digits are joined as in numberOf().
template <typename Vector>
inline std::uint32_t readEight(const char *from, const std::int32_t *ends, std::int32_t *digits,
                               std::uint32_t *divisors) {
    using Bytes = typename Vector::Bytes;
    constexpr std::size_t parts = 64 / sizeof(Bytes);
    Bytes checks[parts];
    Bytes points[parts];
    Bytes pairs[parts];
    const auto lengths = Vector::lengthsOf(ends);
    for (std::size_t i = 0; i < parts; ++i) {
        const Bytes mask = Vector::maskOf(lengths, i);
        const Bytes text = Vector::both(Vector::fieldsAt(from, ends, i), mask);
        const Bytes offZero = Vector::less8(text, Vector::every8('0'));
        const Bytes isDigit = Vector::equal8(Vector::smaller8(offZero, Vector::every8(9)), offZero);
        const Bytes isPoint = Vector::equal8(text, Vector::every8('.'));
        const Bytes isSign =
            Vector::butNot(Vector::equal8(text, Vector::every8('-')), Vector::shiftedUp(mask));
        // To be added up over a field: 1 for each digit, 16 for each point, 255 for the minus before them.
        checks[i] = Vector::sumsOfBytes(
            Vector::either(Vector::less8(isSign, isDigit), Vector::both(isPoint, Vector::every8(16))));
        // Ones in all bytes below the point and in most bits of its own; in all there are without a point.
        const Bytes belowPoint = Vector::less64(isPoint, Vector::every64(1));
        points[i] = Vector::sumsOfBytes(belowPoint);
        const Bytes moved = Vector::butNot(belowPoint, Vector::whereAllOnes(belowPoint));
        const Bytes values = Vector::both(offZero, isDigit);
        pairs[i] = Vector::joinPairs(
            Vector::either(Vector::shiftedUp(Vector::both(values, moved)), Vector::butNot(values, moved)));
    }
    return Vector::finish(lengths, checks, points, pairs, digits, divisors);
}

// What is to be divided by when a point is in byte 0 to 7 of eight. A text without one has it behind its end
// like one with a point there: the sum of belowPoint over 256 is 7 for both.
inline constexpr float divisorsByPlace[] = {1e7F, 1e6F, 1e5F, 1e4F, 1e3F, 1e2F, 1e1F, 1e0F};

// Converts fewer than eight fields, together with some that have no length.
template <typename Vector>
std::uint64_t convertFew(const char *from, const FieldEnds &fields, std::uint32_t count, double *values) {
    std::int32_t ends[9];
    for (std::uint32_t i = 0; i < 9; ++i) {
        ends[i] = fields.ends[i < count ? i : count];
    }
    std::int32_t digits[8];
    std::uint32_t divisors[8];
    const std::uint32_t leftOut = readEight<Vector>(from, ends, digits, divisors);
    double converted[8];
    Vector::divideEight(digits, divisors, converted);
    for (std::uint32_t i = 0; i < count; ++i) {
        values[i] = converted[i];
    }
    return leftOut & ((1U << count) - 1);
}

template <typename Vector>
std::uint64_t convertFields(const char *from, const FieldEnds &fields, std::uint32_t count, double *values) {
    constexpr std::uint32_t atOnce = 8;
    if (count < atOnce) {
        return convertFew<Vector>(from, fields, count, values);
    }
    std::uint64_t leftOut = 0;
    // The last eight are taken together with some that were read already.
    const auto firstOf = [count](std::uint32_t i) { return i < count - atOnce ? i : count - atOnce; };
    Quotients quotients; // NOLINT(cppcoreguidelines-pro-type-member-init): readEight fills it
    for (std::uint32_t i = 0; i < count; i += atOnce) {
        const std::uint32_t first = firstOf(i);
        leftOut |= std::uint64_t{readEight<Vector>(from, fields.ends + first, quotients.digits + first,
                                                   quotients.divisors + first)}
                   << first;
    }
    for (std::uint32_t i = 0; i < count; i += atOnce) {
        const std::uint32_t first = firstOf(i);
        Vector::divideEight(quotients.digits + first, quotients.divisors + first, values + first);
    }
    return leftOut;
}

template <typename Vector>
void addColumns(std::size_t count, const double *values, const ColumnSums &columns) {
    constexpr std::size_t atOnce = Vector::doubles;
    double *const sums = columns.sums;
    double *const compensations = columns.compensations;
    double *const minima = columns.minima;
    double *const maxima = columns.maxima;
    const auto add = [=](std::size_t to, const double *from) {
        Vector::add(from, sums + to, compensations + to);
        Vector::widen(from, minima + to, maxima + to);
    };
    std::size_t i = 0;
    for (; i + atOnce <= count; i += atOnce) {
        add(i, values + i);
    }
    if (i < count) {
        double last[atOnce] = {};
        for (std::size_t j = i; j < count; ++j) {
            last[j - i] = values[j];
        }
        add(i, last);
    }
}

template <typename Vector>
std::uint8_t sumBytes(const char *begin, const char *end) {
    if (end - begin < Vector::bytes) {
        return sumPlainBytes(begin, end);
    }
    auto sums = Vector::every64(0);
    const char *at = begin;
    for (; end - at >= Vector::bytes; at += Vector::bytes) {
        sums = Vector::sum64(sums, Vector::sumsOfBytes(Vector::load(at)));
    }
    // The last bytes, together with some that were added already and are blotted out.
    static constexpr struct Blots {
        char zeros[sizeof(typename Vector::Bytes)] = {};
        char ones[sizeof(typename Vector::Bytes)];

        constexpr Blots() : ones() {
            for (char &byte : ones) {
                byte = '\xFF';
            }
        }
    } blots;
    const auto mask = Vector::load(blots.zeros + (end - at));
    sums = Vector::sum64(sums, Vector::sumsOfBytes(Vector::both(Vector::load(end - Vector::bytes), mask)));
    return static_cast<std::uint8_t>(Vector::lowTotal(sums));
}

} // namespace

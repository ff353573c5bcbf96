#include "data/PlainFields.h"

#include <algorithm>
#include <bit>
#include <cstddef>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

// What stands at up to 64 places of a text, one bit for each, the first place lowest.
struct Places {
    std::uint64_t tabs = 0;
    std::uint64_t digits = 0;
    std::uint64_t points = 0;
    std::uint64_t minuses = 0;
};

constexpr std::ptrdiff_t mostPlaces = 64;

#ifdef __SSE2__

constexpr std::ptrdiff_t atOnce = 16;

// Finds the places of 16 bytes, which become the bits from `place` on.
void findPlaces(const char *at, unsigned place, Places &places) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(at));
    const auto bits = [place](__m128i matches) {
        return static_cast<std::uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(matches))) << place;
    };
    const auto equal = [&](char c) { return bits(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(c))); };
    places.tabs |= equal('\t');
    places.points |= equal('.');
    places.minuses |= equal('-');
    // Bytes above 127 are negative.
    places.digits |= bits(_mm_and_si128(_mm_cmpgt_epi8(bytes, _mm_set1_epi8('0' - 1)),
                                        _mm_cmplt_epi8(bytes, _mm_set1_epi8('9' + 1))));
}

#else

constexpr std::ptrdiff_t atOnce = 1;

void findPlaces(const char *at, unsigned place, Places &places) {
    const std::uint64_t bit = std::uint64_t{1} << place;
    places.tabs |= *at == '\t' ? bit : 0;
    places.points |= *at == '.' ? bit : 0;
    places.minuses |= *at == '-' ? bit : 0;
    places.digits |= *at >= '0' && *at <= '9' ? bit : 0;
}

#endif

// Of `length` bytes, at least `atOnce` and at most 64.
Places placesOf(const char *at, std::ptrdiff_t length) {
    Places places;
    std::ptrdiff_t place = 0;
    for (; place + atOnce <= length; place += atOnce) {
        findPlaces(at + place, static_cast<unsigned>(place), places);
    }
    if (place < length) { // the last bytes, together with some that were looked at already
        findPlaces(at + length - atOnce, static_cast<unsigned>(length - atOnce), places);
    }
    return places;
}

// Where a field ends, the first one beginning at a tab at place 0, as far as all fields before are plain.
std::uint64_t endsOfPlainFields(const Places &places) {
    const std::uint64_t ends = places.tabs & ~std::uint64_t{1};
    const std::uint64_t text = ~places.tabs;
    // Adding the points to the ones of each field's places carries the first point of a field up to its end;
    // a second one meets zeros there and stays.
    const std::uint64_t secondPoints = (text + places.points) & places.points;
    const std::uint64_t behindDigits = places.digits << 1U;
    const std::uint64_t odd = (text & ~(places.digits | places.points | places.minuses)) |
                              (places.minuses & ~(places.tabs << 1U)) |
                              ((places.points | ends) & ~behindDigits) | secondPoints;
    const std::uint64_t beforeOdd = (odd & (~odd + 1)) - 1; // all places when none is odd
    return ends & beforeOdd;
}

} // namespace

// From the cursor on, which is at a tab: those still known, or those that another look finds. A tab before
// the place where the looking stopped ends a plain field itself, and behind that place none is known.
std::uint64_t PlainFields::endsBehind(const TextCursor &cursor) {
    if (const std::ptrdiff_t place = cursor.at - window_; place < mostPlaces) {
        const std::uint64_t known = ends_ & ~std::uint64_t{1} << static_cast<unsigned>(place);
        if (known != 0) {
            return known;
        }
    }
    const std::ptrdiff_t length = std::min(cursor.end - cursor.at, mostPlaces);
    Places places = placesOf(cursor.at, length);
    if (length < mostPlaces) {
        places.tabs |= std::uint64_t{1} << static_cast<unsigned>(length); // the line's end
    }
    window_ = cursor.at;
    ends_ = endsOfPlainFields(places);
    return ends_;
}

std::uint32_t PlainFields::pass(TextCursor &cursor, std::uint32_t count) {
    std::uint32_t passed = 0;
    while (passed < count && cursor.end - cursor.at >= atOnce && *cursor.at == '\t') {
        std::uint64_t ends = endsBehind(cursor);
        if (ends == 0) {
            break;
        }
        std::uint64_t last = 0;
        for (; ends != 0 && passed < count; ++passed) {
            last = ends;
            ends &= ends - 1;
        }
        cursor.at = window_ + std::countr_zero(last);
    }
    return passed;
}

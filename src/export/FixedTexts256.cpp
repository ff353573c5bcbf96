// Built for processors with AVX2: it runs on no others. So it uses nothing whose code another file might
// share.
#include "export/FixedTexts.h"

#ifdef __AVX2__

#include <immintrin.h>

namespace {

constexpr int lowestExponent = -4;
constexpr int highestExponent = 5;
constexpr float endOfFixed = 1e6F;

// The least singles that are not below 1e-4, 1e-3, ..., 1e5.
constexpr float thresholds[] = {
    0x1.a36e3p-14F, 0x1.0624dep-10F, 0x1.47ae16p-7F, 0x1.99999ap-4F, 1e0F, 1e1F, 1e2F, 1e3F, 1e4F, 1e5F};
// All are exact. Behind them is room for as many as a vector has.
alignas(32) constexpr float powers[16] = {1e0F, 1e1F, 1e2F, 1e3F, 1e4F, 1e5F, 1e6F, 1e7F, 1e8F, 1e9F};

inline __m256i all32(int number) {
    return _mm256_set1_epi32(number);
}

inline __m256i all64(long long number) {
    return _mm256_set1_epi64x(number);
}

void store(void *to, __m256i all) {
    _mm256_storeu_si256(static_cast<__m256i *>(to), all);
}

// The decimal exponents of eight numbers.
inline __m256i exponentsOf(__m256 magnitudes) {
    __m256i exponents = all32(lowestExponent - 1);
    for (const float threshold : thresholds) {
        const __m256 reached = _mm256_cmp_ps(magnitudes, _mm256_set1_ps(threshold), _CMP_GE_OQ);
        exponents = _mm256_sub_epi32(exponents, _mm256_castps_si256(reached));
    }
    return exponents;
}

// Ten to the power of 0 to 9.
inline __m256 powersOf(__m256i places) {
    const __m256 ofFew = _mm256_permutevar8x32_ps(_mm256_load_ps(powers), places);
    const __m256 ofMany = _mm256_permutevar8x32_ps(_mm256_load_ps(powers + 8), places);
    return _mm256_blendv_ps(ofFew, ofMany, _mm256_castsi256_ps(_mm256_cmpgt_epi32(places, all32(7))));
}

// What is to be done with every number of eight, each in 32 bits, in the order 0, 1, 4, 5, 2, 3, 6, 7: then
// what becomes of them in 64 bits is in order.
inline __m256i mixed(__m256d low, __m256d high) {
    return _mm256_castps_si256(_mm256_shuffle_ps(_mm256_castpd_ps(low), _mm256_castpd_ps(high), 0x88));
}

inline __m256i inOrder(__m256i mixed) {
    return _mm256_permute4x64_epi64(mixed, 0xD8);
}

// The digits of numbers below a million, in each 16 bits one of the first three and one of the last three.
struct Digits {
    __m256i hundreds;
    __m256i tens;
    __m256i ones;
};

inline Digits digitsOf(__m256i numbers) {
    const auto all16 = [](short number) { return _mm256_set1_epi16(number); };
    // As a single, 0.001 is a little more: no quotient falls short of a whole number, none reaches the next
    // one.
    const __m256 singles = _mm256_cvtepi32_ps(numbers);
    const __m256i thousands = _mm256_cvttps_epi32(_mm256_mul_ps(singles, _mm256_set1_ps(0.001F)));
    const __m256i rest = _mm256_sub_epi32(numbers, _mm256_madd_epi16(thousands, all32(1000)));
    const __m256i threes = _mm256_or_si256(thousands, _mm256_slli_epi32(rest, 16));
    const __m256i hundreds = _mm256_mulhi_epu16(threes, all16(656)); // divided by 100
    const __m256i pairs = _mm256_sub_epi16(threes, _mm256_mullo_epi16(hundreds, all16(100)));
    const __m256i tens = _mm256_mulhi_epu16(pairs, all16(6554)); // divided by 10
    return {hundreds, tens, _mm256_sub_epi16(pairs, _mm256_mullo_epi16(tens, all16(10)))};
}

// How many digits there are up to the last one that is not zero; less than 1 where all are.
inline __m256i significantOf(const Digits &digits) {
    // Four bits for each digit, the first one lowest, and four unused ones in the middle.
    const __m256i bits = _mm256_or_si256(digits.hundreds, _mm256_or_si256(_mm256_slli_epi16(digits.tens, 4),
                                                                          _mm256_slli_epi16(digits.ones, 8)));
    const __m256i exponents = _mm256_srli_epi32(_mm256_castps_si256(_mm256_cvtepi32_ps(bits)), 23);
    const __m256i last = _mm256_srai_epi32(_mm256_sub_epi32(exponents, all32(127)), 2);
    return _mm256_sub_epi32(last, _mm256_cmpgt_epi32(all32(4), last));
}

// Four texts of six digits with a point behind the first `whole` ones.
inline __m256i withPoint(__m256i text, __m128i whole) {
    const __m256i place = _mm256_slli_epi64(_mm256_cvtepi32_epi64(whole), 3);
    const __m256i behind = _mm256_sllv_epi64(all64(-1), place);
    const __m256i point = _mm256_sllv_epi64(all64('.'), place);
    const __m256i moved = _mm256_slli_epi64(_mm256_and_si256(text, behind), 8);
    return _mm256_or_si256(_mm256_andnot_si256(behind, text), _mm256_or_si256(moved, point));
}

inline void storeTexts(const Digits &digits, __m256i whole, std::uint64_t *texts) {
    const __m256i order =
        _mm256_broadcastsi128_si256(_mm_setr_epi8(0, 1, 4, 2, 3, 6, -1, -1, 8, 9, 12, 10, 11, 14, -1, -1));
    const __m256i firstTwo = _mm256_or_si256(digits.hundreds, _mm256_slli_epi16(digits.tens, 8));
    const auto text = [order](__m256i unordered) {
        return _mm256_or_si256(_mm256_shuffle_epi8(unordered, order), all64(0x303030303030));
    };
    const __m256i low = text(_mm256_unpacklo_epi32(firstTwo, digits.ones));
    const __m256i high = text(_mm256_unpackhi_epi32(firstTwo, digits.ones));
    store(texts, withPoint(low, _mm256_castsi256_si128(whole)));
    store(texts + 4, withPoint(high, _mm256_extracti128_si256(whole, 1)));
}

// Of four values, times exact powers of ten: rounded to whole numbers, in the low 32 bits of each 64.
//
// The product is exact, as a single has 24 bits and ten to the ninth 21 without its twos. Adding 2^52 rounds
// it, ties to the even number, and leaves that in the low bits.
inline __m256d rounded(__m256d values, __m128 factors) {
    const __m256d magnitudes = _mm256_andnot_pd(_mm256_set1_pd(-0.0), values);
    return _mm256_add_pd(_mm256_mul_pd(magnitudes, _mm256_cvtps_pd(factors)), _mm256_set1_pd(0x1p52));
}

inline unsigned bitsOfSingles(__m256d values, __m128 singles) {
    const __m256d areSingles = _mm256_cmp_pd(_mm256_cvtps_pd(singles), values, _CMP_EQ_OQ);
    return static_cast<unsigned>(_mm256_movemask_pd(areSingles));
}

// What the digits are made of, so that no step waits for all the steps before it.
struct Rounded {
    std::int32_t numbers[FixedTexts::most]; // of six digits, every eight of them mixed
    std::int32_t exponents[FixedTexts::most];
};

// Reads eight values, the first of which gets the index `at`, and gives those that are left out.
inline unsigned roundEight(const double *values, std::size_t at, Rounded &to) {
    const __m256d low = _mm256_loadu_pd(values);
    const __m256d high = _mm256_loadu_pd(values + 4);
    const __m128 lowSingles = _mm256_cvtpd_ps(low);
    const __m128 highSingles = _mm256_cvtpd_ps(high);
    const __m256 magnitudes =
        _mm256_andnot_ps(_mm256_set1_ps(-0.0F), _mm256_set_m128(highSingles, lowSingles));
    const __m256 isZero = _mm256_cmp_ps(magnitudes, _mm256_setzero_ps(), _CMP_EQ_OQ);
    const __m256 isFixed = _mm256_and_ps(_mm256_cmp_ps(magnitudes, _mm256_set1_ps(thresholds[0]), _CMP_GE_OQ),
                                         _mm256_cmp_ps(magnitudes, _mm256_set1_ps(endOfFixed), _CMP_LT_OQ));
    const __m256i exponents = _mm256_andnot_si256(_mm256_castps_si256(isZero), exponentsOf(magnitudes));
    const __m256 factors = powersOf(_mm256_sub_epi32(all32(highestExponent), exponents));
    const __m256i numbers = mixed(rounded(low, _mm256_castps256_ps128(factors)),
                                  rounded(high, _mm256_extractf128_ps(factors, 1)));
    store(to.exponents + at, exponents);
    store(to.numbers + at, numbers);
    const __m256i isMillion = inOrder(_mm256_cmpeq_epi32(numbers, all32(1000000)));
    const __m256 isGood = _mm256_andnot_ps(_mm256_castsi256_ps(isMillion), _mm256_or_ps(isZero, isFixed));
    const unsigned good = static_cast<unsigned>(_mm256_movemask_ps(isGood)) &
                          (bitsOfSingles(low, lowSingles) | bitsOfSingles(high, highSingles) << 4U);
    return good ^ 0xFFU;
}

inline void writeEight(const Rounded &from, std::size_t at, FixedTexts &fixed) {
    const auto load = [at](const std::int32_t *all) {
        return _mm256_loadu_si256(reinterpret_cast<const __m256i *>(all + at));
    };
    const __m256i exponents = load(from.exponents);
    const __m256i isBelowOne = _mm256_cmpgt_epi32(_mm256_setzero_si256(), exponents);
    store(fixed.leading + at, _mm256_and_si256(isBelowOne, _mm256_sub_epi32(all32(1), exponents)));
    // Where all digits stand behind the point, one is put where no one sees it.
    const __m256i whole = _mm256_blendv_epi8(_mm256_add_epi32(exponents, all32(1)), all32(7), isBelowOne);
    const Digits digits = digitsOf(load(from.numbers));
    storeTexts(digits, whole, fixed.texts + at);
    // Up to the last digit that counts, with the point where that stands behind it, or all before the point.
    const __m256i significant = inOrder(significantOf(digits));
    const __m256i hasPoint = _mm256_cmpgt_epi32(significant, whole);
    store(fixed.lengths + at,
          _mm256_max_epi32(_mm256_andnot_si256(isBelowOne, whole), _mm256_sub_epi32(significant, hasPoint)));
}

std::uint64_t writeAll(const double *values, std::size_t count, FixedTexts &fixed) {
    constexpr std::size_t atOnce = 8;
    Rounded numbers; // NOLINT(cppcoreguidelines-pro-type-member-init): roundEight fills it
    std::uint64_t leftOut = 0;
    std::size_t i = 0;
    for (; i + atOnce <= count; i += atOnce) {
        leftOut |= std::uint64_t{roundEight(values + i, i, numbers)} << i;
    }
    if (i < count) {
        double last[atOnce] = {};
        for (std::size_t j = i; j < count; ++j) {
            last[j - i] = values[j];
        }
        leftOut |= std::uint64_t{roundEight(last, i, numbers)} << i;
    }
    for (i = 0; i < count; i += atOnce) {
        writeEight(numbers, i, fixed);
    }
    return leftOut;
}

} // namespace

FixedTextsKernel fixedTexts256() {
    return writeAll;
}

#else

FixedTextsKernel fixedTexts256() {
    return nullptr;
}

#endif

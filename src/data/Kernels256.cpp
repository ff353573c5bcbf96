// Built for processors with AVX2, BMI and POPCNT: it runs on no others. So it uses nothing whose code another
// file might share.
#include "data/RecordKernels.h"

#ifdef __AVX2__

#include "data/VectorKernels.h"

#include <immintrin.h>

namespace {

struct Vector256 {
    using Bytes = __m256i;

    static std::uint64_t tabs(const char *at) {
        const __m256i tab = every8('\t');
        const auto bits = [tab](const char *from) {
            const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(from));
            return static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(bytes, tab)));
        };
        return bits(at) | std::uint64_t{bits(at + 32)} << 32;
    }

    // The place of the lowest bit; anything where there is none.
    static std::int32_t firstOf(std::uint64_t bits) { return static_cast<std::int32_t>(_tzcnt_u64(bits)); }

    static constexpr std::ptrdiff_t bytes = sizeof(Bytes);
    static Bytes load(const char *at) { return _mm256_loadu_si256(reinterpret_cast<const __m256i *>(at)); }
    static Bytes sum64(Bytes a, Bytes b) { return _mm256_add_epi64(a, b); }
    static int lowTotal(Bytes sums) {
        const __m128i two = _mm_add_epi64(_mm256_castsi256_si128(sums), _mm256_extracti128_si256(sums, 1));
        return _mm_cvtsi128_si32(_mm_add_epi64(two, _mm_unpackhi_epi64(two, two)));
    }
    static Bytes both(Bytes a, Bytes b) { return _mm256_and_si256(a, b); }
    static Bytes either(Bytes a, Bytes b) { return _mm256_or_si256(a, b); }
    static Bytes butNot(Bytes a, Bytes b) { return _mm256_andnot_si256(b, a); }
    static Bytes every8(char c) { return _mm256_set1_epi8(c); }
    static Bytes less8(Bytes a, Bytes b) { return _mm256_sub_epi8(a, b); }
    static Bytes smaller8(Bytes a, Bytes b) { return _mm256_min_epu8(a, b); }
    static Bytes equal8(Bytes a, Bytes b) { return _mm256_cmpeq_epi8(a, b); }
    static Bytes every64(long long n) { return _mm256_set1_epi64x(n); }
    static Bytes less64(Bytes a, Bytes b) { return _mm256_sub_epi64(a, b); }
    static Bytes shiftedUp(Bytes a) { return _mm256_slli_epi64(a, 8); }
    static Bytes sumsOfBytes(Bytes a) { return _mm256_sad_epu8(a, _mm256_setzero_si256()); }
    // In each eight bytes.
    static Bytes whereAllOnes(Bytes a) { return _mm256_cmpeq_epi64(a, every64(-1)); }
    static Bytes joinPairs(Bytes digits) {
        return _mm256_maddubs_epi16(digits, _mm256_set1_epi16(0x010A)); // 10 times the first, and the second
    }

    static __m256i lengthsOf(const std::int32_t *ends) {
        const auto load = [](const std::int32_t *from) {
            return _mm256_loadu_si256(reinterpret_cast<const __m256i *>(from));
        };
        return _mm256_sub_epi32(_mm256_sub_epi32(load(ends + 1), load(ends)), _mm256_set1_epi32(1));
    }

    // Fields 0, 1, 4, 5 and 2, 3, 6, 7, so that they are in order when they are packed together.
    static Bytes maskOf(__m256i lengths, std::size_t part) {
        // More than eight bytes become more than 64 bits to be dropped.
        const __m256i dropped = _mm256_sub_epi32(_mm256_set1_epi32(64), _mm256_slli_epi32(lengths, 3));
        const __m256i zero = _mm256_setzero_si256();
        return _mm256_sllv_epi64(every64(-1), part == 0 ? _mm256_unpacklo_epi32(dropped, zero)
                                                        : _mm256_unpackhi_epi32(dropped, zero));
    }

    static Bytes fieldsAt(const char *from, const std::int32_t *ends, std::size_t part) {
        const auto pair = [from](const std::int32_t *end) {
            const __m128i first = _mm_loadl_epi64(reinterpret_cast<const __m128i *>(from + end[0] - 8));
            const __m128i second = _mm_loadl_epi64(reinterpret_cast<const __m128i *>(from + end[1] - 8));
            return _mm_unpacklo_epi64(first, second);
        };
        const std::int32_t *const end = ends + 1 + 2 * part;
        return _mm256_inserti128_si256(_mm256_castsi128_si256(pair(end)), pair(end + 4), 1);
    }

    static std::uint32_t finish(__m256i lengths, const Bytes *checks, const Bytes *points, const Bytes *pairs,
                                std::int32_t *digits, std::uint32_t *divisors) {
        // Fours of digits, then numbers, as 32 bits.
        const auto joinFours = [](Bytes two) {
            return _mm256_madd_epi16(two, _mm256_set1_epi32(0x00010064));
        };
        const __m256i numbers = _mm256_madd_epi16(
            _mm256_packus_epi32(joinFours(pairs[0]), joinFours(pairs[1])), _mm256_set1_epi32(0x00012710));
        const __m256i check = packed(checks);
        const __m256i negative = _mm256_cmpgt_epi32(check, _mm256_set1_epi32(200));
        const __m256i counts = _mm256_sub_epi32(check, _mm256_and_si256(negative, _mm256_set1_epi32(255)));
        // All bytes but the minus are digits, or all but one, which is a point; and one is a digit at least.
        const __m256i surplus = _mm256_sub_epi32(counts, _mm256_add_epi32(lengths, negative));
        const __m256i fifteen = _mm256_set1_epi32(15);
        const __m256i zero = _mm256_setzero_si256();
        const __m256i good = _mm256_andnot_si256(
            _mm256_cmpeq_epi32(_mm256_and_si256(counts, fifteen), zero),
            _mm256_or_si256(_mm256_cmpeq_epi32(surplus, zero), _mm256_cmpeq_epi32(surplus, fifteen)));
        store(digits, numbers);
        store(divisors, either(_mm256_srli_epi32(packed(points), 8), _mm256_slli_epi32(negative, 31)));
        const int goodBits = _mm256_movemask_ps(_mm256_castsi256_ps(good));
        return static_cast<std::uint32_t>(goodBits) ^ 0xFFU;
    }

    static void divideEight(const std::int32_t *digits, const std::uint32_t *divisors, double *values) {
        const auto load32 = [](const void *at) {
            return _mm256_loadu_si256(static_cast<const __m256i *>(at));
        };
        const __m256i divisor = load32(divisors);
        const __m256 quotients =
            _mm256_div_ps(_mm256_cvtepi32_ps(load32(digits)),
                          _mm256_permutevar8x32_ps(_mm256_loadu_ps(divisorsByPlace), divisor));
        const __m256 minus = _mm256_and_ps(_mm256_castsi256_ps(divisor), _mm256_set1_ps(-0.0F));
        const __m256 singles = _mm256_xor_ps(quotients, minus);
        _mm256_storeu_pd(values, _mm256_cvtps_pd(_mm256_castps256_ps128(singles)));
        _mm256_storeu_pd(values + 4, _mm256_cvtps_pd(_mm256_extractf128_ps(singles, 1)));
    }

    static constexpr std::size_t doubles = 4;

    static void add(const double *values, double *sums, double *compensations) {
        const __m256d sum = _mm256_load_pd(sums);
        const __m256d corrected = _mm256_sub_pd(_mm256_loadu_pd(values), _mm256_load_pd(compensations));
        const __m256d total = _mm256_add_pd(sum, corrected);
        _mm256_store_pd(compensations, _mm256_sub_pd(_mm256_sub_pd(total, sum), corrected));
        _mm256_store_pd(sums, total);
    }

    // Where a value is not a number, these operations give their second operand.
    static void widen(const double *values, double *minima, double *maxima) {
        const __m256d value = _mm256_loadu_pd(values);
        _mm256_store_pd(minima, _mm256_min_pd(value, _mm256_load_pd(minima)));
        _mm256_store_pd(maxima, _mm256_max_pd(value, _mm256_load_pd(maxima)));
    }

private:
    static void store(void *to, __m256i all) { _mm256_storeu_si256(static_cast<__m256i *>(to), all); }

    // The low halves of sums of bytes, in the order of the fields.
    static __m256i packed(const Bytes *sums) {
        return _mm256_castps_si256(
            _mm256_shuffle_ps(_mm256_castsi256_ps(sums[0]), _mm256_castsi256_ps(sums[1]), 0x88));
    }
};

} // namespace

const RecordKernels *kernels256() {
    static constexpr RecordKernels kernels{findFields<Vector256>, convertFields<Vector256>,
                                           addColumns<Vector256>, sumBytes<Vector256>};
    return &kernels;
}

#else

const RecordKernels *kernels256() {
    return nullptr;
}

#endif

// Built for processors with SSE4.1 and POPCNT: it runs on no others. So it uses nothing whose code another
// file might share.
#include "data/RecordKernels.h"

#ifdef __SSE4_1__

#include "data/VectorKernels.h"

#include <smmintrin.h>

namespace {

struct Vector128 {
    using Bytes = __m128i;

    static std::uint64_t tabs(const char *at) {
        const __m128i tab = every8('\t');
        std::uint64_t places = 0;
        for (unsigned i = 0; i < 64; i += 16) {
            const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(at + i));
            const auto bits = static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, tab)));
            places |= std::uint64_t{bits} << i;
        }
        return places;
    }

    // The place of the lowest bit; anything where there is none.
    static std::int32_t firstOf(std::uint64_t bits) {
        return __builtin_ctzll(bits | std::uint64_t{1} << 63U);
    }

    static constexpr std::ptrdiff_t bytes = sizeof(Bytes);
    static Bytes load(const char *at) { return _mm_loadu_si128(reinterpret_cast<const __m128i *>(at)); }
    static Bytes sum64(Bytes a, Bytes b) { return _mm_add_epi64(a, b); }
    static int lowTotal(Bytes sums) {
        return _mm_cvtsi128_si32(_mm_add_epi64(sums, _mm_unpackhi_epi64(sums, sums)));
    }
    static Bytes both(Bytes a, Bytes b) { return _mm_and_si128(a, b); }
    static Bytes either(Bytes a, Bytes b) { return _mm_or_si128(a, b); }
    static Bytes butNot(Bytes a, Bytes b) { return _mm_andnot_si128(b, a); }
    static Bytes every8(char c) { return _mm_set1_epi8(c); }
    static Bytes less8(Bytes a, Bytes b) { return _mm_sub_epi8(a, b); }
    static Bytes smaller8(Bytes a, Bytes b) { return _mm_min_epu8(a, b); }
    static Bytes equal8(Bytes a, Bytes b) { return _mm_cmpeq_epi8(a, b); }
    static Bytes every64(long long n) { return _mm_set1_epi64x(n); }
    static Bytes less64(Bytes a, Bytes b) { return _mm_sub_epi64(a, b); }
    static Bytes shiftedUp(Bytes a) { return _mm_slli_epi64(a, 8); }
    static Bytes sumsOfBytes(Bytes a) { return _mm_sad_epu8(a, _mm_setzero_si128()); }
    // In each eight bytes.
    static Bytes whereAllOnes(Bytes a) { return _mm_cmpeq_epi64(a, every64(-1)); }
    static Bytes joinPairs(Bytes digits) {
        return _mm_maddubs_epi16(digits, _mm_set1_epi16(0x010A)); // 10 times the first, and the second
    }

    struct Lengths {
        __m128i low;
        __m128i high;
    };

    // Of eight fields; 0 for one of more than eight bytes.
    static Lengths lengthsOf(const std::int32_t *ends) {
        const auto four = [](const std::int32_t *from) {
            const auto load32 = [](const std::int32_t *at) {
                return _mm_loadu_si128(reinterpret_cast<const __m128i *>(at));
            };
            const __m128i lengths =
                _mm_sub_epi32(_mm_sub_epi32(load32(from + 1), load32(from)), _mm_set1_epi32(1));
            return butNot(lengths, _mm_cmpgt_epi32(lengths, _mm_set1_epi32(8)));
        };
        return {four(ends), four(ends + 4)};
    }

    // Fields 0 and 1, 2 and 3, and so on.
    static Bytes maskOf(const Lengths &lengths, std::size_t part) {
        // Each length in all eight bytes, to be compared with how many bytes there are from each one on.
        const __m128i first = _mm_setr_epi8(0, 0, 0, 0, 0, 0, 0, 0, 4, 4, 4, 4, 4, 4, 4, 4);
        const __m128i spread = part % 2 == 0 ? first : _mm_or_si128(first, every8(8));
        const __m128i behind = _mm_setr_epi8(7, 6, 5, 4, 3, 2, 1, 0, 7, 6, 5, 4, 3, 2, 1, 0);
        return _mm_cmpgt_epi8(_mm_shuffle_epi8(part < 2 ? lengths.low : lengths.high, spread), behind);
    }

    static Bytes fieldsAt(const char *from, const std::int32_t *ends, std::size_t part) {
        return pair(from + ends[1 + 2 * part] - 8, from + ends[2 + 2 * part] - 8);
    }

    static std::uint32_t finish(const Lengths &lengths, const Bytes *checks, const Bytes *points,
                                const Bytes *pairs, std::int32_t *digits, std::uint32_t *divisors) {
        const std::uint32_t low = finishFour(lengths.low, checks, points, pairs, digits, divisors);
        const std::uint32_t high =
            finishFour(lengths.high, checks + 2, points + 2, pairs + 2, digits + 4, divisors + 4);
        return low | high << 4U;
    }

    static void divideEight(const std::int32_t *digits, const std::uint32_t *divisors, double *values) {
        for (int i = 0; i < 8; i += 4) {
            const auto load32 = [i](const auto *from) {
                return _mm_loadu_si128(reinterpret_cast<const __m128i *>(from + i));
            };
            const auto divisor = [&](int field) { return divisorsByPlace[divisors[i + field] & 7U]; };
            const __m128 quotients = _mm_div_ps(_mm_cvtepi32_ps(load32(digits)),
                                                _mm_setr_ps(divisor(0), divisor(1), divisor(2), divisor(3)));
            const __m128 minus = _mm_and_ps(_mm_castsi128_ps(load32(divisors)), _mm_set1_ps(-0.0F));
            const __m128 singles = _mm_xor_ps(quotients, minus);
            _mm_storeu_pd(values + i, _mm_cvtps_pd(singles));
            _mm_storeu_pd(values + i + 2, _mm_cvtps_pd(_mm_movehl_ps(singles, singles)));
        }
    }

    static constexpr std::size_t doubles = 2;

    static void add(const double *values, double *sums, double *compensations) {
        const __m128d sum = _mm_load_pd(sums);
        const __m128d corrected = _mm_sub_pd(_mm_loadu_pd(values), _mm_load_pd(compensations));
        const __m128d total = _mm_add_pd(sum, corrected);
        _mm_store_pd(compensations, _mm_sub_pd(_mm_sub_pd(total, sum), corrected));
        _mm_store_pd(sums, total);
    }

    // Where a value is not a number, these operations give their second operand.
    static void widen(const double *values, double *minima, double *maxima) {
        const __m128d value = _mm_loadu_pd(values);
        _mm_store_pd(minima, _mm_min_pd(value, _mm_load_pd(minima)));
        _mm_store_pd(maxima, _mm_max_pd(value, _mm_load_pd(maxima)));
    }

private:
    static void store(void *to, __m128i all) { _mm_storeu_si128(static_cast<__m128i *>(to), all); }

    static Bytes pair(const void *first, const void *second) {
        return _mm_unpacklo_epi64(_mm_loadl_epi64(static_cast<const __m128i *>(first)),
                                  _mm_loadl_epi64(static_cast<const __m128i *>(second)));
    }

    // The low halves of sums of bytes, in the order of the fields.
    static __m128i packed(const Bytes *sums) {
        return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(sums[0]), _mm_castsi128_ps(sums[1]), 0x88));
    }

    static std::uint32_t finishFour(__m128i lengths, const Bytes *checks, const Bytes *points,
                                    const Bytes *pairs, std::int32_t *digits, std::uint32_t *divisors) {
        // Fours of digits, then numbers, as 32 bits.
        const auto joinFours = [](Bytes two) { return _mm_madd_epi16(two, _mm_set1_epi32(0x00010064)); };
        const __m128i numbers = _mm_madd_epi16(_mm_packus_epi32(joinFours(pairs[0]), joinFours(pairs[1])),
                                               _mm_set1_epi32(0x00012710));
        const __m128i check = packed(checks);
        const __m128i negative = _mm_cmpgt_epi32(check, _mm_set1_epi32(200));
        const __m128i counts = _mm_sub_epi32(check, both(negative, _mm_set1_epi32(255)));
        // All bytes but the minus are digits, or all but one, which is a point; and one is a digit at least.
        const __m128i surplus = _mm_sub_epi32(counts, _mm_add_epi32(lengths, negative));
        const __m128i fifteen = _mm_set1_epi32(15);
        const __m128i zero = _mm_setzero_si128();
        const __m128i good = butNot(either(_mm_cmpeq_epi32(surplus, zero), _mm_cmpeq_epi32(surplus, fifteen)),
                                    _mm_cmpeq_epi32(both(counts, fifteen), zero));
        store(digits, numbers);
        store(divisors, either(_mm_srli_epi32(packed(points), 8), _mm_slli_epi32(negative, 31)));
        return static_cast<std::uint32_t>(_mm_movemask_ps(_mm_castsi128_ps(good))) ^ 0xFU;
    }
};

} // namespace

const RecordKernels *kernels128() {
    static constexpr RecordKernels kernels{findFields<Vector128>, convertFields<Vector128>,
                                           addColumns<Vector128>, sumBytes<Vector128>};
    return &kernels;
}

#else

const RecordKernels *kernels128() {
    return nullptr;
}

#endif

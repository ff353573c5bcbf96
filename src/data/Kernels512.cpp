// Built for processors with AVX-512 (F, BW and VBMI2) and POPCNT, all of which have what kernels256() needs:
// it runs on no others. So it uses nothing whose code another file might share.
#include "data/RecordKernels.h"

#ifdef __AVX512VBMI2__

#include "data/VectorKernels.h"

#include <immintrin.h>

namespace {

struct Vector512 {
    using Bytes = __m512i;

    static constexpr std::ptrdiff_t bytes = sizeof(Bytes);
    static Bytes load(const char *at) { return _mm512_loadu_si512(at); }
    static Bytes sum64(Bytes a, Bytes b) { return _mm512_add_epi64(a, b); }
    static int lowTotal(Bytes sums) { return static_cast<int>(_mm512_reduce_add_epi64(sums)); }
    static Bytes both(Bytes a, Bytes b) { return _mm512_and_si512(a, b); }
    static Bytes every64(long long n) { return _mm512_set1_epi64(n); }
    static Bytes sumsOfBytes(Bytes a) { return _mm512_sad_epu8(a, _mm512_setzero_si512()); }
};

// 0 to 63.
struct Places {
    char bytes[lookSize];

    constexpr Places() : bytes() {
        for (int i = 0; i < lookSize; ++i) {
            bytes[i] = static_cast<char>(i);
        }
    }
};

// Appends the places of the bits in `tabs`, whose first one stands for byte `at`.
std::uint32_t appendPlaces(std::uint64_t tabs, std::int32_t at, std::uint32_t count, FieldEnds &fields) {
    alignas(sizeof(__m512i)) static constexpr Places every;
    constexpr std::uint32_t atOnce = 16; // most looks find fewer
    const __m512i places = _mm512_maskz_compress_epi8(tabs, _mm512_load_si512(every.bytes));
    const auto store = [at](std::int32_t *to, __m128i bytes) {
        _mm512_storeu_si512(to, _mm512_add_epi32(_mm512_set1_epi32(at), _mm512_cvtepu8_epi32(bytes)));
    };
    std::int32_t *const to = fields.ends + 1 + count;
    store(to, _mm512_castsi512_si128(places));
    const auto found = static_cast<std::uint32_t>(__builtin_popcountll(tabs));
    if (found > atOnce) {
        alignas(sizeof(__m512i)) char rest[lookSize];
        _mm512_store_si512(rest, places);
        for (std::uint32_t i = atOnce; i < found; i += atOnce) {
            store(to + i, _mm_load_si128(reinterpret_cast<const __m128i *>(rest + i)));
        }
    }
    return count + found;
}

std::uint32_t findTabs(const char * /*begin*/, const char *from, const char *end, std::uint32_t wanted,
                       FieldEnds &fields) {
    fields.ends[0] = -1;
    std::uint32_t count = 0;
    const char *const last = end - from > FieldEnds::farthest ? from + FieldEnds::farthest : end;
    for (const char *at = from; count < wanted && at < last; at += lookSize) {
        const std::ptrdiff_t left = last - at;
        const __mmask64 inside = left < lookSize ? (__mmask64{1} << left) - 1 : ~__mmask64{0};
        const __m512i text = _mm512_maskz_loadu_epi8(inside, at); // touches no other byte
        const __mmask64 tabs = _mm512_cmpeq_epi8_mask(text, _mm512_set1_epi8('\t'));
        count = appendPlaces(tabs, static_cast<std::int32_t>(at - from), count, fields);
    }
    if (count < wanted && last == end) {
        fields.ends[++count] = static_cast<std::int32_t>(end - from);
    }
    return count < wanted ? count : wanted;
}

void addEight(__m512d values, std::size_t at, const ColumnSums &columns) {
    const __m512d sum = _mm512_load_pd(columns.sums + at);
    const __m512d corrected = _mm512_sub_pd(values, _mm512_load_pd(columns.compensations + at));
    const __m512d total = _mm512_add_pd(sum, corrected);
    _mm512_store_pd(columns.compensations + at, _mm512_sub_pd(_mm512_sub_pd(total, sum), corrected));
    _mm512_store_pd(columns.sums + at, total);
    // Where a value is not a number, these operations give their second operand.
    _mm512_store_pd(columns.minima + at, _mm512_min_pd(values, _mm512_load_pd(columns.minima + at)));
    _mm512_store_pd(columns.maxima + at, _mm512_max_pd(values, _mm512_load_pd(columns.maxima + at)));
}

void addAll(std::size_t count, const double *values, const ColumnSums &columns) {
    constexpr std::size_t atOnce = 8;
    std::size_t i = 0;
    for (; i + atOnce <= count; i += atOnce) {
        addEight(_mm512_loadu_pd(values + i), i, columns);
    }
    if (i < count) {
        const auto inside = static_cast<__mmask8>((1U << (count - i)) - 1);
        addEight(_mm512_maskz_loadu_pd(inside, values + i), i, columns);
    }
}

} // namespace

// Fields are converted as by 256 bits: what bytes have to be moved for wider vectors costs what these save.
const RecordKernels *kernels512() {
    static const RecordKernels kernels{findTabs, kernels256()->convertFields, addAll, sumBytes<Vector512>};
    return &kernels;
}

#else

const RecordKernels *kernels512() {
    return nullptr;
}

#endif

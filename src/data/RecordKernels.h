#pragma once

#include <cstddef>
#include <cstdint>

// Where a line's fields end, as byte offsets from the first field's first byte: ends[0] is -1, the place of
// the tab before it, and field i takes the bytes between ends[i] and ends[i + 1].
struct FieldEnds {
    // More fields are taken piece by piece.
    static constexpr std::uint32_t most = 64;
    // A field longer than all this is no plain number.
    static constexpr std::ptrdiff_t farthest = 1024;

    // With room behind the last one wanted, as a look at 64 bytes may find more.
    std::int32_t ends[1 + 2 * most + 16];
};

// Sums and extremes of all columns, side by side. Each part begins on a cache line and has as many whole ones
// as it needs, whose last numbers may be anything.
struct ColumnSums {
    double *sums;
    double *compensations;
    double *minima;
    double *maxima;
};

// The inner loops of reading records, once for each level of vectors. Every level gives what the plain one
// gives, bit for bit.
struct RecordKernels {
    // Finds up to `wanted` fields, at most FieldEnds::most, from `from` on, none longer than
    // FieldEnds::farthest, and gives how many. The end of the line ends a field too. `begin`, at or before
    // `from`, is from where on bytes may be read.
    std::uint32_t (*findFields)(const char *begin, const char *from, const char *end, std::uint32_t wanted,
                                FieldEnds &fields);

    // Turns `count` fields from `from` on into the singles nearest to them, widened, as readFloat() does.
    // Gives those that were left out, a bit for each: all but decimals of at most eight bytes, or maybe nine
    // with a minus. Eight bytes before any end of a field may be read.
    std::uint64_t (*convertFields)(const char *from, const FieldEnds &fields, std::uint32_t count,
                                   double *values);

    // Adds one value to each of `count` columns.
    void (*addColumns)(std::size_t count, const double *values, const ColumnSums &columns);

    // Adds up the bytes in [begin, end), of which the low eight bits count.
    std::uint8_t (*sumBytes)(const char *begin, const char *end);
};

// Those of the present level.
const RecordKernels &recordKernels();

// Those of each level; null where the build has none. That the processor can run them is up to the caller.
const RecordKernels *plainKernels();
const RecordKernels *kernels128();
const RecordKernels *kernels256();
const RecordKernels *kernels512();

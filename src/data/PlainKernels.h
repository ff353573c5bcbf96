#pragma once

#include "data/ColumnSteps.h"
#include "data/RecordKernels.h"
#include "data/ShortDecimal.h"

// The steps of the plain kernels, for what is left over when vectors are full. In a namespace without a name:
// each level is built for processors of its own and must not share their code.
namespace {

// One field; false when it is left out.
[[maybe_unused]] inline bool convertPlainField(const char *begin, const char *end, double &value) {
    const bool negative = begin != end && *begin == '-';
    const auto length = end - begin - (negative ? 1 : 0);
    ShortDecimal decimal;
    if (length < 1 || length > 8 || !readShortDecimal(end, static_cast<unsigned>(length), decimal)) {
        return false;
    }
    const float magnitude = valueOf(decimal);
    value = static_cast<double>(negative ? -magnitude : magnitude);
    return true;
}

[[maybe_unused]] inline void addPlainColumns(std::size_t first, std::size_t count, const double *values,
                                             const ColumnSums &columns) {
    for (std::size_t i = first; i < count; ++i) {
        addCompensated(columns.sums[i], columns.compensations[i], values[i]);
        widen(columns.minima[i], columns.maxima[i], values[i], values[i]);
    }
}

[[maybe_unused]] inline std::uint8_t sumPlainBytes(const char *begin, const char *end) {
    std::uint8_t sum = 0;
    for (const char *at = begin; at != end; ++at) {
        sum = static_cast<std::uint8_t>(sum + static_cast<unsigned char>(*at));
    }
    return sum;
}

} // namespace

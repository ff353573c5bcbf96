#include "data/PlainKernels.h"

#include "data/RecordKernels.h"
#include "data/ShortDecimal.h"

#include <algorithm>

namespace {

std::uint32_t findFields(const char * /*begin*/, const char *from, const char *end, std::uint32_t wanted,
                         FieldEnds &fields) {
    fields.ends[0] = -1;
    const char *const last = end - from > FieldEnds::farthest ? from + FieldEnds::farthest : end;
    std::uint32_t count = 0;
    for (const char *at = from; count < wanted; ++at) {
        if (at == last) {
            if (last == end) {
                fields.ends[++count] = static_cast<std::int32_t>(at - from);
            }
            break;
        }
        if (*at == '\t') {
            fields.ends[++count] = static_cast<std::int32_t>(at - from);
        }
    }
    return count;
}

std::uint64_t convertFields(const char *from, const FieldEnds &fields, std::uint32_t count, double *values) {
    std::uint64_t leftOut = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        if (!convertPlainField(from + fields.ends[i] + 1, from + fields.ends[i + 1], values[i])) {
            leftOut |= std::uint64_t{1} << i;
        }
    }
    return leftOut;
}

void addColumns(std::size_t count, const double *values, const ColumnSums &columns) {
    addPlainColumns(0, count, values, columns);
}

} // namespace

const RecordKernels *plainKernels() {
    static constexpr RecordKernels kernels{findFields, convertFields, addColumns, sumPlainBytes};
    return &kernels;
}

#include "data/ValueRun.h"

#include "data/RecordKernels.h"
#include "data/ShortDecimal.h"

#include <algorithm>
#include <bit>
#include <cstddef>

namespace {

constexpr std::ptrdiff_t bytesBeforeEnds = 8; // that the kernels read
constexpr std::uint32_t worthWhile = 6;       // fewer numbers are read faster one by one

// A digit alone in its field, as counters and empty words have it.
bool readDigit(TextCursor &cursor, double &value) {
    const auto digit = static_cast<unsigned char>(cursor.at[1] - '0');
    if (digit > 9 || cursor.at[2] != '\t') {
        return false;
    }
    value = digit;
    cursor.at += 2;
    return true;
}

bool readOne(TextCursor &cursor, double &value) {
    if (cursor.end - cursor.at > 2 && *cursor.at == '\t') {
        if (readDigit(cursor, value)) {
            return true;
        }
        const bool negative = cursor.at[1] == '-';
        const char *const digits = cursor.at + (negative ? 2 : 1);
        ShortDecimal decimal;
        if (const int length = takeShortDecimal(digits, cursor.end, decimal); length > 0) {
            const float magnitude = valueOf(decimal);
            value = negative ? -magnitude : magnitude;
            cursor.at = digits + length;
            return true;
        }
    }
    float single = 0;
    if (!readFloat(cursor, single)) {
        return false;
    }
    value = single;
    return true;
}

struct Taken {
    std::uint32_t count = 0;
    bool isRegular = true; // each number had the field between two tabs to itself
};

// Reads numbers as long as they are alone in their fields, and the first that is not; may stop anywhere.
Taken takeFields(TextCursor &cursor, const char *begin, std::uint32_t count, double *values) {
    const RecordKernels &kernels = recordKernels();
    const char *const from = cursor.at + (cursor.at != cursor.end && *cursor.at == '\t' ? 1 : 0);
    FieldEnds fields; // NOLINT(cppcoreguidelines-pro-type-member-init): findFields fills it
    const std::uint32_t found =
        kernels.findFields(begin, from, cursor.end, std::min(count, FieldEnds::most), fields);
    std::uint64_t leftOut = kernels.convertFields(from, fields, found, values);
    for (; leftOut != 0; leftOut &= leftOut - 1) {
        const auto i = static_cast<std::uint32_t>(std::countr_zero(leftOut));
        cursor.at = from + fields.ends[i] + 1;
        TextCursor behind = cursor;
        if (!readOne(behind, values[i])) {
            return {i, false};
        }
        cursor = behind;
        if (cursor.at != from + fields.ends[i + 1]) {
            return {i + 1, false};
        }
    }
    if (found > 0) {
        cursor.at = from + fields.ends[found];
    }
    return {found, found > 0};
}

} // namespace

bool readFloats(TextCursor &cursor, const char *begin, std::uint32_t count, double *values) {
    bool isRegular = true;
    std::uint32_t read = 0;
    while (read < count) {
        if (isRegular && count - read >= worthWhile && cursor.at - begin >= bytesBeforeEnds) {
            const Taken taken = takeFields(cursor, begin, count - read, values + read);
            read += taken.count;
            // A line that is odd once is likely to be so again.
            isRegular = taken.isRegular;
        } else if (readOne(cursor, values[read])) {
            ++read;
        } else {
            return false;
        }
    }
    return true;
}

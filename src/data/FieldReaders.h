#pragma once

#include "data/Record.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

// How one column of a record line is read.
struct FieldReader {
    enum class Kind : std::uint8_t {
        seconds,
        nanoseconds,
        date,
        timeOfDay,
        diagnosticWord,
        value,
        checksum,
        skip,
        // Of columns whose values nobody wants: the field must be there all the same.
        checkedWord,
        checkedValues,
    };

    Kind kind = Kind::skip;
    std::uint32_t firstValue = 0; // index of the value that the column fills, or of its first one
    std::uint32_t flagCount = 0;  // diagnostic word: how many flag values follow the word's own
    // checkedValues: how many columns side by side. value: how many values follow each other from this column
    // on, which are read together.
    std::uint32_t fieldCount = 1;
};

enum class FieldResult : std::uint8_t { good, bad, checksumFailure };

// Notes in each value column's reader how many follow each other from there on.
void noteRuns(std::vector<FieldReader> &readers);

// Reads `fields`, a record line from just behind its tag's tab, into `stamp` and `values`, with room for all
// of them. The last of `readers` is none that skips, and their runs are noted. Values and stamp are whole
// only when the result is good. Nothing is allocated or thrown, and no other line counts: any thread may
// read.
FieldResult readFields(std::span<const FieldReader> readers, std::uint8_t checksumSeed,
                       std::string_view fields, RecordStamp &stamp, double *values);

// The same into `record`, whose values are already sized.
inline FieldResult readFields(std::span<const FieldReader> readers, std::uint8_t checksumSeed,
                              std::string_view fields, Record &record) {
    return readFields(readers, checksumSeed, fields, record, record.values.data());
}

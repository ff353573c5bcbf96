#pragma once

#include "data/Record.h"

#include <cstdint>
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
    std::uint32_t fieldCount = 1; // checkedValues: how many columns side by side
};

enum class FieldResult : std::uint8_t { good, bad, checksumFailure };

// Reads `fields`, a record line from just behind its tag's tab, into `record`, whose values are already
// sized. The last of `readers` is none that skips. Values and stamp are whole only when the result is good.
// Nothing is allocated.
FieldResult readFields(const std::vector<FieldReader> &readers, std::uint8_t checksumSeed,
                       std::string_view fields, Record &record);

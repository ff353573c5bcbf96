#pragma once

#include "data/ColumnLayout.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// Reads some value columns of a block's record lines; of the others it checks that they can be read, or reads
// them too where that is faster.
//
// A line gives a record exactly when reading all columns would, and the columns' values are the same. In a
// record read this way columns have places of their own.
class ColumnSelection {
public:
    // `columns` are indices of value columns of `layout`.
    ColumnSelection(const ColumnLayout &layout, std::span<const std::uint32_t> columns);

    const std::vector<FieldReader> &readers() const { return readers_; }
    // How many values a record that is read by readers() has.
    std::size_t valueCount() const { return valueCount_; }
    // Where in the record the value of columns[i] is.
    std::size_t placeOf(std::size_t i) const { return places_[i]; }

private:
    std::vector<FieldReader> readers_;
    std::size_t valueCount_ = 0;
    std::vector<std::size_t> places_;
};

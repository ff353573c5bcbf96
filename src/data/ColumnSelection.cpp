#include "data/ColumnSelection.h"

#include <algorithm>

using Kind = FieldReader::Kind;

namespace {

// How many values the reader fills: a diagnostic word fills its own and those of its flags.
std::uint32_t valuesOf(const FieldReader &reader) {
    switch (reader.kind) {
    case Kind::value:
        return 1;
    case Kind::diagnosticWord:
        return 1 + reader.flagCount;
    default:
        return 0;
    }
}

void appendCheck(std::vector<FieldReader> &readers, Kind kind) {
    if (kind == Kind::diagnosticWord) {
        readers.push_back({Kind::checkedWord});
    } else if (!readers.empty() && readers.back().kind == Kind::checkedValues) {
        ++readers.back().fieldCount;
    } else {
        readers.push_back({Kind::checkedValues});
    }
}

} // namespace

ColumnSelection::ColumnSelection(const ColumnLayout &layout, std::span<const std::uint32_t> columns)
    : places_(columns.size()) {
    // Many columns are read faster among all the others than each on its own.
    constexpr std::size_t few = 4;
    if (columns.size() > few) {
        readers_ = layout.readers;
        valueCount_ = layout.valueNames.size();
        places_.assign(columns.begin(), columns.end());
        return;
    }
    readers_.reserve(layout.readers.size());
    for (FieldReader reader : layout.readers) {
        const std::uint32_t first = reader.firstValue;
        const std::uint32_t count = valuesOf(reader);
        bool isWanted = count == 0;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (columns[i] >= first && columns[i] - first < count) {
                places_[i] = valueCount_ + columns[i] - first;
                isWanted = true;
            }
        }
        if (!isWanted) {
            appendCheck(readers_, reader.kind);
            continue;
        }
        reader.fieldCount = 1;
        reader.firstValue = static_cast<std::uint32_t>(valueCount_);
        readers_.push_back(reader);
        valueCount_ += count;
    }
    noteRuns(readers_);
}

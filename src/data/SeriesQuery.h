#pragma once

#include "data/BlockPoints.h"
#include "data/DataFragment.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class FragmentList;

// Which fragments give the points of some columns of one instrument and tag between two times, and at which
// level.
//
// Made under the lock of the data set that owns the list, used without it: the fragments are shared.
class SeriesQuery {
public:
    // `start` and `end` are UTC seconds or the whole-range bounds.
    SeriesQuery(const FragmentList &fragments, std::string_view instrument, std::string_view tag,
                const std::vector<std::string> &columns, double start, double end);

    double start() const { return start_; }
    double end() const { return end_; }
    // The level of the averaged series that give the points; nothing when the records themselves do.
    std::optional<std::size_t> level() const { return level_; }

    // The fragments that give points, in the list's order.
    std::size_t size() const { return fragments_.size(); }
    const DataFragment &fragment(std::size_t part) const { return *fragments_[part]; }
    // Index of the column's first value column in that fragment; nothing when the fragment has none.
    std::optional<std::uint32_t> valueColumn(std::size_t part, std::size_t column) const;
    // Those of all columns that the fragment has, in their order, and the column's place among them.
    std::vector<std::uint32_t> valueColumns(std::size_t part) const;
    std::size_t placeOf(std::size_t part, std::size_t column) const;

private:
    void resolveWholeRange(const FragmentList &fragments, std::string_view instrument, std::string_view tag);
    void pick(const std::shared_ptr<const DataFragment> &fragment, const std::vector<std::string> &columns);

    double start_;
    double end_;
    std::optional<std::size_t> level_;
    std::size_t columnCount_;
    std::vector<std::shared_ptr<const DataFragment>> fragments_;
    std::vector<std::ptrdiff_t> valueColumns_; // columnCount_ for each fragment, -1 for none
};

#pragma once

#include "data/DataFragment.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

// The fragments of a data set: in the order they were appended until they are sorted, then by the time of
// their first record, equal ones in the order they came.
//
// Inserting a fragment, and removing one file's fragments, cost hardly more for many loaded files than for
// few.
class FragmentList {
    // Unsorted fragments have the key -infinity; the second part keeps the order of arrival.
    using Position = std::pair<double, std::uint64_t>;
    using Fragments = std::map<Position, std::shared_ptr<const DataFragment>>;

public:
    class const_iterator {
    public:
        using value_type = std::shared_ptr<const DataFragment>;
        using difference_type = std::ptrdiff_t;
        using reference = const value_type &;
        using pointer = const value_type *;
        using iterator_category = std::forward_iterator_tag;

        const_iterator() = default;
        explicit const_iterator(Fragments::const_iterator at) : at_(at) {}
        reference operator*() const { return at_->second; }
        pointer operator->() const { return &at_->second; }
        const_iterator &operator++() {
            ++at_;
            return *this;
        }
        const_iterator operator++(int) {
            const_iterator before = *this;
            ++at_;
            return before;
        }
        bool operator==(const const_iterator &) const = default;

    private:
        Fragments::const_iterator at_;
    };

    void append(std::shared_ptr<const DataFragment> fragment);
    // Sorts what was appended, stably, by the time of the first record.
    void sort();
    // Removes the fragments of `fileName` and returns them.
    std::vector<std::shared_ptr<const DataFragment>> removeFile(std::string_view fileName);

    const_iterator begin() const { return const_iterator(fragments_.begin()); }
    const_iterator end() const { return const_iterator(fragments_.end()); }
    bool empty() const { return fragments_.empty(); }
    std::size_t size() const { return fragments_.size(); }
    const DataFragment &front() const { return *fragments_.begin()->second; }
    const DataFragment &back() const { return *fragments_.rbegin()->second; }

    // Calls `use` with each file name once, in no particular order.
    void forEachFileName(const std::function<void(const std::string &)> &use) const;

private:
    void put(double key, std::shared_ptr<const DataFragment> fragment);

    Fragments fragments_;
    std::unordered_map<std::string, std::vector<Position>> positionsOfFile_;
    std::uint64_t arrivals_ = 0;
};

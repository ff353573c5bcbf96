#pragma once

#include "data/DataFragment.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <unordered_map>

// The variable keys of a changing collection of fragments.
//
// Fragments of one layout (instrument, tag and value names) are counted together, so that adding or removing
// one more of a known layout costs one look-up, and nobody has to look at the keys again.
class VariableKeyCounts {
public:
    void add(const DataFragment &fragment);
    void remove(const DataFragment &fragment);

    // Changes whenever the set of keys changes.
    std::uint64_t revision() const { return revision_; }
    bool empty() const { return layoutsOfKey_.empty(); }
    std::set<std::string> keys() const;

private:
    std::unordered_map<std::string, std::size_t> fragmentsOfLayout_;
    std::map<std::string, std::size_t> layoutsOfKey_;
    std::uint64_t revision_ = 0;
};

#include "data/HalfHourIndex.h"

#include <algorithm>

namespace {

constexpr std::uint32_t halfHour = 1800; // s

} // namespace

void HalfHourIndex::begin(std::uint32_t utcSeconds) {
    pending_ = std::uint64_t{utcSeconds} / halfHour * halfHour;
}

void HalfHourIndex::makeRoom() {
    if (entries_.size() == entries_.capacity()) {
        entries_.reserve(2 * entries_.capacity() + 1);
    }
}

void HalfHourIndex::note(std::uint32_t utcSeconds, std::uint64_t offset) {
    if (pending_ > utcSeconds) {
        return;
    }
    entries_.emplace_back(static_cast<std::uint32_t>(pending_), offset);
    pending_ = (utcSeconds / halfHour + std::uint64_t{1}) * halfHour;
}

std::uint64_t HalfHourIndex::offsetFor(std::uint32_t utcSeconds, std::uint64_t fallback) const {
    const auto behind =
        std::partition_point(entries_.begin(), entries_.end(),
                             [utcSeconds](const Entry &entry) { return entry.first <= utcSeconds; });
    return behind == entries_.begin() ? fallback : std::prev(behind)->second;
}

std::uint64_t HalfHourIndex::offsetBehind(double utcSeconds, std::uint64_t fallback) const {
    const auto first =
        std::partition_point(entries_.begin(), entries_.end(),
                             [utcSeconds](const Entry &entry) { return entry.first < utcSeconds; });
    return first == entries_.end() ? fallback : first->second;
}

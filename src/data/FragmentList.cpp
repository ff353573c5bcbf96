#include "data/FragmentList.h"

#include <algorithm>
#include <limits>

namespace {

constexpr double unsorted = -std::numeric_limits<double>::infinity();

} // namespace

void FragmentList::put(double key, std::shared_ptr<const DataFragment> fragment) {
    const Position position{key, arrivals_++};
    auto &positions = positionsOfFile_[fragment->header().fileName];
    const auto placed = fragments_.emplace(position, std::move(fragment)).first;
    try {
        positions.push_back(position);
    } catch (...) {
        fragments_.erase(placed);
        throw;
    }
}

void FragmentList::append(std::shared_ptr<const DataFragment> fragment) {
    put(unsorted, std::move(fragment));
}

void FragmentList::sort() {
    while (!fragments_.empty() && fragments_.begin()->first.first == unsorted) {
        auto node = fragments_.extract(fragments_.begin());
        node.key().first = node.mapped()->firstTime();
        // A file's positions stand in the order of arrival. A damaged file may have very many.
        auto &positions = positionsOfFile_[node.mapped()->header().fileName];
        const auto position = std::lower_bound(
            positions.begin(), positions.end(), node.key().second,
            [](const Position &entry, std::uint64_t arrival) { return entry.second < arrival; });
        *position = node.key();
        fragments_.insert(std::move(node));
    }
}

std::vector<std::shared_ptr<const DataFragment>> FragmentList::removeFile(std::string_view fileName) {
    std::vector<std::shared_ptr<const DataFragment>> removed;
    const auto file = positionsOfFile_.find(std::string(fileName));
    if (file == positionsOfFile_.end()) {
        return removed;
    }
    for (const Position &position : file->second) {
        removed.push_back(std::move(fragments_.extract(position).mapped()));
    }
    positionsOfFile_.erase(file);
    return removed;
}

void FragmentList::forEachFileName(const std::function<void(const std::string &)> &use) const {
    for (const auto &file : positionsOfFile_) {
        use(file.first);
    }
}

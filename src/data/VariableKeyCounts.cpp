#include "data/VariableKeyCounts.h"

namespace {

// Equal for fragments with the same variable keys in the same order. Names come from lines, which hold no
// line feeds, so nothing but the separator is one.
std::string layoutOf(const DataFragment &fragment) {
    std::string layout = fragment.header().instrument + '\n' + fragment.tag();
    for (const std::string &name : fragment.valueNames()) {
        layout.append(1, '\n').append(name);
    }
    return layout;
}

std::set<std::string> keysOf(const DataFragment &fragment) {
    std::set<std::string> keys;
    fragment.addVariableKeys(keys);
    return keys;
}

} // namespace

void VariableKeyCounts::add(const DataFragment &fragment) {
    if (++fragmentsOfLayout_[layoutOf(fragment)] > 1) {
        return;
    }
    for (const std::string &key : keysOf(fragment)) {
        if (++layoutsOfKey_[key] == 1) {
            ++revision_;
        }
    }
}

void VariableKeyCounts::remove(const DataFragment &fragment) {
    const auto layout = fragmentsOfLayout_.find(layoutOf(fragment));
    if (layout == fragmentsOfLayout_.end() || --layout->second > 0) {
        return;
    }
    fragmentsOfLayout_.erase(layout);
    for (const std::string &key : keysOf(fragment)) {
        const auto count = layoutsOfKey_.find(key);
        if (count != layoutsOfKey_.end() && --count->second == 0) {
            layoutsOfKey_.erase(count);
            ++revision_;
        }
    }
}

std::set<std::string> VariableKeyCounts::keys() const {
    std::set<std::string> keys;
    for (const auto &key : layoutsOfKey_) {
        keys.insert(keys.end(), key.first);
    }
    return keys;
}

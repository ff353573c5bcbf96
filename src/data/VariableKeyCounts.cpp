#include "data/VariableKeyCounts.h"

namespace {

// Equal only for fragments with the same variable keys in the same order: each text has its length before it.
std::string layoutOf(const DataFragment &fragment) {
    std::string layout;
    const auto add = [&layout](const std::string &text) {
        layout.append(std::to_string(text.size())).append(1, ':').append(text);
    };
    add(fragment.header().instrument);
    add(fragment.tag());
    for (const std::string &name : fragment.valueNames()) {
        add(name);
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

#include "data/VariableKey.h"

std::optional<VariableKey> splitVariableKey(std::string_view key) {
    const auto first = key.find(':');
    if (first == std::string_view::npos) {
        return std::nullopt;
    }
    const auto second = key.find(':', first + 1);
    if (second == std::string_view::npos) {
        return std::nullopt;
    }
    return VariableKey{key.substr(0, first), key.substr(first + 1, second - first - 1),
                       key.substr(second + 1)};
}

std::string makeVariableKey(std::string_view instrument, std::string_view tag, std::string_view column) {
    std::string key;
    key.reserve(instrument.size() + tag.size() + column.size() + 2);
    return key.append(instrument).append(1, ':').append(tag).append(1, ':').append(column);
}

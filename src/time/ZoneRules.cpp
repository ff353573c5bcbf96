#include "time/ZoneRules.h"

#include <algorithm>

namespace {

const TimezoneType namelessUtc;

} // namespace

const TimezoneType &ZoneRules::typeAt(std::size_t transition) const {
    const std::int32_t index = transitionTypes[transition];
    if (index < 0 || static_cast<std::size_t>(index) >= types.size()) {
        return namelessUtc;
    }
    return types[static_cast<std::size_t>(index)];
}

const TimezoneType &ZoneRules::typeWithoutTransitions() const {
    if (types.empty()) {
        return namelessUtc;
    }
    const auto standard =
        std::find_if(types.begin(), types.end(), [](const TimezoneType &type) { return !type.isDst; });
    return standard != types.end() ? *standard : types.front();
}

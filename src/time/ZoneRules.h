#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// One kind of local time in a zone.
struct TimezoneType {
    // Seconds east of UTC: the file's 32 bits widened without sign, so a western offset is a large number
    // here.
    std::int64_t utcOffset = 0;
    bool isDst = false;
    std::uint32_t abbreviationIndex = 0; // byte in the file's block of abbreviations
    std::string abbreviation;
};

// What one compiled zone file says about its clock.
struct ZoneRules {
    // UTC seconds in file order. The file's 32 bits are widened without sign, so instants before 1970 are
    // large numbers that stand in front of smaller ones: the list is not sorted.
    std::vector<std::int64_t> transitions;
    std::vector<std::int32_t> transitionTypes; // for each transition, the index of the type it begins
    std::vector<TimezoneType> types;

    // The kind of time that begins with a transition. A zone without transitions keeps to its first type that
    // is not daylight saving. An index that the file does not back gives UTC without a name.
    const TimezoneType &typeAt(std::size_t transition) const;
    const TimezoneType &typeWithoutTransitions() const;
};

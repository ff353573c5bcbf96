#pragma once

#include "tools/Qa34xxInstrument.h"

#include <span>
#include <string_view>

// One value column of a QA-34xx file.
struct Qa34xxColumn {
    std::string_view name; // with its unit in parentheses, where it has one
    unsigned decimals;
    double (*value)(const Qa34xxState &state);
};

// Every value column in the order of the header: those before DATE and TIME, and those behind.
std::span<const Qa34xxColumn> qa34xxColumnsBeforeDate();
std::span<const Qa34xxColumn> qa34xxColumnsBehindTime();

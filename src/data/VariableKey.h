#pragma once

#include <optional>
#include <string>
#include <string_view>

// A variable key names one value column: instrument ":" tag ":" column name, as in "QA330:DATA:DIAG:PUMPON".
// The column name may hold ":" itself, so a key is split at its first two only.
struct VariableKey {
    std::string_view instrument;
    std::string_view tag;
    std::string_view column;
};

// The parts of `key`, as views into it; nothing when it holds fewer than two ":".
std::optional<VariableKey> splitVariableKey(std::string_view key);

std::string makeVariableKey(std::string_view instrument, std::string_view tag, std::string_view column);

#pragma once

#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>
#include <string_view>

// Ends the process, which is what a fuzzer takes for a find, when a rule does not hold. Targets may keep
// std::cerr quiet, as the product writes to it.
inline void require(bool holds, std::string_view rule) {
    if (!holds) {
        std::clog << "Broken rule: " << rule << std::endl;
        std::abort();
    }
}

inline void require(const testing::AssertionResult &result, std::string_view rule) {
    if (!result) {
        std::clog << result.message() << '\n';
    }
    require(static_cast<bool>(result), rule);
}

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// `text` so many times, one behind the other.
inline std::string repeated(std::string_view text, std::size_t times) {
    std::string all;
    all.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

// The float nearest to a small hexadecimal number, worked out bit by bit with the schoolbook's rounding. The
// strtof of glibc 2.36 cannot tell it: below the normal range it drops a bit that decides the rounding.
// `number` is what strtof takes, from the "0x" on; it must be below 1.
inline float nearestSmallHexadecimal(std::string_view number) {
    std::string bits;        // from the first one on
    std::int64_t weight = 0; // power of two behind the last bit before the point
    std::size_t at = 2;
    bool behindPoint = false;
    for (; at < number.size() && (number[at] | 0x20) != 'p'; ++at) {
        if (number[at] == '.') {
            behindPoint = true;
            continue;
        }
        const auto digit = std::stoul(std::string(1, number[at]), nullptr, 16);
        for (const unsigned long mask : {8UL, 4UL, 2UL, 1UL}) {
            if (!bits.empty() || (digit & mask) != 0) {
                bits += (digit & mask) != 0 ? '1' : '0';
            }
        }
        weight -= behindPoint ? 4 : 0;
    }
    if (at < number.size()) {
        constexpr std::int64_t limit = 1000000;
        const std::int64_t power = std::strtoll(std::string(number.substr(at + 1)).c_str(), nullptr, 10);
        weight += std::clamp(power, -limit, limit);
    }
    // A float keeps 24 bits, and none below 2^-149.
    const std::int64_t first = weight + static_cast<std::int64_t>(bits.size()) - 1;
    const std::int64_t last = std::max<std::int64_t>(first - 23, -149);
    const std::int64_t kept = first - last + 1;
    if (bits.empty() || kept < 0) {
        return 0;
    }
    std::uint64_t mantissa = 0;
    for (std::int64_t i = 0; i < kept; ++i) {
        const auto index = static_cast<std::size_t>(i);
        mantissa = mantissa * 2 + (index < bits.size() && bits[index] == '1' ? 1 : 0);
    }
    const std::string dropped = bits.substr(std::min(static_cast<std::size_t>(kept), bits.size()));
    if (!dropped.empty() && dropped[0] == '1' &&
        (mantissa % 2 == 1 || dropped.find('1', 1) != std::string::npos)) {
        ++mantissa;
    }
    return std::ldexp(static_cast<float>(mantissa), static_cast<int>(last));
}

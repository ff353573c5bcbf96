#pragma once

#include <cstdint>

// Which time columns a text export has: a sum of these. Settings and scripts store the numbers.
namespace TimeColumns {

inline constexpr std::uint32_t seconds = 1;     // UTC, since 1970
inline constexpr std::uint32_t nanoseconds = 2; // of the second
inline constexpr std::uint32_t date = 4;        // local
inline constexpr std::uint32_t time = 8;        // local
inline constexpr std::uint32_t timestamp = 16;  // local date and time
// Puts the offset from UTC behind the timestamp; nothing without one.
inline constexpr std::uint32_t offset = 32;

inline constexpr std::uint32_t standard = seconds | nanoseconds;
inline constexpr std::uint32_t all = 63;

} // namespace TimeColumns

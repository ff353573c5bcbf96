#include "time/TimeValue.h"

#include <array>
#include <charconv>
#include <string_view>

namespace {

void appendNumber(std::string &text, std::int64_t number, std::size_t digitCount) {
    std::array<char, 20> digits{};
    const char *const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    const std::string_view written(digits.data(), static_cast<std::size_t>(end - digits.data()));
    if (written.size() < digitCount) {
        text.append(digitCount - written.size(), '0');
    }
    text += written;
}

} // namespace

std::string formatSecondsNanos(TimeValue value) {
    // Wide enough to negate any 32-bit number.
    std::int64_t nanoseconds = value.nanoseconds;
    std::string text;
    if (value.seconds == 0 && nanoseconds < 0) {
        text += '-';
        nanoseconds = -nanoseconds;
    } else if (value.seconds < 0) {
        nanoseconds = -nanoseconds;
    }
    appendNumber(text, value.seconds, 1);
    text += '.';
    // A part whose sign does not go with the seconds' keeps it, in front of its nine digits.
    if (nanoseconds < 0) {
        text += '-';
        nanoseconds = -nanoseconds;
    }
    appendNumber(text, nanoseconds, 9);
    return text;
}

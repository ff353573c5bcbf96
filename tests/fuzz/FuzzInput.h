#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

// Takes choices off the front of an input. When it is used up they are all 0 and the texts empty, so that any
// input is a whole one.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t *bytes, std::size_t size)
        : rest_(reinterpret_cast<const char *>(bytes), size) {}

    std::uint8_t byte() { return static_cast<std::uint8_t>(number(1)); }
    // 0 to `limit` - 1, which fits a byte.
    std::uint8_t below(std::uint8_t limit) { return static_cast<std::uint8_t>(byte() % limit); }
    bool flag() { return below(2) != 0; }
    // Little-endian, of up to eight bytes.
    std::uint64_t number(std::size_t bytes) {
        std::uint64_t result = 0;
        unsigned shift = 0;
        for (const char c : text(bytes)) {
            result |= std::uint64_t{static_cast<unsigned char>(c)} << shift;
            shift += 8;
        }
        return result;
    }
    std::string_view text(std::size_t size) {
        const std::string_view taken = rest_.substr(0, std::min(size, rest_.size()));
        rest_.remove_prefix(taken.size());
        return taken;
    }
    // Up to the next line feed, which is taken too.
    std::string_view line() {
        const std::string_view taken = text(std::min(rest_.find('\n'), rest_.size()));
        text(1);
        return taken;
    }
    std::string_view rest() { return text(rest_.size()); }
    bool isUsedUp() const { return rest_.empty(); }

private:
    std::string_view rest_;
};

#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string_view>

// Random choices that are the same on every machine for the same seed.
class RandomNumbers {
public:
    explicit RandomNumbers(std::uint64_t seed) : engine_(seed) {}

    std::uint64_t bits() { return engine_(); }
    // 0 to `limit` - 1.
    std::uint64_t below(std::uint64_t limit) { return engine_() % limit; }
    // `first` to `last`, both included.
    std::int64_t between(std::int64_t first, std::int64_t last) {
        return first + static_cast<std::int64_t>(below(static_cast<std::uint64_t>(last - first) + 1));
    }
    bool oneIn(std::uint64_t cases) { return below(cases) == 0; }

    template <typename Choices>
    decltype(auto) pick(const Choices &choices) {
        return *std::next(std::begin(choices), static_cast<std::ptrdiff_t>(below(std::size(choices))));
    }

private:
    std::mt19937_64 engine_;
};

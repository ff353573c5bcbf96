#include "damage/Damage.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <numeric>
#include <optional>
#include <stdexcept>

namespace {

using namespace std::string_view_literals;

constexpr std::string_view meaningfulBytes = "\t\t\t\n\n\r 0123456789.-+eE:H\0\xff"sv;

std::optional<std::uint64_t> numberFromEnvironment(const char *name) {
    const char *const value = std::getenv(name);
    if (value == nullptr) {
        return std::nullopt;
    }
    const std::string_view text(value);
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) {
        throw std::invalid_argument(std::string(name) + " is no number");
    }
    return number;
}

} // namespace

std::string withChangedBytes(std::string bytes, RandomNumbers &random, std::uint64_t bytesPerChange) {
    if (bytes.empty()) {
        return bytes;
    }
    for (std::size_t changes = std::max<std::size_t>(bytes.size() / bytesPerChange, 1); changes > 0;
         --changes) {
        char &byte = bytes[random.below(bytes.size())];
        const char before = byte;
        byte = random.oneIn(2) ? random.pick(meaningfulBytes) : static_cast<char>(random.below(256));
        if (byte == before) {
            byte = static_cast<char>(~before);
        }
    }
    return bytes;
}

std::string joined(std::string_view first, std::string_view second, RandomNumbers &random) {
    const std::string_view begin = first.substr(0, random.below(first.size() + 1));
    const std::string_view end = second.substr(random.below(second.size() + 1));
    return std::string(begin).append(end);
}

std::vector<std::uint64_t> damageSeeds() {
    if (const auto one = numberFromEnvironment("FVQA_DAMAGE_SEED")) {
        return {*one};
    }
    std::vector<std::uint64_t> seeds(numberFromEnvironment("FVQA_DAMAGE_SEEDS").value_or(fewSeeds));
    std::iota(seeds.begin(), seeds.end(), 1U);
    return seeds;
}

bool isThoroughRun() {
    return numberFromEnvironment("FVQA_DAMAGE_SEEDS").has_value();
}

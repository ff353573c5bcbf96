#pragma once

#include <cstddef>
#include <cstdint>

// Numbers as printf's %g writes them in fixed notation, without their signs.
struct FixedTexts {
    static constexpr std::size_t most = 64;

    // How many characters of "0.0000" come first: 2 to 5 of a number below 1, else none.
    std::int32_t leading[most];
    // Then this many characters, the first one in the low byte, behind whose end may be anything.
    std::int32_t lengths[most];
    std::uint64_t texts[most];
};

// Fills `fixed` from at most FixedTexts::most values and gives those that it leaves out, a bit for each: all
// but 0 and singles whose magnitude lies between 1e-4 and 1e6, and of these the few that are rounded up to a
// power of ten.
using FixedTextsKernel = std::uint64_t (*)(const double *values, std::size_t count, FixedTexts &fixed);

// Works with vectors of 256 bits; null where the build has none. That the processor has them is up to the
// caller.
FixedTextsKernel fixedTexts256();

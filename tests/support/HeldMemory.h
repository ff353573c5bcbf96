#pragma once

#include <cstdint>
#include <malloc.h>

// Bytes that the program holds, in all arenas. The sanitizers have allocators of their own, of which this
// knows nothing: see isSanitizerBuild.
inline std::uint64_t heldMemory() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

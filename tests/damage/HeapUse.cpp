#include "damage/HeapUse.h"

#include "support/SanitizerBuild.h"

#ifdef FVQA_SANITIZER_BUILD
#include <sanitizer/allocator_interface.h>
#else
#include <malloc.h>
#endif

std::size_t heapUse() {
#ifdef FVQA_SANITIZER_BUILD
    return __sanitizer_get_current_allocated_bytes();
#else
    const struct mallinfo2 use = ::mallinfo2();
    return use.uordblks + use.hblkhd;
#endif
}

// Each header line makes a block, with a zone and columns of its own: the dearest bytes that a file can hold.
std::size_t largestHeapUse(std::size_t length) {
    constexpr std::size_t ofAnyFile = std::size_t{512} * 1024;
    constexpr std::size_t perByte = 100;
    return ofAnyFile + perByte * length;
}

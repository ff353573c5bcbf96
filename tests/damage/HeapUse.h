#pragma once

#include <cstddef>

// Bytes on the heap that are in use now. 0 where nobody counts them.
std::size_t heapUse();

// The most that a loaded file of so many bytes, its members unpacked, may have on the heap when it is loaded.
std::size_t largestHeapUse(std::size_t length);

#include "time/AllocationWatch.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

struct Tally {
    bool isWatching = false;
    std::size_t count = 0;
    std::size_t largest = 0;
};

thread_local Tally tally;

} // namespace

AllocationWatch::AllocationWatch() {
    tally = {true, 0, 0};
}

AllocationWatch::~AllocationWatch() {
    tally.isWatching = false;
}

std::size_t AllocationWatch::count() const {
    return tally.count;
}

std::size_t AllocationWatch::largest() const {
    return tally.largest;
}

// The thread sanitizer links operators of its own and allows no others: there nothing is seen, and the checks
// of allocations rest on the other builds.
#if defined(__SANITIZE_THREAD__)
#define FVQA_HAS_FOREIGN_NEW 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define FVQA_HAS_FOREIGN_NEW 1
#endif
#endif

bool AllocationWatch::isPossible() {
#ifdef FVQA_HAS_FOREIGN_NEW
    return false;
#else
    return true;
#endif
}

#ifndef FVQA_HAS_FOREIGN_NEW
// The other forms of new and delete of the standard library end in these.
void *operator new(std::size_t size) {
    if (tally.isWatching) {
        ++tally.count;
        tally.largest = std::max(tally.largest, size);
    }
    void *const memory = std::malloc(size > 0 ? size : 1);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void *memory) noexcept {
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept {
    std::free(memory);
}
#endif

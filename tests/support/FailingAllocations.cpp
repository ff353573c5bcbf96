#include "support/FailingAllocations.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <execinfo.h>
#include <new>

namespace {

struct Plan {
    bool isArmed = false;
    bool hasFailed = false;
    std::size_t good = 0;
    FailingAllocations::Lasting lasting = FailingAllocations::Lasting::once;
};

thread_local Plan plan;
std::atomic<std::size_t> heldCount = 0;

} // namespace

FailingAllocations::FailingAllocations(std::size_t good, Lasting lasting) {
    plan = {true, false, good, lasting};
}

FailingAllocations::~FailingAllocations() {
    plan.isArmed = false;
}

std::size_t FailingAllocations::held() {
    return heldCount;
}

bool FailingAllocations::hasFailed() const {
    return plan.hasFailed;
}

// The thread sanitizer links operators of its own and allows no others.
#if defined(__SANITIZE_THREAD__)
#define FVQA_HAS_FOREIGN_NEW 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define FVQA_HAS_FOREIGN_NEW 1
#endif
#endif

bool FailingAllocations::isPossible() {
#ifdef FVQA_HAS_FOREIGN_NEW
    return false;
#else
    return true;
#endif
}

#ifndef FVQA_HAS_FOREIGN_NEW

namespace {

// Or in what it calls.
bool isInQuaZip() {
    std::array<void *, 64> callers{};
    const auto count = static_cast<std::size_t>(::backtrace(callers.data(), int{callers.size()}));
    return std::any_of(callers.begin(), callers.begin() + count, [](const void *code) {
        Dl_info place{};
        return ::dladdr(code, &place) != 0 && std::strstr(place.dli_fname, "quazip") != nullptr;
    });
}

bool isToFail() {
    if (!plan.isArmed || (plan.hasFailed && plan.lasting == FailingAllocations::Lasting::once)) {
        return false;
    }
    if (plan.good > 0) {
        --plan.good;
        return false;
    }
    if (isInQuaZip()) {
        return false;
    }
    plan.hasFailed = true;
    return true;
}

void *counted(void *memory) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    ++heldCount;
    return memory;
}

void giveBack(void *memory) {
    if (memory != nullptr) {
        --heldCount;
        std::free(memory);
    }
}

} // namespace

// The other forms of new and delete of the standard library end in these.
void *operator new(std::size_t size) {
    return counted(isToFail() ? nullptr : std::malloc(size > 0 ? size : 1));
}

void *operator new(std::size_t size, std::align_val_t alignment) {
    const auto unit = static_cast<std::size_t>(alignment);
    return counted(isToFail() ? nullptr : std::aligned_alloc(unit, (size + unit - 1) / unit * unit));
}

void operator delete(void *memory) noexcept {
    giveBack(memory);
}

void operator delete(void *memory, std::size_t) noexcept {
    giveBack(memory);
}

void operator delete(void *memory, std::align_val_t) noexcept {
    giveBack(memory);
}

void operator delete(void *memory, std::size_t, std::align_val_t) noexcept {
    giveBack(memory);
}

#endif

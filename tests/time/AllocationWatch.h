#pragma once

#include <cstddef>

// Watches operator new on this thread while it lives. One at a time.
class AllocationWatch {
public:
    AllocationWatch();
    ~AllocationWatch();
    AllocationWatch(const AllocationWatch &) = delete;
    AllocationWatch &operator=(const AllocationWatch &) = delete;

    // False where the watch sees nothing: under the thread sanitizer.
    static bool isPossible();

    std::size_t count() const;
    std::size_t largest() const; // bytes
};

#pragma once

#include <cstddef>
#include <limits>

// Makes operator new fail on this thread while it lives, as it does when memory runs out. One at a time.
//
// The forms of new and delete of the whole program are replaced, those of libraries among them. What asks
// malloc() goes on getting memory: Qt's containers do. So does QuaZip, which loses what it holds when it gets
// no more.
class FailingAllocations {
public:
    enum class Lasting {
        once,    // a large block is not to be had, smaller ones are
        fromThen // nothing more is to be had
    };

    static constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

    // The first `good` blocks are still given.
    explicit FailingAllocations(std::size_t good, Lasting lasting = Lasting::once);
    ~FailingAllocations();
    FailingAllocations(const FailingAllocations &) = delete;
    FailingAllocations &operator=(const FailingAllocations &) = delete;

    // False where nothing fails: under the thread sanitizer.
    static bool isPossible();
    // Blocks that the program holds, on all threads.
    static std::size_t held();

    bool hasFailed() const;
};

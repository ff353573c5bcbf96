#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <string>

// Makes reading one file fail as a bad disk, a pulled cable or a slow share does, or lets something happen to
// it between two reads, while it lives: takes the place of the system's read() in the whole program. One at a
// time.
class FaultyReads {
public:
    static constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

    struct Fault {
        std::size_t failsAt = never;       // byte from which on reading gives an input/output error
        std::size_t failsUntil = never;    // byte from which on it is good again
        std::size_t endsAt = never;        // byte from which on nothing more comes
        std::size_t largestPiece = never;  // bytes given at a time
        std::size_t actsAtRead = never;    // number of the read, from 1, before which `action` is called
        std::function<void()> action = {}; // may read other files only
    };

    FaultyReads(const std::string &path, const Fault &fault);
    ~FaultyReads();
    FaultyReads(const FaultyReads &) = delete;
    FaultyReads &operator=(const FaultyReads &) = delete;

    // Of the file so far.
    std::size_t reads() const;
    std::size_t failures() const;
};

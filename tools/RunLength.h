#pragma once

#include <cstdint>

// How long one file gets, counted in record slots (a slot in a gap counts too) or in bytes.
class RunLength {
public:
    static RunLength ofSlots(std::uint64_t slots) { return RunLength(slots, false); }
    static RunLength ofBytes(std::uint64_t bytes) { return RunLength(bytes, true); }

    bool isReached(std::uint64_t slots, std::uint64_t bytes) const { return done(slots, bytes) >= total_; }

    // Index of the part that lies at this place when the file is cut into `parts` equal ones.
    std::uint64_t partAt(std::uint64_t slots, std::uint64_t bytes, std::uint64_t parts) const {
        return done(slots, bytes) * parts / total_;
    }

private:
    RunLength(std::uint64_t total, bool inBytes) : total_(total == 0 ? 1 : total), inBytes_(inBytes) {}
    std::uint64_t done(std::uint64_t slots, std::uint64_t bytes) const { return inBytes_ ? bytes : slots; }

    std::uint64_t total_;
    bool inBytes_;
};

#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

// How much memory the blocks of one source may take: a stock that no analyser's file needs, more with every
// byte that is read, and never beyond a ceiling.
//
// A damaged or made-up file can ask for far more than it holds: eight bytes of header line start a block of a
// kilobyte, one line names ten thousand columns. What is taken is reckoned, not measured, and counts what is
// kept once the file is loaded and merged. Belongs to the thread that reads the source.
class MemoryAllowance {
public:
    static constexpr std::uint64_t stock = std::uint64_t{256} * 1024 * 1024;        // bytes
    static constexpr std::uint64_t forEachByteRead = 8;                             // bytes
    static constexpr std::uint64_t ceiling = std::uint64_t{8} * 1024 * 1024 * 1024; // bytes

    // Its text names what there is too much of.
    class Exceeded : public std::length_error {
    public:
        using std::length_error::length_error;
    };

    void noteRead(std::uint64_t bytes) { read_ += bytes; }
    // `what` is in the plural, for people. Throws Exceeded when that is more than is left.
    void take(std::uint64_t bytes, const char *what);
    void giveBack(std::uint64_t bytes) { taken_ -= bytes; }

    std::uint64_t taken() const { return taken_; }
    std::uint64_t limit() const;
    std::uint64_t left() const { return limit() - taken_; }

private:
    std::uint64_t read_ = 0;
    std::uint64_t taken_ = 0;
};

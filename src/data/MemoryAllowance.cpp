#include "data/MemoryAllowance.h"

#include <algorithm>

std::uint64_t MemoryAllowance::limit() const {
    constexpr std::uint64_t mostReadThatCounts = (ceiling - stock) / forEachByteRead;
    return stock + std::min(read_, mostReadThatCounts) * forEachByteRead;
}

void MemoryAllowance::take(std::uint64_t bytes, const char *what) {
    if (bytes > left()) {
        constexpr std::uint64_t mebibyte = std::uint64_t{1024} * 1024;
        throw Exceeded("Too many " + std::string(what) +
                       " for the size of the file: they would take more than " +
                       std::to_string(limit() / mebibyte) + " MiB of memory");
    }
    taken_ += bytes;
}

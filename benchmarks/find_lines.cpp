// fvqa300-find-lines FILE...: the floor of every load. Reads the files block by block, finds every line feed
// and adds up all bytes; nothing else that a load does.

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace {

struct Totals {
    std::uint64_t bytes = 0;
    std::uint64_t lines = 0;
    std::uint64_t longestLine = 0;
    std::uint64_t sum = 0;
};

// A loop that compilers turn into vector code. 32 bits do for a block.
std::uint32_t sumOf(const unsigned char *bytes, std::size_t size) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < size; ++i) {
        sum += bytes[i];
    }
    return sum;
}

// `lineStart` is the offset of the line that the block begins in.
void addBlock(const unsigned char *block, std::size_t size, Totals &totals, std::uint64_t &lineStart) {
    totals.sum += sumOf(block, size);
    const unsigned char *const end = block + size;
    for (const unsigned char *at = block; at < end; ++at) {
        at = static_cast<const unsigned char *>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
        if (at == nullptr) {
            break;
        }
        const std::uint64_t offset = totals.bytes + static_cast<std::uint64_t>(at - block);
        const std::uint64_t length = offset - lineStart;
        totals.longestLine = length > totals.longestLine ? length : totals.longestLine;
        lineStart = offset + 1;
        ++totals.lines;
    }
    totals.bytes += size;
}

bool addFile(const char *path, Totals &totals) {
    constexpr std::size_t blockSize = 262144;
    const int file = open(path, O_RDONLY);
    if (file < 0) {
        std::perror(path);
        return false;
    }
    std::vector<unsigned char> block(blockSize);
    std::uint64_t lineStart = totals.bytes;
    ssize_t size = 0;
    while ((size = read(file, block.data(), block.size())) > 0) {
        addBlock(block.data(), static_cast<std::size_t>(size), totals, lineStart);
    }
    if (size < 0) {
        std::perror(path);
    }
    close(file);
    return size == 0;
}

} // namespace

int main(int argc, char **argv) {
    Totals totals;
    bool good = argc > 1;
    for (int i = 1; i < argc; ++i) {
        good = addFile(argv[i], totals) && good;
    }
    std::printf("%ju bytes, %ju lines, longest %ju, sum %ju\n", static_cast<std::uintmax_t>(totals.bytes),
                static_cast<std::uintmax_t>(totals.lines), static_cast<std::uintmax_t>(totals.longestLine),
                static_cast<std::uintmax_t>(totals.sum));
    return good ? 0 : 1;
}

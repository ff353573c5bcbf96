// fvqa300-inflate ARCHIVE...: the floor of loading archives. Reads the archives and inflates their data
// members by zlib, checking each CRC as every reader of archives does; nothing looks at the text.

#include "benchmarks/ZipMembers.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <zlib.h>

namespace {

std::vector<unsigned char> contentsOf(const char *path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file) {
        throw std::runtime_error("cannot be opened");
    }
    std::vector<unsigned char> contents(static_cast<std::size_t>(file.tellg()));
    file.seekg(0);
    file.read(reinterpret_cast<char *>(contents.data()), static_cast<std::streamsize>(contents.size()));
    if (!file) {
        throw std::runtime_error("cannot be read");
    }
    return contents;
}

// zlib's state, ended on every way out.
class Inflater {
public:
    Inflater() {
        constexpr int withoutHeader = -MAX_WBITS;
        if (inflateInit2(&stream_, withoutHeader) != Z_OK) {
            throw std::runtime_error("zlib could not be started");
        }
    }
    ~Inflater() { inflateEnd(&stream_); }
    Inflater(const Inflater &) = delete;
    Inflater &operator=(const Inflater &) = delete;

    z_stream &stream() { return stream_; }

private:
    z_stream stream_{};
};

// Returns the bytes of text.
std::uint64_t inflateMember(const std::vector<unsigned char> &archive, const ZipMember &member,
                            std::vector<unsigned char> &text) {
    Inflater inflater;
    z_stream &stream = inflater.stream();
    // zlib's input is not const for reasons of age; it is only read.
    stream.next_in = const_cast<unsigned char *>(archive.data() + member.offset);
    stream.avail_in = member.compressedSize;
    uLong crc = crc32(0, nullptr, 0);
    int status = Z_OK;
    while (status == Z_OK) {
        stream.next_out = text.data();
        stream.avail_out = static_cast<uInt>(text.size());
        status = inflate(&stream, Z_NO_FLUSH);
        crc = crc32(crc, text.data(), static_cast<uInt>(text.size()) - stream.avail_out);
    }
    if (status != Z_STREAM_END || crc != member.crc || stream.total_out != member.size) {
        throw std::runtime_error(member.name + " is damaged");
    }
    return stream.total_out;
}

} // namespace

int main(int argc, char **argv) {
    constexpr std::size_t blockSize = 262144; // stays in the processor's cache
    std::vector<unsigned char> text(blockSize);
    std::uint64_t members = 0;
    std::uint64_t bytes = 0;
    for (int i = 1; i < argc; ++i) {
        try {
            const std::vector<unsigned char> archive = contentsOf(argv[i]);
            for (const ZipMember &member : dataMembers(archive)) {
                bytes += inflateMember(archive, member, text);
                ++members;
            }
        } catch (const std::exception &error) {
            std::fprintf(stderr, "fvqa300-inflate: %s: %s\n", argv[i], error.what());
            return 1;
        }
    }
    std::printf("%ju members, %ju bytes\n", static_cast<std::uintmax_t>(members),
                static_cast<std::uintmax_t>(bytes));
    return members != 0 ? 0 : 1;
}

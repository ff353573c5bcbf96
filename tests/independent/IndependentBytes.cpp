#include "independent/IndependentBytes.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <zlib.h>

namespace {

std::size_t littleEndian(const std::string &bytes, std::size_t at, std::size_t count) {
    std::size_t number = 0;
    while (count > 0) {
        --count;
        number = number * 256 + static_cast<unsigned char>(bytes.at(at + count));
    }
    return number;
}

std::string inflated(const std::string &packed, std::size_t size) {
    std::string bytes(size, '\0');
    z_stream stream{};
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) {
        throw std::runtime_error("zlib cannot start");
    }
    std::string input = packed;
    stream.next_in = reinterpret_cast<Bytef *>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef *>(bytes.data());
    stream.avail_out = static_cast<uInt>(bytes.size());
    const int result = inflate(&stream, Z_FINISH);
    inflateEnd(&stream);
    if (result != Z_STREAM_END) {
        throw std::runtime_error("a member is broken");
    }
    return bytes;
}

// The member whose entry of the directory stands at `entry`.
std::string memberAt(const std::string &archive, std::size_t entry) {
    const std::size_t method = littleEndian(archive, entry + 10, 2);
    const std::size_t packedSize = littleEndian(archive, entry + 20, 4);
    const std::size_t local = littleEndian(archive, entry + 42, 4);
    const std::size_t data =
        local + 30 + littleEndian(archive, local + 26, 2) + littleEndian(archive, local + 28, 2);
    const std::string packed = archive.substr(data, packedSize);
    return method == 0 ? packed : inflated(packed, littleEndian(archive, entry + 24, 4));
}

bool isMetadata(std::string name) {
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return name.ends_with(".metadata");
}

} // namespace

std::string bytesOfFile(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path);
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> membersOf(const std::string &archive) {
    const std::size_t end = archive.rfind("PK\5\6");
    if (end == std::string::npos) {
        throw std::runtime_error("not an archive");
    }
    std::vector<std::string> members;
    std::size_t entry = littleEndian(archive, end + 16, 4);
    for (std::size_t count = littleEndian(archive, end + 10, 2); count > 0; --count) {
        const std::size_t nameLength = littleEndian(archive, entry + 28, 2);
        if (!isMetadata(archive.substr(entry + 46, nameLength))) {
            members.push_back(memberAt(archive, entry));
        }
        entry +=
            46 + nameLength + littleEndian(archive, entry + 30, 2) + littleEndian(archive, entry + 32, 2);
    }
    return members;
}

std::vector<std::string> linesOf(const std::string &bytes) {
    std::vector<std::string> lines;
    std::string line;
    for (const char byte : bytes) {
        if (byte != '\n') {
            line += byte;
            continue;
        }
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        if (line.size() > 1048576) {
            break;
        }
        lines.push_back(line);
        line.clear();
    }
    return lines;
}

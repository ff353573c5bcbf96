#include "benchmarks/ZipMembers.h"

#include <stdexcept>

namespace {

// Little-endian numbers at an offset, each checked against the end of the archive.
class Bytes {
public:
    explicit Bytes(const std::vector<unsigned char> &archive) : bytes_(archive) {}

    std::uint32_t number(std::uint64_t offset, int size) const {
        check(offset, static_cast<std::uint64_t>(size));
        std::uint32_t value = 0;
        for (int i = size - 1; i >= 0; --i) {
            value = value << 8 | bytes_[offset + static_cast<std::uint64_t>(i)];
        }
        return value;
    }

    std::string text(std::uint64_t offset, std::uint64_t size) const {
        check(offset, size);
        return {reinterpret_cast<const char *>(bytes_.data()) + offset, size};
    }

    void check(std::uint64_t offset, std::uint64_t size) const {
        if (size > bytes_.size() || offset > bytes_.size() - size) {
            throw std::runtime_error("the archive ends too early");
        }
    }

private:
    const std::vector<unsigned char> &bytes_;
};

constexpr std::uint32_t endSignature = 0x06054b50;
constexpr std::uint32_t entrySignature = 0x02014b50;
constexpr std::uint64_t endSize = 22;
constexpr std::uint64_t entrySize = 46;
constexpr std::uint64_t localHeaderSize = 30;
constexpr std::uint32_t deflated = 8;

std::uint64_t findEnd(const Bytes &bytes, std::uint64_t size) {
    for (std::uint64_t back = endSize; back <= size; ++back) {
        if (bytes.number(size - back, 4) == endSignature) {
            return size - back;
        }
    }
    throw std::runtime_error("no archive");
}

ZipMember memberAt(const Bytes &bytes, std::uint64_t entry, std::uint32_t nameSize) {
    ZipMember member;
    member.name = bytes.text(entry + entrySize, nameSize);
    member.crc = bytes.number(entry + 16, 4);
    member.compressedSize = bytes.number(entry + 20, 4);
    member.size = bytes.number(entry + 24, 4);
    const std::uint64_t local = bytes.number(entry + 42, 4);
    member.offset = local + localHeaderSize + bytes.number(local + 26, 2) + bytes.number(local + 28, 2);
    bytes.check(member.offset, member.compressedSize);
    return member;
}

} // namespace

std::vector<ZipMember> dataMembers(const std::vector<unsigned char> &archive) {
    const Bytes bytes(archive);
    const std::uint64_t end = findEnd(bytes, archive.size());
    const std::uint32_t count = bytes.number(end + 10, 2);
    std::uint64_t entry = bytes.number(end + 16, 4);
    std::vector<ZipMember> members;
    for (std::uint32_t i = 0; i < count; ++i) {
        if (bytes.number(entry, 4) != entrySignature) {
            throw std::runtime_error("the archive's directory is damaged");
        }
        const std::uint32_t nameSize = bytes.number(entry + 28, 2);
        const ZipMember member = memberAt(bytes, entry, nameSize);
        if (member.name.ends_with(".data")) {
            if (bytes.number(entry + 10, 2) != deflated) {
                throw std::runtime_error(member.name + " is not deflated");
            }
            members.push_back(member);
        }
        entry += entrySize + nameSize + bytes.number(entry + 30, 2) + bytes.number(entry + 32, 2);
    }
    return members;
}

#pragma once

#include <cstdint>
#include <string>
#include <vector>

// One deflated member of an archive: where its bytes lie.
struct ZipMember {
    std::string name;
    std::uint64_t offset = 0; // of its first compressed byte
    std::uint32_t compressedSize = 0;
    std::uint32_t size = 0;
    std::uint32_t crc = 0;
};

// The members named *.data of an archive that is given as its bytes, by the central directory. No more of the
// format than what the generator writes: no archive beyond 4 GiB, no encryption, nothing but deflated
// members. Throws std::runtime_error when the bytes are no such archive.
std::vector<ZipMember> dataMembers(const std::vector<unsigned char> &archive);

#pragma once

#include <QString>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct ZipEntry {
    enum class Method { deflated, stored };

    QString name;
    std::string bytes;
    Method method = Method::deflated;
};

// The lines of `text` in `count` members whose names do not stand in the archive's order; a block runs on
// over the cuts.
std::vector<ZipEntry> cutIntoMembers(const std::string &text, std::size_t count);

// Writes an archive of these members, in this order.
void writeZip(const QString &path, const std::vector<ZipEntry> &entries);

// A member whose directory entry may claim anything.
struct RawZipEntry {
    std::string name;
    std::string bytes; // stored as they are
    std::uint64_t declaredSize = 0;
    std::uint32_t crc = 0;
};

// The bytes of an archive that is put together by hand. Sizes from 4 GiB on stand in zip64 fields.
std::string rawZip(const std::vector<RawZipEntry> &entries);

std::uint32_t crcOf(std::string_view bytes);

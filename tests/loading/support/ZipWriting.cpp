#include "loading/support/ZipWriting.h"

#include <QIODevice>
#include <quazip.h>
#include <quazipfile.h>
#include <quazipnewinfo.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace {

constexpr std::uint64_t largest32 = std::numeric_limits<std::uint32_t>::max();

void check(bool good) {
    if (!good) {
        throw std::runtime_error("a test archive cannot be written");
    }
}

// Puts the low `bytes` bytes of `value` behind `text`, the lowest first.
void append(std::string &text, std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        text.push_back(static_cast<char>(value >> (8 * i) & 0xFFU));
    }
}

bool needsZip64(const RawZipEntry &entry) {
    return entry.declaredSize >= largest32;
}

// The fields that local and directory entry have in common, from "version needed" to the lengths.
std::string commonFields(const RawZipEntry &entry, std::size_t extraLength) {
    const std::uint64_t size = needsZip64(entry) ? largest32 : entry.declaredSize;
    std::string text;
    append(text, needsZip64(entry) ? 45 : 20, 2);
    append(text, 0, 2);           // flags
    append(text, 0, 2);           // method: stored
    append(text, 0x5021'0000, 4); // date and time
    append(text, entry.crc, 4);
    append(text, size, 4); // compressed
    append(text, size, 4); // uncompressed
    append(text, entry.name.size(), 2);
    append(text, extraLength, 2);
    return text;
}

std::string zip64Extra(const RawZipEntry &entry) {
    std::string text;
    if (needsZip64(entry)) {
        append(text, 1, 2);
        append(text, 16, 2);
        append(text, entry.declaredSize, 8);
        append(text, entry.declaredSize, 8);
    }
    return text;
}

} // namespace

std::vector<ZipEntry> cutIntoMembers(const std::string &text, std::size_t count) {
    std::vector<ZipEntry> members;
    std::size_t begin = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t feed = i + 1 == count
                                     ? text.size()
                                     : std::min(text.find('\n', text.size() / count * (i + 1)), text.size());
        const std::size_t end = std::min(feed + 1, text.size());
        members.push_back(
            {QString::number(100 + i * 7 % 5) + QString::number(i), text.substr(begin, end - begin)});
        begin = end;
    }
    return members;
}

void writeZip(const QString &path, const std::vector<ZipEntry> &entries) {
    QuaZip archive(path);
    archive.setUtf8Enabled(true);
    check(archive.open(QuaZip::mdCreate));
    for (const ZipEntry &entry : entries) {
        QuaZipFile member(&archive);
        const bool isStored = entry.method == ZipEntry::Method::stored;
        check(member.open(QIODevice::WriteOnly, QuaZipNewInfo(entry.name), nullptr, 0,
                          isStored ? 0 : Z_DEFLATED, isStored ? 0 : Z_BEST_SPEED));
        const auto size = static_cast<qint64>(entry.bytes.size());
        check(member.write(entry.bytes.data(), size) == size);
        member.close();
        check(member.getZipError() == ZIP_OK);
    }
    archive.close();
    check(archive.getZipError() == ZIP_OK);
}

std::string rawZip(const std::vector<RawZipEntry> &entries) {
    std::string text;
    std::string directory;
    for (const RawZipEntry &entry : entries) {
        const std::string extra = zip64Extra(entry);
        const std::size_t localOffset = text.size();
        text += "PK\3\4" + commonFields(entry, extra.size()) + entry.name + extra + entry.bytes;
        directory += "PK\1\2";
        append(directory, 45, 2); // version made by
        directory += commonFields(entry, extra.size());
        directory.append(2 + 2 + 2 + 4, '\0'); // comment, disk, attributes
        append(directory, localOffset, 4);
        directory += entry.name + extra;
    }
    const std::size_t directoryOffset = text.size();
    text += directory + "PK\5\6";
    append(text, 0, 2 + 2); // disks
    append(text, entries.size(), 2);
    append(text, entries.size(), 2);
    append(text, directory.size(), 4);
    append(text, directoryOffset, 4);
    append(text, 0, 2); // comment
    return text;
}

std::uint32_t crcOf(std::string_view bytes) {
    return static_cast<std::uint32_t>(
        ::crc32(0, reinterpret_cast<const Bytef *>(bytes.data()), static_cast<uInt>(bytes.size())));
}

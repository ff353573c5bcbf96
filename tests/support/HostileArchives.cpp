#include "support/HostileArchives.h"

#include "loading/support/ZipWriting.h"
#include "support/HostileInputs.h"

#include <QFile>

#include <stdexcept>

namespace {

HostileArchive bomb(std::string name, std::string begin, std::string line) {
    return {std::move(name),
            [begin = std::move(begin), line = std::move(line)](const QString &path, std::size_t bytes) {
                std::string text = begin;
                while (text.size() < bytes) {
                    text += line;
                }
                writeZip(path, {{"a.data", std::move(text)}});
            }};
}

// A block of one record after the other, so that each is read again where it lies.
HostileArchive ofBlocks(std::string name) {
    return {std::move(name), [](const QString &path, std::size_t bytes) {
                writeZip(path, {{"a.data", blocksOfOneRecord(bytes / 28)}});
            }};
}

RawZipEntry goodMember(std::string name, std::string text) {
    const std::uint32_t crc = crcOf(text);
    const std::size_t size = text.size();
    return {std::move(name), std::move(text), size, crc};
}

RawZipEntry damagedMember(std::string name, std::string text) {
    RawZipEntry member = goodMember(std::move(name), std::move(text));
    member.crc ^= 1U;
    return member;
}

// A kilobyte of the wanted size stands for one member.
HostileArchive manyMembers(std::string name, std::function<RawZipEntry(std::size_t)> member) {
    return {std::move(name), [member = std::move(member)](const QString &path, std::size_t bytes) {
                std::vector<RawZipEntry> entries;
                for (std::size_t i = 0; i < bytes / 1024; ++i) {
                    entries.push_back(member(i));
                }
                const std::string zip = rawZip(entries);
                QFile file(path);
                const auto size = static_cast<qint64>(zip.size());
                if (!file.open(QIODevice::WriteOnly) || file.write(zip.data(), size) != size) {
                    throw std::runtime_error("an archive cannot be written");
                }
            }};
}

std::string memberName(std::size_t number) {
    return std::to_string(number) + ".data";
}

std::string block(std::size_t number) {
    return "DATAH\tSECONDS\tA\nDATA\t" + std::to_string(number + 1) + "\t1\n";
}

// Of a block that the first member begins and all others go on with.
std::string lineOfOneBlock(std::size_t number) {
    return number == 0 ? block(number) : "DATA\t" + std::to_string(number + 1) + "\t1\n";
}

} // namespace

std::vector<HostileArchive> hostileArchives() {
    std::string values;
    for (int i = 0; i < 9999; ++i) {
        values += "\t1";
    }
    return {
        bomb("a member of the same record", "DATAH\tSECONDS\tA\n", "DATA\t1\t1\n"),
        bomb("a member of records of 10,000 columns", "DATAH" + values + '\n', "DATA" + values + '\n'),
        bomb("a member of header lines", "", "DATAH\tA\n"),
        ofBlocks("a member of header lines and records by turns"),
        bomb("a member of line feeds", "DATAH\tA\n", "\n"),
        bomb("a member without a line feed", "", "x"),
        manyMembers("members of nothing", [](std::size_t i) { return goodMember(memberName(i), ""); }),
        manyMembers("members of a block each",
                    [](std::size_t i) { return goodMember(memberName(i), block(i)); }),
        manyMembers("members that go on with one block",
                    [](std::size_t i) { return goodMember(memberName(i), lineOfOneBlock(i)); }),
        manyMembers("members with wrong check sums",
                    [](std::size_t i) { return damagedMember(memberName(i), lineOfOneBlock(i)); }),
        manyMembers("members with wrong check sums and long names",
                    [](std::size_t i) {
                        // Hardly longer ones can be opened.
                        return damagedMember(std::string(240, 'n') + memberName(i), lineOfOneBlock(i));
                    }),
    };
}

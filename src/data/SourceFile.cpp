#include "data/SourceFile.h"

#include <QFileInfo>

#include <algorithm>

SourceFile::SourceFile(const std::string &name) : name_(QString::fromStdString(name)), archive_(name_) {}

bool SourceFile::open(ChunkLineReader &lines, const std::string &member, std::uint64_t offset) {
    // One byte earlier: an offset that falls short may lie within a line, whose rest must not seem to begin
    // there.
    const auto from = static_cast<qint64>(std::max<std::uint64_t>(offset, 1) - 1);
    if (member.empty() || !openArchive()) {
        return lines.open(name_, QString::fromStdString(member), from); // which says why when it fails
    }
    return lines.openMember(archive_, QString::fromStdString(member), from);
}

// Opening a pipe would wait for its writer.
bool SourceFile::openArchive() {
    return archive_.isOpen() || (QFileInfo(name_).isFile() && archive_.open(QuaZip::mdUnzip));
}

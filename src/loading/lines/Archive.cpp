#include "loading/lines/Archive.h"

#include <quazip.h>
#include <quazipfileinfo.h>

#include <algorithm>

namespace {

// A damaged directory may claim any size: what lies above this is cut, so that sums and percentages of sizes
// fit 64 bits.
constexpr qint64 largestTotal = qint64{1} << 55;

bool endsWith(const QString &text, const char *ending) {
    return text.endsWith(QLatin1String(ending), Qt::CaseInsensitive);
}

} // namespace

bool isArchiveName(const QString &path) {
    return endsWith(path, ".ghg") || endsWith(path, ".zip");
}

MemberList listArchive(const QString &path) {
    MemberList list;
    QuaZip archive(path);
    if (!archive.open(QuaZip::mdUnzip)) {
        list.problem = QStringLiteral("This is no archive, or it is empty or cut off");
        return list;
    }
    if (!archive.goToFirstFile()) {
        list.problem = QStringLiteral("The archive holds no files");
        return list;
    }
    do {
        QuaZipFileInfo64 entry;
        if (!archive.getCurrentFileInfo(&entry)) {
            list.problem = QStringLiteral("An entry of the archive cannot be read");
            continue;
        }
        // The member of site and sensor settings lies beside each data member and holds no data lines.
        if (endsWith(entry.name, ".metadata")) {
            continue;
        }
        const auto room = static_cast<quint64>(largestTotal - list.totalSize);
        const auto size = static_cast<qint64>(std::min<quint64>(entry.uncompressedSize, room));
        list.members.push_back({entry.name, size});
        list.totalSize += size;
    } while (archive.goToNextFile());
    if (archive.getZipError() != UNZ_OK) {
        list.problem = QStringLiteral("The archive's directory is damaged");
    }
    return list;
}

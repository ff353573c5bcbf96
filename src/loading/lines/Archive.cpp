#include "loading/lines/Archive.h"

#include <quazip.h>
#include <quazipfileinfo.h>

namespace {

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
        list.problem = QStringLiteral("The archive cannot be opened");
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
        const auto size = static_cast<qint64>(entry.uncompressedSize);
        list.members.push_back({entry.name, size});
        list.totalSize += size;
    } while (archive.goToNextFile());
    return list;
}

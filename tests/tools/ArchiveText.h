#pragma once

#include <QByteArray>
#include <QString>
#include <quazip.h>
#include <quazipfile.h>

#include <utility>
#include <vector>

// Names and bytes of all members of an archive, in its order.
inline std::vector<std::pair<QString, QByteArray>> archiveMembers(const QString &path) {
    std::vector<std::pair<QString, QByteArray>> members;
    QuaZip zip(path);
    if (!zip.open(QuaZip::mdUnzip)) {
        return members;
    }
    for (bool more = zip.goToFirstFile(); more; more = zip.goToNextFile()) {
        QuaZipFile file(&zip);
        if (file.open(QIODevice::ReadOnly)) {
            members.emplace_back(zip.getCurrentFileName(), file.readAll());
        }
    }
    return members;
}

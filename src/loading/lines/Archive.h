#pragma once

#include <QString>
#include <QtGlobal>

#include <vector>

struct ArchiveMember {
    QString name;    // empty for a plain file
    qint64 size = 0; // bytes, uncompressed
};

// The members of a source that hold data lines. A plain file is a source with one nameless member.
struct MemberList {
    std::vector<ArchiveMember> members;
    qint64 totalSize = 0; // bytes, uncompressed
    QString problem;      // why the list is empty or short, for people; empty when all went well
};

// True for the endings ".ghg" and ".zip" in any letter case.
bool isArchiveName(const QString &path);

// Every member but those whose name ends in ".metadata" (in any letter case), in the archive's order.
// An archive that cannot be opened gives an empty list.
MemberList listArchive(const QString &path);

#pragma once

#include "loading/lines/Archive.h"
#include "loading/lines/ChunkLineReader.h"

#include <QFile>
#include <QString>

#include <cstddef>
#include <random>
#include <string>
#include <vector>

// What the tests of archives write into them and read out of them.

using Names = std::vector<std::string>;

inline Names namesOf(const MemberList &list) {
    Names names;
    for (const ArchiveMember &member : list.members) {
        names.push_back(member.name.toStdString());
    }
    return names;
}

inline std::string bytesOf(const QString &path) {
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll().toStdString();
}

// Numbered lines, which a compressor cannot make as small as one line.
inline std::string numberedLines(std::size_t total) {
    std::mt19937 random(3);
    std::string text;
    while (text.size() < total) {
        text += "DATA\t" + std::to_string(text.size()) + '\t' + std::to_string(random()) + "\r\n";
    }
    return text;
}

inline std::vector<std::string> readLines(ChunkLineReader &reader) {
    std::vector<std::string> lines;
    while (reader.nextLine()) {
        lines.emplace_back(reader.line());
    }
    return lines;
}

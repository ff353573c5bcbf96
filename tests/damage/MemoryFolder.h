#pragma once

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

// A folder for files that are written by the ten thousand: in memory, where the system has such a place.
class MemoryFolder {
public:
    MemoryFolder() : folder_(place()) {
        if (!folder_.isValid()) {
            throw std::runtime_error("no folder for temporary files");
        }
    }

    std::string pathOf(const std::string &name) const {
        return folder_.filePath(QString::fromStdString(name)).toStdString();
    }

    std::string write(const std::string &name, std::string_view bytes) const {
        std::string path = pathOf(name);
        std::ofstream file(path, std::ios::binary);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        file.close();
        if (!file) {
            throw std::runtime_error("cannot write " + path);
        }
        return path;
    }

private:
    static QString place() {
        const QFileInfo memory(QStringLiteral("/dev/shm"));
        return (memory.isWritable() ? memory.filePath() : QDir::tempPath()) +
               QStringLiteral("/damage-XXXXXX");
    }

    QTemporaryDir folder_;
};

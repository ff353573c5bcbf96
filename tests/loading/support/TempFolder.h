#pragma once

#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <stdexcept>
#include <string_view>
#include <sys/stat.h>

// A folder for a test's files, gone with the object.
class TempFolder {
public:
    QString path(const QString &name) const { return folder_.filePath(name); }

    // Writes the file `name`, replacing it, and gives its path.
    QString write(const QString &name, std::string_view bytes) const {
        QFile file(path(name));
        const auto size = static_cast<qint64>(bytes.size());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes.data(), size) != size) {
            throw std::runtime_error("a test file cannot be written");
        }
        return file.fileName();
    }

    // Makes a named pipe that nobody writes to: who opens it waits for ever.
    QString makePipe(const QString &name) const {
        QString at = path(name);
        if (::mkfifo(QFile::encodeName(at).constData(), 0600) != 0) {
            throw std::runtime_error("a named pipe cannot be made");
        }
        return at;
    }

private:
    QTemporaryDir folder_;
};

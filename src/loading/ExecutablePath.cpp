#include "loading/ExecutablePath.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

std::string executablePath(const std::string &argument0) {
    if (argument0.find_first_of("/\\") != std::string::npos) {
        return argument0;
    }
    const QString found = QStandardPaths::findExecutable(QFile::decodeName(argument0.c_str()));
    const QString resolved = QFileInfo(found).canonicalFilePath();
    return resolved.isEmpty() ? argument0 : QFile::encodeName(resolved).toStdString();
}

std::string zoneDirectoryFor(std::string_view executable) {
    // A backslash anywhere wins over a later "/", as it always has. A bare name is not cut at all, so the
    // folder's name is glued to it.
    std::size_t separator = executable.rfind('\\');
    if (separator == std::string_view::npos) {
        separator = executable.rfind('/');
    }
    const std::size_t kept = separator == std::string_view::npos ? executable.size() : separator + 1;
    return std::string(executable.substr(0, kept)) + "zoneinfo";
}

#pragma once

#include <QTemporaryDir>

#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

// A folder for a test's files, removed with all that is in it.
class ScratchFolder {
public:
    ScratchFolder() {
        if (!folder_.isValid()) {
            throw std::runtime_error("no folder for temporary files");
        }
    }

    std::string pathOf(const std::string &name) const { return folder_.path().toStdString() + '/' + name; }

    // Writes a file and returns its path.
    std::string write(const std::string &name, std::string_view content) const {
        std::string path = pathOf(name);
        std::ofstream file(path, std::ios::binary);
        file.write(content.data(), static_cast<std::streamsize>(content.size()));
        file.close();
        if (!file) {
            throw std::runtime_error("cannot write " + path);
        }
        return path;
    }

private:
    QTemporaryDir folder_;
};

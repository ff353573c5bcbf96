#include "export/LoadedFileGuard.h"

#include <filesystem>
#include <sys/stat.h>

namespace fs = std::filesystem;

void LoadedFileGuard::protect(const std::string &file) {
    if (!names_.insert(file).second) {
        return;
    }
    wholePaths_.insert(wholePathOf(file));
    if (const auto node = nodeOf(file)) {
        nodes_.insert(*node);
    }
}

bool LoadedFileGuard::isLoaded(const std::string &path) {
    const FileNames files = loadedFiles_();
    if (files != known_) {
        known_ = files;
        for (const std::string &file : *files) {
            protect(file);
        }
    }
    const auto node = nodeOf(path);
    return wholePaths_.contains(wholePathOf(path)) || (node && nodes_.contains(*node));
}

// Absolute, and without links as far as it exists.
std::string LoadedFileGuard::wholePathOf(const std::string &path) {
    std::error_code error;
    fs::path whole = fs::weakly_canonical(fs::absolute(path, error), error);
    if (error) {
        whole = fs::absolute(path, error).lexically_normal();
    }
    return whole.native();
}

std::optional<LoadedFileGuard::Node> LoadedFileGuard::nodeOf(const std::string &path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return Node(status.st_dev, status.st_ino);
}

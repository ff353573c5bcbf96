#include "export/LoadedFileGuard.h"

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>

namespace fs = std::filesystem;

bool LoadedFileGuard::isLoaded(const std::string &path) {
    const std::set<std::string> files = loadedFiles_();
    const Identity target = identityOf(path);
    return std::any_of(files.begin(), files.end(), [&](const std::string &file) {
        auto known = identities_.find(file);
        if (known == identities_.end()) {
            known = identities_.emplace(file, identityOf(file)).first;
        }
        return known->second.path == target.path || (target.node && known->second.node == target.node);
    });
}

LoadedFileGuard::Identity LoadedFileGuard::identityOf(const std::string &path) {
    std::error_code error;
    fs::path whole = fs::weakly_canonical(fs::absolute(path, error), error);
    if (error) {
        whole = fs::absolute(path, error).lexically_normal();
    }
    Identity identity{whole.native(), std::nullopt};
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0) {
        identity.node = {status.st_dev, status.st_ino};
    }
    return identity;
}

#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

// Tells whether writing to a path would write to a file that is loaded, by whatever name: another path, a
// link, a hard link.
class LoadedFileGuard {
public:
    // `loadedFiles` is asked each time anew: files may be added while an export runs.
    explicit LoadedFileGuard(std::function<std::set<std::string>()> loadedFiles)
        : loadedFiles_(std::move(loadedFiles)) {}

    bool isLoaded(const std::string &path);

private:
    struct Identity {
        std::string path; // absolute, as far as it exists without links
        std::optional<std::pair<std::uint64_t, std::uint64_t>> node; // device and number; none without a file
    };

    static Identity identityOf(const std::string &path);

    std::function<std::set<std::string>()> loadedFiles_;
    std::map<std::string, Identity> identities_; // of loaded files, by their names
};

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <utility>

// Names of files; another pointer whenever they have changed.
using FileNames = std::shared_ptr<const std::set<std::string>>;

// Tells whether writing to a path would write to a file that is loaded, by whatever name: another path, a
// link, a hard link. A file that was loaded once while the guard lives stays guarded.
class LoadedFileGuard {
public:
    // `loadedFiles` is asked each time anew: files may be added while an export runs.
    explicit LoadedFileGuard(std::function<FileNames()> loadedFiles) : loadedFiles_(std::move(loadedFiles)) {}

    // Guards a file, whether it is loaded or not.
    void protect(const std::string &file);

    bool isLoaded(const std::string &path);

private:
    using Node = std::pair<std::uint64_t, std::uint64_t>; // device and number

    static std::string wholePathOf(const std::string &path);
    static std::optional<Node> nodeOf(const std::string &path);

    std::function<FileNames()> loadedFiles_;
    FileNames known_; // those of the last time
    std::unordered_set<std::string> names_;
    std::unordered_set<std::string> wholePaths_;
    std::set<Node> nodes_;
};

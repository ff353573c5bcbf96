#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

// A new folder that is gone at the end of its test.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    std::string path(std::string_view name = "") const { return (path_ / name).string(); }
    // Writes a file, with the folders it lies in, and returns its path.
    std::string write(std::string_view name, std::string_view content) const;
    std::string makeFolder(std::string_view name) const;
    // The content of a file; throws std::runtime_error when there is none.
    std::string read(std::string_view name) const;
    // The names of what lies in it, sorted.
    std::vector<std::string> names() const;

private:
    std::filesystem::path path_;
};

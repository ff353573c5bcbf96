#pragma once

#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

// What may happen to a file in the moment in which it is read.
struct FileChange {
    const char *what;
    // `replacement` is the path of another file, which may be taken.
    std::function<void(const std::string &path, const std::string &replacement)> make;
};

inline const std::array<FileChange, 4> fileChanges{{
    {"deleted", [](const std::string &path, const std::string &) { std::filesystem::remove(path); }},
    {"cut in half",
     [](const std::string &path, const std::string &) {
         std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2);
     }},
    {"replaced by another one",
     [](const std::string &path, const std::string &replacement) {
         std::filesystem::rename(replacement, path);
     }},
    {"replaced by rubbish",
     [](const std::string &path, const std::string &replacement) {
         std::ofstream(replacement, std::ios::binary) << std::string(5000, 'x');
         std::filesystem::rename(replacement, path);
     }},
}};

#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

// All that lies in a folder and below: names, times of the last change, contents. A folder's own time tells
// of files that came and went.
class FolderState {
public:
    explicit FolderState(const std::filesystem::path &folder) {
        add(folder, ".");
        for (const auto &entry : std::filesystem::recursive_directory_iterator(folder)) {
            add(entry.path(), std::filesystem::relative(entry.path(), folder).string());
        }
    }

    // Files and folders, sorted.
    std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const auto &[name, entry] : entries_) {
            names.push_back(name);
        }
        return names;
    }
    // The names of which one state has something else than the other, or nothing.
    std::vector<std::string> differencesFrom(const FolderState &before) const {
        std::vector<std::string> names;
        for (const auto &[name, entry] : before.entries_) {
            const auto now = entries_.find(name);
            if (now == entries_.end() || now->second != entry) {
                names.push_back(name);
            }
        }
        for (const auto &[name, entry] : entries_) {
            if (!before.entries_.contains(name)) {
                names.push_back(name);
            }
        }
        return names;
    }

private:
    struct Entry {
        std::filesystem::file_time_type changed;
        std::filesystem::perms mode{};
        std::string content;

        bool operator==(const Entry &) const = default;
    };

    void add(const std::filesystem::path &path, const std::string &name) {
        Entry entry{std::filesystem::last_write_time(path), std::filesystem::status(path).permissions(), {}};
        if (!std::filesystem::is_directory(path)) {
            std::ifstream file(path, std::ios::binary);
            entry.content.assign(std::istreambuf_iterator<char>(file), {});
        }
        entries_[name] = entry;
    }

    std::map<std::string, Entry> entries_;
};

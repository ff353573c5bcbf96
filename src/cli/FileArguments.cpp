#include "cli/FileArguments.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace fs = std::filesystem;

namespace {

// Letter case is ignored in the ASCII manner, whatever the locale.
bool equalIgnoringCase(std::string_view text, std::string_view lower) {
    return std::equal(text.begin(), text.end(), lower.begin(), lower.end(), [](char a, char b) {
        return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
    });
}

bool hasDataEnding(std::string_view path) {
    constexpr std::array<std::string_view, 3> endings{".data", ".ghg", ".zip"};
    return std::any_of(endings.begin(), endings.end(), [path](std::string_view ending) {
        return path.size() >= ending.size() &&
               equalIgnoringCase(path.substr(path.size() - ending.size()), ending);
    });
}

// A link that leads nowhere counts: loading it will say what is wrong with it. Pipes and devices do not.
bool isDataFile(const fs::directory_entry &entry) {
    std::error_code error;
    const fs::file_type type = entry.status(error).type();
    return hasDataEnding(entry.path().native()) &&
           (type == fs::file_type::regular || type == fs::file_type::not_found ||
            type == fs::file_type::none);
}

bool isRealFolder(const fs::directory_entry &entry) {
    std::error_code error;
    return entry.symlink_status(error).type() == fs::file_type::directory;
}

bool isLinkToFolder(const fs::directory_entry &entry) {
    std::error_code error;
    return entry.is_symlink(error) && entry.is_directory(error);
}

// What no error hides: one folder that cannot be read leaves the others to be read.
class FolderWalk {
public:
    explicit FolderWalk(FileArguments &result) : result_(result) {}

    void collect(const std::string &argument) {
        std::vector<std::string> found;
        folders_.emplace_back(argument);
        const std::size_t problemsBefore = result_.problems.size();
        while (!folders_.empty()) {
            const fs::path folder = std::move(folders_.back());
            folders_.pop_back();
            readFolder(folder, found);
        }
        if (found.empty() && result_.problems.size() == problemsBefore) {
            result_.problems.push_back(argument + ": No data file is in this folder");
        }
        // Characters of a std::string compare as unsigned bytes.
        std::sort(found.begin(), found.end());
        std::move(found.begin(), found.end(), std::back_inserter(result_.files));
        std::sort(links_.begin(), links_.end());
        for (const std::string &link : std::exchange(links_, {})) {
            result_.remarks.push_back(
                link + ": This link to a folder is not followed: name it to read the files in it");
        }
    }

private:
    void readFolder(const fs::path &folder, std::vector<std::string> &found) {
        std::error_code error;
        for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
            if (isRealFolder(*at)) {
                folders_.push_back(at->path());
            } else if (isLinkToFolder(*at)) {
                links_.push_back(at->path().native());
            } else if (isDataFile(*at)) {
                found.push_back(at->path().native());
            }
        }
        if (error) {
            result_.problems.push_back(folder.native() + ": The folder cannot be read: " + error.message());
        }
    }

    FileArguments &result_;
    std::vector<fs::path> folders_;  // still to be read
    std::vector<std::string> links_; // to folders, of the argument at hand
};

// One text for all the ways to name a file.
std::string identityOf(const std::string &file) {
    std::error_code error;
    fs::path path = fs::canonical(file, error);
    if (error) {
        path = fs::absolute(file, error).lexically_normal();
    }
    return path.native();
}

void keepLastNamings(std::vector<std::string> &files) {
    std::unordered_set<std::string> seen;
    std::vector<std::string> kept;
    std::copy_if(files.rbegin(), files.rend(), std::back_inserter(kept),
                 [&seen](const std::string &file) { return seen.insert(identityOf(file)).second; });
    files.assign(std::make_move_iterator(kept.rbegin()), std::make_move_iterator(kept.rend()));
}

} // namespace

FileArguments expandFileArguments(const std::vector<std::string> &arguments) {
    FileArguments result;
    FolderWalk walk(result);
    for (const std::string &argument : arguments) {
        std::error_code error;
        if (fs::is_directory(argument, error)) {
            walk.collect(argument);
        } else {
            result.files.push_back(argument);
        }
    }
    keepLastNamings(result.files);
    return result;
}

#include "cli/TemporaryFolder.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
    std::string name = (fs::temp_directory_path() / "fvqa300-cli-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no temporary folder can be made");
    }
    path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string TemporaryFolder::write(std::string_view name, std::string_view content) const {
    const fs::path file = path_ / name;
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream << content;
    stream.close();
    if (!stream) {
        throw std::runtime_error("cannot write " + file.string());
    }
    return file.string();
}

std::string TemporaryFolder::makeFolder(std::string_view name) const {
    fs::create_directories(path_ / name);
    return path(name);
}

std::string TemporaryFolder::read(std::string_view name) const {
    std::ifstream stream(path_ / name, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("cannot read " + path(name));
    }
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<std::string> TemporaryFolder::names() const {
    std::vector<std::string> names;
    for (const fs::directory_entry &entry : fs::directory_iterator(path_)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

#include "time/ZoneFolder.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <stdlib.h>

ZoneFolder::ZoneFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zones-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no temporary folder: " + pattern);
    }
    path_ = pattern;
}

ZoneFolder::~ZoneFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void ZoneFolder::write(std::string_view name, std::string_view bytes) const {
    const std::filesystem::path file = pathOf(name);
    std::filesystem::create_directories(file.parent_path());
    // Some disks wait for each file that is cut off and written anew.
    std::filesystem::remove(file);
    std::ofstream out(file, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out.flush()) {
        throw std::runtime_error("not written: " + file.string());
    }
}

std::string ZoneFolder::errorOf(const std::string &name) const {
    try {
        const Timezone zone(path_, name);
    } catch (const Timezone::Error &error) {
        return error.what();
    }
    return {};
}

Timezone zoneOf(const ZoneFileBuilder &file) {
    const ZoneFolder folder;
    folder.write("Zone", file.bytes());
    return {folder.path(), "Zone"};
}

ZoneFileBuilder easternClock() {
    return ZoneFileBuilder()
        .transition(INT32_MIN, 0)
        .transition(1572138000, 0)
        .transition(easternSummerBegins, 1)
        .transition(easternSummerEnds, 0)
        .transition(easternLastTransition, 1)
        .type(3600, false, 0)
        .type(7200, true, 4)
        .abbreviations(std::string("CET\0CEST\0", 9));
}

ZoneFileBuilder westernClock() {
    return ZoneFileBuilder()
        .transition(INT32_MIN, 0)
        .transition(1572760800, 0)
        .transition(westernSummerBegins, 1)
        .transition(westernSummerEnds, 0)
        .transition(1615705200, 1)
        .type(-18000, false, 0)
        .type(-14400, true, 4)
        .abbreviations(std::string("EST\0EDT\0", 8));
}

#include "time/ZoneFile.h"

#include "time/Timezone.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace {

// Up to `wanted` bytes, fewer when the file ends before.
std::string readUpTo(std::istream &file, std::uint64_t wanted) {
    // A corrupt count may ask for gigabytes that the file does not have: grow by what arrives.
    std::array<char, 8192> piece{};
    std::string bytes;
    while (bytes.size() < wanted && file) {
        const std::uint64_t length = std::min<std::uint64_t>(wanted - bytes.size(), piece.size());
        file.read(piece.data(), static_cast<std::streamsize>(length));
        bytes.append(piece.data(), static_cast<std::size_t>(file.gcount()));
    }
    return bytes;
}

std::uint32_t bigEndian32(std::string_view bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (const char byte : bytes.substr(at, 4)) {
        number = number << 8U | static_cast<unsigned char>(byte);
    }
    return number;
}

// False when the file ends too early.
bool readTransitions(std::istream &file, std::uint32_t count, ZoneRules &rules) {
    const std::string instants = readUpTo(file, std::uint64_t{4} * count);
    const std::string typeIndexes = readUpTo(file, count);
    if (instants.size() < std::uint64_t{4} * count || typeIndexes.size() < count) {
        return false;
    }
    rules.transitions.reserve(count);
    for (std::size_t at = 0; at < instants.size(); at += 4) {
        // No sign extension, here and in the offsets: results already exported rest on it.
        rules.transitions.push_back(bigEndian32(instants, at));
    }
    rules.transitionTypes.reserve(count);
    for (const char index : typeIndexes) {
        rules.transitionTypes.push_back(static_cast<signed char>(index));
    }
    return true;
}

bool readTypes(std::istream &file, std::uint32_t count, ZoneRules &rules) {
    constexpr std::size_t typeSize = 6;
    const std::string bytes = readUpTo(file, std::uint64_t{typeSize} * count);
    if (bytes.size() < std::uint64_t{typeSize} * count) {
        return false;
    }
    rules.types.resize(count);
    for (std::size_t i = 0; i < rules.types.size(); ++i) {
        TimezoneType &type = rules.types[i];
        type.utcOffset = bigEndian32(bytes, i * typeSize);
        type.isDst = bytes[i * typeSize + 4] != 0;
        type.abbreviationIndex = static_cast<unsigned char>(bytes[i * typeSize + 5]);
    }
    return true;
}

// The block counts as text of one line: a line feed ends it, its last byte (a NUL in a good file) is not
// read, and a block without any character is an error while one that is cut short is not.
bool readAbbreviations(std::istream &file, std::uint32_t size, ZoneRules &rules) {
    const std::string block = readUpTo(file, size > 0 ? size - 1 : 0);
    const std::string_view line = std::string_view(block).substr(0, block.find('\n'));
    if (line.empty()) {
        return false;
    }
    for (TimezoneType &type : rules.types) {
        if (type.abbreviationIndex < line.size()) {
            const std::string_view rest = line.substr(type.abbreviationIndex);
            type.abbreviation = rest.substr(0, rest.find('\0'));
        }
    }
    return true;
}

// Zone names come out of data files, so none may point anywhere else on the disk.
bool staysInside(const std::string &name) {
    if (name.find('\0') != std::string::npos) {
        return false;
    }
    const std::filesystem::path path(name);
    return std::find(path.begin(), path.end(), "..") == path.end();
}

} // namespace

ZoneRules readZoneFile(std::istream &file, const std::string &path) {
    constexpr std::size_t headerSize = 44;
    const std::string header = readUpTo(file, headerSize);
    if (header.size() < headerSize || !header.starts_with("TZif")) {
        throw Timezone::Error("Invalid timezone file: " + path);
    }

    ZoneRules rules;
    if (!readTransitions(file, bigEndian32(header, 32), rules)) {
        throw Timezone::Error("Unable to read timezone data from file: " + path);
    }
    if (!readTypes(file, bigEndian32(header, 36), rules)) {
        throw Timezone::Error("Unable to read timezone type info from file: " + path);
    }
    if (!readAbbreviations(file, bigEndian32(header, 40), rules)) {
        throw Timezone::Error("Unable to read timezone abbreviations from file: " + path);
    }
    return rules;
}

ZoneRules loadZone(const std::string &directory, const std::string &name) {
    if (name.empty()) {
        throw Timezone::Error("Zero length timezone string");
    }
    const std::string path = directory + "/" + (name == "Unknown" ? "UTC" : name);
    if (!staysInside(name)) {
        throw Timezone::Error("Unable to open file: " + path);
    }
    // Opening a pipe would wait for a writer for ever.
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (std::filesystem::is_directory(status)) {
        throw Timezone::Error("Invalid timezone file: " + path);
    }
    if (!std::filesystem::is_regular_file(status)) {
        throw Timezone::Error("Unable to open file: " + path);
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw Timezone::Error("Unable to open file: " + path);
    }
    return readZoneFile(file, path);
}

#pragma once

#include "loading/support/ZipWriting.h"

#include <cstddef>
#include <string>
#include <vector>

// One of the example recordings.
struct ExampleFile {
    std::string name;
    std::string bytes;             // of the file
    std::vector<ZipEntry> members; // of an archive; empty for a plain file

    bool isArchive() const { return !members.empty(); }
};

std::string bytesOfFile(const std::string &path);

// As it lies in the folder of examples.
ExampleFile exampleFile(const std::string &name);

// The bytes of a new archive of these members.
std::string packed(const std::vector<ZipEntry> &members);

// The whole lines of `text` that lie in its first `length` bytes.
std::string firstLines(const std::string &text, std::size_t length);

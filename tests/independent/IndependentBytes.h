#pragma once

#include <string>
#include <vector>

// The bytes of a file. Throws std::runtime_error when it cannot be read.
std::string bytesOfFile(const std::string &path);

// Members of an archive in the order of its directory, unpacked; those of a name that ends with ".metadata"
// are left out. Archives with 64-bit fields are none.
std::vector<std::string> membersOf(const std::string &archive);

// The lines of a source as its readers get them: without line ends, not the last one when it has none, and
// nothing from a line on that is longer than 1 MiB.
std::vector<std::string> linesOf(const std::string &bytes);

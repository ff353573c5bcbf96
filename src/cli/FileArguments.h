#pragma once

#include <string>
#include <vector>

// The files that the arguments stand for, and what could not be looked into, for people.
struct FileArguments {
    std::vector<std::string> files;
    std::vector<std::string> problems; // "PATH: why"
};

// Puts in the place of each folder the data files in it and below, in byte order of their paths. Links to
// folders are not followed, but for one that is an argument itself. A file that is named more than once, in
// whatever way, stays at its last place only.
FileArguments expandFileArguments(const std::vector<std::string> &arguments);

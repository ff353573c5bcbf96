#pragma once

#include <string>
#include <vector>

// The files that the arguments stand for, and for people what could not be looked into and what was left out.
struct FileArguments {
    std::vector<std::string> files;
    std::vector<std::string> problems; // "PATH: why"
    std::vector<std::string> remarks;  // of the same form, and no failures
};

// Puts in the place of each folder the data files in it and below, in byte order of their paths. Links to
// folders are not followed, but for one that is an argument itself; a remark names each of them. A file that
// is named more than once, in whatever way, stays at its last place only.
FileArguments expandFileArguments(const std::vector<std::string> &arguments);

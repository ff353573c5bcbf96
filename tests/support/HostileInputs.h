#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

// A data file that is made to cost as much as it can: no analyser wrote it.
struct HostileInput {
    std::string name; // for people: what the file consists of
    // A text of at least `bytes` bytes.
    std::function<std::string(std::size_t bytes)> make;
};

// One for everything that a file may hold too much of: blocks, columns, names, zones, periods, errors, lines.
std::vector<HostileInput> hostileInputs();

// A file of blocks of one record each, which follow each other by two seconds.
std::string blocksOfOneRecord(std::size_t blocks);

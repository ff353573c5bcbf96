#pragma once

#include "support/RandomNumbers.h"

#include <cstddef>
#include <string>

// What holds for every file that is loaded, whatever it holds: its blocks agree with the records that are
// read again from it, its averages with its extremes, its plots and exports with its records, and what is
// said about it stays short.
//
// Failures are added to the running test. `length` is the number of bytes that the file and its members hold;
// `random` chooses the spans and variables that are queried.
struct DataFileRules {
    // Returns the number of records found.
    static std::size_t check(const std::string &path, std::size_t length, RandomNumbers &random);
};

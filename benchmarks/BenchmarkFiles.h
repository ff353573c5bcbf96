#pragma once

#include <string>
#include <vector>

// Files to measure with, made by the generator on first use and kept from run to run.
//
// Their size and number come from the environment: FVQA_BENCHMARK_MEGABYTES (default 100) for each plain
// file, FVQA_BENCHMARK_FILES (default 60) archives; FVQA_BENCHMARK_FOLDER is where they are kept. All throw
// std::runtime_error when a file cannot be made.

// A methane analyser's file: 10 Hz, few columns, status lines, check sums.
std::string methaneFile();
// A fast analyser's file: 20 Hz, about 45 value columns.
std::string fastFile();
// Successive half-hour archives of the fast analyser.
std::vector<std::string> halfHourArchives();

// An archive whose one member holds 2000 blocks of one record each, a second apart.
std::string manyBlocksArchive();

// Bytes on disk.
double fileSize(const std::string &path);

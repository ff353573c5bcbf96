#pragma once

#include "independent/IndependentReader.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

// What is exported, and where to.
struct IndependentRequest {
    std::string instrument;
    std::string tag;
    std::string target;
    unsigned timeColumns = 3; // of text
    std::int64_t split = 0;   // s; 0 for one file
};

// The bytes of each file that an export writes, by its path. Worked out from the blocks of all loaded files.
using ExportedFiles = std::map<std::string, std::string>;

ExportedFiles independentText(const IndependentBlocks &blocks, const IndependentRequest &request);
ExportedFiles independentTob1(const IndependentBlocks &blocks, const IndependentRequest &request);
ExportedFiles independentDiagnostics(const IndependentBlocks &blocks, const IndependentRequest &request);

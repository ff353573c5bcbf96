#pragma once

#include "data/FieldReaders.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// How the fields of one block's record lines are read, and what the values they give are called.
struct ColumnLayout {
    // One for each column of the header line up to the last that is not skipped.
    std::vector<FieldReader> readers;
    std::vector<std::string> valueNames;
    std::vector<std::string> valueUnits; // parallel to valueNames
    std::uint8_t checksumSeed = 0;       // byte sum of the tag and the tab behind it
};

// More value columns than any analyser writes: a header that asks for more is damaged.
inline constexpr std::size_t maximumValueColumns = 10000;
// The word has 32 bits. Names cost a value column each but no bytes in the record lines, so that a small file
// with very many of them would take memory out of all proportion.
inline constexpr std::size_t maximumDiagnosticNames = 64;

// What the columns of a header line ask for.
struct ColumnDemand {
    std::size_t values = 0;    // value columns
    std::size_t nameBytes = 0; // of their names, without the words' own
};

// Throws std::length_error beyond either maximum.
ColumnDemand demandOf(const std::vector<std::string> &columnNames,
                      const std::vector<std::string> &diagnosticNames);

// Binds every column of a header line to its reader and looks up its unit; a unit in the name's parentheses
// goes into the unit table. Throws std::length_error beyond either maximum.
ColumnLayout layOutColumns(std::string_view tag, const std::vector<std::string> &columnNames,
                           const std::vector<std::string> &diagnosticNames);

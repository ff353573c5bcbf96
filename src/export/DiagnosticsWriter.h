#pragma once

#include "export/RecordWriter.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class ExportOutput;

// Writes a log of the diagnostic word's changes: a line whenever one of five conditions of the analyser
// switches on or off. All are taken to be off before the first record. Lines end in CR LF on every system.
class DiagnosticsWriter : public RecordWriter {
public:
    // Writes the line of names. `bitNames` name the bits of the word, the lowest first; `output` outlives the
    // writer.
    DiagnosticsWriter(ExportOutput &output, const std::vector<std::string> &bitNames);

    void write(const Record &record) override;

private:
    static constexpr std::size_t conditions = 5;
    using States = std::array<char, conditions>; // '0' or '1'

    States statesIn(std::uint32_t word) const;
    void writeLine(const Record &record);

    ExportOutput &output_;
    std::array<std::uint32_t, conditions> masks_{}; // the bit of the word that each condition is
    States states_{};
    std::optional<RecordStamp> start_; // of the first record
};

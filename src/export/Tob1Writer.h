#pragma once

#include "export/RecordWriter.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class ExportOutput;

// Writes TOB1, the table-oriented binary format of data loggers: five quoted header lines, with the first
// record, then the records without anything between them, all numbers little-endian.
class Tob1Writer : public RecordWriter {
public:
    // `output` outlives the writer.
    explicit Tob1Writer(ExportOutput &output) : output_(output) {}

    // Call these before the first record. The first line: "TOB1" and the texts, eight in all.
    void setEnvironment(const std::vector<std::string> &texts);
    void setFieldNames(const std::vector<std::string> &valueNames);
    void setUnits(const std::vector<std::string> &valueUnits);
    // What the logger did to the values; "Smp" (sampled) for those that are not named.
    void setProcessing(const std::vector<std::string> &processing);

    void write(const Record &record) override;

private:
    void writeHeader(const Record &first);

    ExportOutput &output_;
    bool headerIsWritten_ = false;
    std::vector<std::string> environment_;
    std::vector<std::string> fieldNames_;
    std::vector<std::string> units_;
    std::vector<std::string> processing_;
    std::uint32_t timeOffset_ = 0; // s, added to UTC seconds since 1970; wraps round
    std::uint32_t recordNumber_ = 0;
};

// A name as loggers take it: letters, digits and "_" only, no digit first, 16 characters at most.
std::string tob1Name(std::string_view text);

#pragma once

#include "export/RecordWriter.h"
#include "export/TimeColumns.h"

#include <cstdint>
#include <string>
#include <vector>

class ExportOutput;

// Writes tab-separated text: a line of names, with the first record, then a line a record. Lines end in one
// line feed on every system.
class TextWriter : public RecordWriter {
public:
    // `output` outlives the writer.
    explicit TextWriter(ExportOutput &output) : output_(output) {}

    // The columns: those of time that `timeColumns` asks for, then the values by name.
    void setColumns(const std::vector<std::string> &valueNames,
                    std::uint32_t timeColumns = TimeColumns::standard);

    void write(const Record &record) override;

private:
    void writeHeader(std::size_t valueCount);
    char *writeTime(char *out, const Record &record) const;

    ExportOutput &output_;
    bool headerIsWritten_ = false;
    std::vector<std::string> names_;
    std::uint32_t timeColumns_ = TimeColumns::standard;
};

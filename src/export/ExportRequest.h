#pragma once

#include "export/TimeColumns.h"

#include <cstdint>
#include <string>

enum class ExportFormat { text, tob1, diagnostics };

// What the user chose to have written, and where.
struct ExportRequest {
    ExportFormat format = ExportFormat::text;
    std::string targetName;                            // a path, taken as it is; UTF-8
    std::uint32_t timeColumns = TimeColumns::standard; // of text
    std::int32_t splitPeriod = 0;                      // s; 0 for one file; diagnostics are never split
};

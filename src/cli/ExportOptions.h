#pragma once

#include <string_view>

struct ExportWish;

// The options of the command "export". All throw UsageError for a value that they do not take.
void setExportData(ExportWish &wish, std::string_view value);
void setExportFormat(ExportWish &wish, std::string_view value);
void setExportOutput(ExportWish &wish, std::string_view value);
void setExportTimeColumns(ExportWish &wish, std::string_view value);
void setExportSplit(ExportWish &wish, std::string_view value);

// Throws UsageError for an option that is missing.
void requireWholeExport(const ExportWish &wish);

#pragma once

#include "export/ExportSink.h"

#include <memory>
#include <string>

// Opens the file `path` for writing, emptying it. Null with `error` set when that fails.
std::unique_ptr<ExportSink> openExportFile(const std::string &path, std::error_code &error);

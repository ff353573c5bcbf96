#pragma once

#include <string>
#include <vector>

class DataSet;
class StandardError;
struct ExportWish;

// Writes the wanted records of `data` as the viewer does. No file of `inputs` is written to. What fails goes
// to std::cerr, a progress bar to `standardError`.
void exportData(const DataSet &data, const std::vector<std::string> &inputs, const ExportWish &wish,
                StandardError &standardError);

#pragma once

#include "data/DataFragment.h"
#include "export/LoadedFileGuard.h"

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

// What one export reads: the blocks of one instrument and tag, as they were when it began, and what its
// headers say of them.
struct ExportSource {
    std::string tag;
    std::vector<std::shared_ptr<const DataFragment>> fragments; // in the data set's order
    // Of the first fragment of that instrument and tag.
    std::vector<std::string> valueNames;
    std::vector<std::string> units;
    std::vector<std::string> diagnosticNames;
    std::string softwareVersion; // of the first fragment of that instrument
    // Files that must not be written to, asked for before each file is opened.
    std::function<FileNames()> loadedFiles;
};

// `data` is a DataSet, or an owner of one that answers the same queries (QDataSet). It must outlive the
// export, but may change meanwhile.
template <typename Data>
ExportSource exportSourceOf(const Data &data, const std::string &instrument, const std::string &tag) {
    return {tag,
            data.fragmentsOf(instrument, tag),
            data.valueNamesOfInstrumentAndTag(instrument, tag),
            data.unitsOfInstrumentAndTag(instrument, tag),
            data.diagnosticNamesOfInstrumentAndTag(instrument, tag),
            data.versionOfInstrument(instrument),
            [&data] { return std::make_shared<const std::set<std::string>>(data.fileNames()); }};
}

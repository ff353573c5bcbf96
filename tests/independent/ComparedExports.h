#pragma once

#include "data/DataSet.h"
#include "export/ExportRequest.h"
#include "independent/IndependentExport.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <utility>
#include <vector>

// Files as the programs load them and as the independent reader reads them, and exports of both.
class ComparedExports {
public:
    // The files merge in this order.
    explicit ComparedExports(const std::vector<std::string> &paths);

    // Instruments and tags that have records.
    std::set<std::pair<std::string, std::string>> kinds() const;
    std::size_t recordCount() const;
    // Whether the program writes the very files that the independent reader gives, and no other one.
    // The target of `request` is a name without a folder.
    testing::AssertionResult areEqual(ExportFormat format, IndependentRequest request) const;

private:
    ExportedFiles exported(ExportFormat format, const IndependentRequest &request) const;

    DataSet data_;
    IndependentBlocks blocks_;
    ScratchFolder folder_;
};

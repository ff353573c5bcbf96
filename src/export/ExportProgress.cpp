#include "export/ExportProgress.h"

#include <algorithm>
#include <iostream>

void ExportProgress::reportFailure(const std::string &line) {
    std::cerr << line + '\n' << std::flush;
}

void ExportProgress::remark(const std::string &line) {
    std::cerr << line + '\n' << std::flush;
}

int ProgressScale::percentAt(double utcSeconds) const {
    const double part = (utcSeconds - earliest_) / (latest_ - earliest_);
    // Not a number fails the comparison, too.
    return latest_ > earliest_ && part > 0 ? static_cast<int>(100 * std::min(part, 1.0)) : 0;
}

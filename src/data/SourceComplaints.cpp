#include "data/SourceComplaints.h"

#include "data/DataFragment.h"
#include "data/SourceState.h"

#include <iostream>

void SourceComplaints::checkForChange(const SourceHeader &source) {
    if (source.state && !told_.contains(source.fileName)) {
        tell(source, source.state->change());
    }
}

void SourceComplaints::tell(const SourceHeader &source, const QString &problem) {
    if (!isKnown(source, problem) && told_.insert(source.fileName).second) {
        std::cerr << source.fileName + ": " + problem.toStdString() + '\n' << std::flush;
    }
}

bool SourceComplaints::isKnown(const SourceHeader &source, const QString &problem) {
    return problem.isEmpty() || (source.state && source.state->isKnown(problem));
}

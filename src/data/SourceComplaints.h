#pragma once

#include <QString>

#include <set>
#include <string>

struct SourceHeader;

// Tells, on standard error, of sources whose records cannot be read again as they were loaded: one line for
// each source of a pass, that names the file and the reason.
//
// What was wrong while the source was loaded was said then and is not said again. Belongs to one thread.
class SourceComplaints {
public:
    // Call when a source is about to be opened: says when it is no longer the file that was loaded.
    void checkForChange(const SourceHeader &source);
    // Says why not all of a source could be read; nothing for an empty `problem`.
    void tell(const SourceHeader &source, const QString &problem);
    // True for no problem, and for one that the source had when it was loaded.
    static bool isKnown(const SourceHeader &source, const QString &problem);

private:
    std::set<std::string> told_; // file names
};

#pragma once

#include <string>

// Who watches an export: shows how far it is, may end it, and takes what is to be said about it. Called on
// the export's thread.
//
// The first two come rarely: for each file, and for one record in 1001.
class ExportProgress {
public:
    virtual ~ExportProgress() = default;

    // The file that is written from now on.
    virtual void showFile(const std::string &name) = 0;
    // Records have been written up to this time, UTC seconds.
    virtual void showTime(double utcSeconds) = 0;
    // True to end the export; what is written stays.
    virtual bool isCancelled() = 0;
    // All records have been written. Not called when the export was cancelled.
    virtual void showEnd() {}

    // Lines for people: what could not be written, and what went otherwise than expected. They go to standard
    // error.
    virtual void reportFailure(const std::string &line);
    virtual void remark(const std::string &line);
};

// Percentages between the times of the first and the last record, UTC seconds.
class ProgressScale {
public:
    ProgressScale(double earliest, double latest) : earliest_(earliest), latest_(latest) {}

    // 0 to 100; always 0 when there is no time between the two.
    int percentAt(double utcSeconds) const;

private:
    double earliest_;
    double latest_;
};

#pragma once

#include "data/RecordCursor.h"
#include "export/ExportFile.h"
#include "export/ExportRequest.h"
#include "export/ExportSource.h"
#include "export/LoadedFileGuard.h"
#include "export/RecordWriter.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_set>

class ExportOutput;
class ExportProgress;

// Opens an export file for writing; null with the error set when that fails.
using OpenExportFile =
    std::function<std::unique_ptr<ExportSink>(const std::string &path, std::error_code &error)>;

// One export: writes all records of its source to one file, or to a series of files cut at multiples of the
// split period since 1970 UTC.
//
// What cannot be opened or written whole is reported, and the export goes on to its end. A file that is
// loaded is never written to, and no piece replaces another one of the same export. When all there was is
// gone no file is opened: one of an earlier export stays as it is. Stopping early keeps what is written.
class ExportJob {
public:
    // `source` and `progress` outlive the job.
    ExportJob(const ExportSource &source, ExportRequest request, ExportProgress &progress,
              OpenExportFile openFile = openExportFile);

    // Call once.
    void run();

private:
    void remarkOnColumns();
    void remarkOnMissingNames();
    bool isEverySourceGone() const;
    void exportWhole();
    void exportPieces();
    bool mayWriteTo(const std::string &name);
    std::string nameOfNextPiece();
    void exportFile(const std::string &name, std::uint64_t end);
    std::unique_ptr<RecordWriter> makeWriter(ExportOutput &output) const;
    void writeUntil(std::uint64_t end, RecordWriter *writer);
    void reportFailure(const std::string &name, const std::string &reason);

    const ExportSource &source_;
    const ExportRequest request_;
    ExportProgress &progress_;
    OpenExportFile openFile_;
    LoadedFileGuard guard_;
    DataSet::_ContextType cursor_;
    std::unordered_set<std::string> usedNames_;
    int recordsSinceProgress_ = 0;
    bool isCancelled_ = false;
    bool hasFailed_ = false; // some file is not whole
};

// Makes the job and runs it.
void runExport(const ExportSource &source, const ExportRequest &request, ExportProgress &progress);

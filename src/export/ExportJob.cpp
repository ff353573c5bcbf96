#include "export/ExportJob.h"

#include "export/DiagnosticsWriter.h"
#include "export/ExportNames.h"
#include "export/ExportOutput.h"
#include "export/ExportProgress.h"
#include "export/TextWriter.h"
#include "export/Tob1Writer.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <utility>

namespace {

// Progress is shown, and a wish to stop heard, after one record more than this.
constexpr int recordsBetweenProgress = 1000;
constexpr std::uint64_t noEnd = std::numeric_limits<std::uint64_t>::max();

} // namespace

ExportJob::ExportJob(const ExportSource &source, ExportRequest request, ExportProgress &progress,
                     OpenExportFile openFile)
    : source_(source),
      request_(std::move(request)),
      progress_(progress),
      openFile_(std::move(openFile)),
      guard_(source.loadedFiles),
      cursor_(source.fragments, wholeRangeStart, wholeRangeEnd) {
    // They are read to the end, also when they are removed from the loaded ones meanwhile.
    for (const auto &fragment : source.fragments) {
        guard_.protect(fragment->header().fileName);
    }
}

void ExportJob::run() {
    remarkOnColumns();
    if (request_.splitPeriod > 0 && request_.format != ExportFormat::diagnostics) {
        exportPieces();
    } else {
        exportWhole();
    }
    remarkOnMissingNames();
    if (!isCancelled_) {
        progress_.showEnd();
    }
}

// Headers name the columns of the first block. A person should know when that is not all of the truth.
void ExportJob::remarkOnColumns() {
    const bool ofBits = request_.format == ExportFormat::diagnostics;
    const auto &names = ofBits ? source_.diagnosticNames : source_.valueNames;
    const auto differs = [&](const auto &fragment) {
        return (ofBits ? fragment->diagnosticNames() : fragment->valueNames()) != names;
    };
    const auto isOfOtherLength = [&](const auto &fragment) { return fragment->valueCount() != names.size(); };
    const auto &fragments = source_.fragments;
    if (request_.format == ExportFormat::tob1 &&
        std::any_of(fragments.begin(), fragments.end(), isOfOtherLength)) {
        progress_.reportFailure(
            request_.targetName +
            ": The number of columns changed in the course of the data. Readers of TOB1 take "
            "all records to be as long as the first one and misread those behind the change");
    } else if (std::any_of(fragments.begin(), fragments.end(), differs)) {
        progress_.remark(request_.targetName +
                         ": The columns changed in the course of the data; the first ones' names are used");
    }
}

// Without names all five states are told by the lowest bit.
void ExportJob::remarkOnMissingNames() {
    if (request_.format == ExportFormat::diagnostics && source_.diagnosticNames.empty() && !hasFailed_) {
        progress_.remark(
            request_.targetName +
            ": The data do not name the bits of their diagnostic words, so the log tells nothing");
    }
}

bool ExportJob::isEverySourceGone() const {
    const auto isGone = [](const auto &fragment) {
        std::error_code error;
        return !std::filesystem::is_regular_file(fragment->header().fileName, error);
    };
    return cursor_.isExhausted() && !source_.fragments.empty() &&
           std::all_of(source_.fragments.begin(), source_.fragments.end(), isGone);
}

void ExportJob::exportWhole() {
    progress_.showFile(request_.targetName);
    if (!mayWriteTo(request_.targetName)) {
        return;
    }
    if (isEverySourceGone()) {
        reportFailure(request_.targetName, "the files that hold the records are gone");
        return;
    }
    exportFile(request_.targetName, noEnd);
}

void ExportJob::exportPieces() {
    while (!cursor_.isExhausted() && !isCancelled_) {
        if (progress_.isCancelled()) {
            isCancelled_ = true;
            return;
        }
        const std::uint64_t end = pieceEnd(cursor_.record().seconds, request_.splitPeriod);
        const std::string name = nameOfNextPiece();
        progress_.showFile(name);
        if (mayWriteTo(name)) {
            exportFile(name, end);
        } else {
            writeUntil(end, nullptr);
        }
    }
}

bool ExportJob::mayWriteTo(const std::string &name) {
    const bool isLoaded = guard_.isLoaded(name);
    if (isLoaded) {
        progress_.reportFailure(name + ": The export would replace a file that is loaded; it is left alone");
    }
    return !isLoaded;
}

// Local time comes a second time when daylight saving ends, and where a later block has another zone.
std::string ExportJob::nameOfNextPiece() {
    const std::string plain = pieceName(request_.targetName, cursor_.record(), request_.splitPeriod);
    std::string name = plain;
    for (unsigned number = 2; !usedNames_.insert(name).second; ++number) {
        name = numberedName(plain, number);
    }
    if (name != plain) {
        progress_.remark(name + ": This piece has another name because the export has written " + plain +
                         " before");
    }
    return name;
}

void ExportJob::exportFile(const std::string &name, std::uint64_t end) {
    std::error_code error;
    std::unique_ptr<ExportSink> sink = openFile_(name, error);
    if (!sink) {
        reportFailure(name, error.message());
    }
    ExportOutput output(std::move(sink), [this, &name](const std::error_code &writeError) {
        reportFailure(name, writeError.message());
    });
    const std::unique_ptr<RecordWriter> writer = makeWriter(output);
    writeUntil(end, writer.get());
}

std::unique_ptr<RecordWriter> ExportJob::makeWriter(ExportOutput &output) const {
    switch (request_.format) {
    case ExportFormat::diagnostics:
        return std::make_unique<DiagnosticsWriter>(output, source_.diagnosticNames);
    case ExportFormat::tob1: {
        auto writer = std::make_unique<Tob1Writer>(output);
        // Loggers' programs know these files by this name, whatever the instrument is called.
        writer->setEnvironment(
            {"QA330", "QA330", "", source_.softwareVersion, "QA330", "QA330", source_.tag});
        writer->setFieldNames(source_.valueNames);
        writer->setUnits(source_.units);
        writer->setProcessing({});
        return writer;
    }
    case ExportFormat::text:
        break;
    }
    auto writer = std::make_unique<TextWriter>(output);
    writer->setColumns(source_.valueNames, request_.timeColumns);
    return writer;
}

// Records whose clock steps back behind the piece's begin stay in it.
void ExportJob::writeUntil(std::uint64_t end, RecordWriter *writer) {
    for (; !cursor_.isExhausted() && cursor_.record().seconds < end; cursor_.advance()) {
        if (writer != nullptr) {
            writer->write(cursor_.record());
        }
        if (++recordsSinceProgress_ > recordsBetweenProgress) {
            recordsSinceProgress_ = 0;
            progress_.showTime(timeOf(cursor_.record()));
            if (progress_.isCancelled()) {
                isCancelled_ = true;
                return;
            }
        }
    }
}

void ExportJob::reportFailure(const std::string &name, const std::string &reason) {
    hasFailed_ = true;
    progress_.reportFailure(name + ": The export cannot be written: " + reason);
}

void runExport(const ExportSource &source, const ExportRequest &request, ExportProgress &progress) {
    ExportJob(source, request, progress).run();
}

// A whole file at every level of vectors: records, sums, extremes, index and series are those of a plain
// twin, and exports are the same bytes.

#include "FuzzCheck.h"
#include "FuzzFiles.h"
#include "MemoryFile.h"
#include "data/EveryLevel.h"
#include "data/PlainSeries.h"
#include "data/WatchedLoading.h"
#include "export/ExportTest.h"
#include "export/MemorySink.h"

#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

// Every file of an export, kept in memory.
std::string exported(const DataSet &data, const std::string &instrument, const std::string &tag,
                     ExportFormat format, std::int32_t splitPeriod) {
    std::string all;
    std::list<SinkLog> logs;
    RecordedProgress progress;
    const ExportSource source = exportSourceOf(data, instrument, tag);
    const ExportRequest request{format, "fuzz.out", TimeColumns::all, splitPeriod};
    ExportJob(source, request, progress, [&logs](const std::string &, std::error_code &) {
        return std::make_unique<MemorySink>(logs.emplace_back());
    }).run();
    require(progress.hasEnded, "an export that nobody cancels comes to its end");
    auto log = logs.begin();
    for (const std::string &name : progress.files) {
        require(log != logs.end() && log->isClosed, "every file of an export is opened and closed");
        all.append(name).append(1, '\n').append(log->bytes);
        ++log;
    }
    for (const auto *const lines : {&progress.remarks, &progress.failures}) {
        for (const std::string &line : *lines) {
            all.append(line).append(1, '\n');
        }
    }
    return all;
}

std::string allExports(const DataSet &data) {
    std::string all;
    for (const std::string &instrument : data.instruments()) {
        for (const std::string &tag : data.tagsOfInstrument(instrument)) {
            all += exported(data, instrument, tag, ExportFormat::text, 0);
            all += exported(data, instrument, tag, ExportFormat::tob1, 1800);
            all += exported(data, instrument, tag, ExportFormat::diagnostics, 0);
        }
    }
    return all;
}

void checkFragments(const DataSet &source, const WatchedLoading &watched) {
    require(source.fragments().size() == watched.blocks().size(), "every header line makes a block");
    auto fragment = source.fragments().begin();
    for (const auto &block : watched.blocks()) {
        require(referenceOf(*block).isMatchedBy(**fragment), "a block holds what its plain twin holds");
        // A block without value columns has nothing to be read.
        const std::vector<Record> expected =
            block->fragment->valueCount() == 0 ? std::vector<Record>() : block->records;
        require(sameRecords(readAgain(**fragment), expected),
                "records read again are those that were loaded");
        ++fragment;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
    prepareForFiles();
    static const MemoryFile file;
    file.hold({reinterpret_cast<const char *>(bytes), size});
    const EveryLevel levels;
    useVectorLevel(VectorLevel::plain);
    const WatchedLoading watched(file.path());
    std::optional<std::string> exports;
    for (const VectorLevel level : EveryLevel::available()) {
        useVectorLevel(level);
        DataSet source = loadSource(file.path());
        checkFragments(source, watched);
        DataSet merged;
        merged.merge(source);
        const std::string exportsOfLevel = allExports(merged);
        require(exports.value_or(exportsOfLevel) == exportsOfLevel, "every level exports the same bytes");
        exports = exportsOfLevel;
    }
    return 0;
}

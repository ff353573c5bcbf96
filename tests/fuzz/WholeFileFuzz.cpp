// A whole file at every level of vectors: records, sums, extremes, index and series are those of a plain
// twin, and exports are the very bytes that a second reader and writer gives.

#include "FuzzCheck.h"
#include "FuzzFiles.h"
#include "MemoryFile.h"
#include "data/EveryLevel.h"
#include "data/PlainSeries.h"
#include "data/WatchedLoading.h"
#include "export/ExportTest.h"
#include "export/MemorySink.h"
#include "independent/IndependentExport.h"

#include <algorithm>
#include <list>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

// What an export came to, its files kept in memory.
struct Exported {
    IndependentRequest request;
    ExportFormat format = ExportFormat::text;
    ExportedFiles files;
    std::vector<std::string> remarks;
    std::vector<std::string> failures;
};

Exported exported(const DataSet &data, const IndependentRequest &request, ExportFormat format) {
    std::list<SinkLog> logs;
    RecordedProgress progress;
    const ExportSource source = exportSourceOf(data, request.instrument, request.tag);
    ExportJob(source, {format, request.target, request.timeColumns, static_cast<std::int32_t>(request.split)},
              progress,
              [&logs](const std::string &, std::error_code &) {
                  return std::make_unique<MemorySink>(logs.emplace_back());
              })
        .run();
    require(progress.hasEnded, "an export that nobody cancels comes to its end");
    Exported result{request, format, {}, progress.remarks, progress.failures};
    auto log = logs.begin();
    for (const std::string &name : progress.files) {
        require(log != logs.end() && log->isClosed, "every file of an export is opened and closed");
        require(result.files.emplace(name, log->bytes).second, "no file of an export replaces another");
        ++log;
    }
    return result;
}

// Of every instrument and tag.
std::vector<Exported> allExports(const DataSet &data) {
    std::vector<Exported> all;
    for (const std::string &instrument : data.instruments()) {
        for (const std::string &tag : data.tagsOfInstrument(instrument)) {
            const auto request = [&](std::int64_t split) {
                return IndependentRequest{instrument, tag, "fuzz.out", TimeColumns::all, split};
            };
            all.push_back(exported(data, request(0), ExportFormat::text));
            all.push_back(exported(data, request(1800), ExportFormat::tob1));
            all.push_back(exported(data, request(0), ExportFormat::diagnostics));
        }
    }
    return all;
}

bool areSame(const Exported &one, const Exported &other) {
    return one.request.instrument == other.request.instrument && one.request.tag == other.request.tag &&
           one.files == other.files && one.remarks == other.remarks && one.failures == other.failures;
}

void checkAgainstSecondWriter(const std::vector<Exported> &exports, const IndependentBlocks &blocks) {
    std::set<std::pair<std::string, std::string>> kinds;
    for (const auto &block : blocks) {
        kinds.emplace(block->instrument, block->tag);
    }
    require(exports.size() == 3 * kinds.size(), "both readers find as many instruments and tags");
    for (const Exported &one : exports) {
        const auto second = one.format == ExportFormat::text   ? independentText
                            : one.format == ExportFormat::tob1 ? independentTob1
                                                               : independentDiagnostics;
        require(one.files == second(blocks, one.request), "an export is that of the second writer");
    }
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
    std::optional<std::vector<Exported>> exports;
    for (const VectorLevel level : EveryLevel::available()) {
        useVectorLevel(level);
        DataSet source = loadSource(file.path());
        checkFragments(source, watched);
        DataSet merged;
        merged.merge(source);
        std::vector<Exported> exportsOfLevel = allExports(merged);
        if (exports) {
            require(std::equal(exports->begin(), exports->end(), exportsOfLevel.begin(), exportsOfLevel.end(),
                               areSame),
                    "every level exports the same");
        } else if (source.problem().empty()) {
            // The second reader knows no bounds of what a file may ask for.
            checkAgainstSecondWriter(exportsOfLevel, readIndependently({file.path()}, FVQA_ZONEINFO_DIR));
        }
        exports = std::move(exportsOfLevel);
    }
    return 0;
}

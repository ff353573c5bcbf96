#include "benchmarks/BenchmarkFiles.h"
#include "benchmarks/LoadedFile.h"
#include "data/RecordCursor.h"
#include "export/ExportJob.h"
#include "export/ExportProgress.h"

#include <benchmark/benchmark.h>
#include <cstdio>

namespace {

class Unwatched : public ExportProgress {
public:
    void showFile(const std::string &) override {}
    void showTime(double) override {}
    bool isCancelled() override { return false; }
    void reportFailure(const std::string &line) override { throw std::runtime_error(line); }
};

ExportSource sourceOf(const DataSet &dataSet) {
    return exportSourceOf(dataSet, dataSet.fragments().front().header().instrument, "DATA");
}

// The floor of every export: the records, read again.
void BM_ReadRecordsAgain(benchmark::State &state, std::string (*file)()) {
    const std::string path = file();
    const DataSet dataSet = loadWhole(path);
    const ExportSource source = sourceOf(dataSet);
    for (auto step : state) {
        std::uint64_t seconds = 0;
        DataSet::_ContextType cursor(source.fragments, wholeRangeStart, wholeRangeEnd);
        for (; !cursor.isExhausted(); cursor.advance()) {
            seconds += cursor.record().seconds;
        }
        benchmark::DoNotOptimize(seconds);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(fileSize(path)));
}
BENCHMARK_CAPTURE(BM_ReadRecordsAgain, methane, methaneFile)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ReadRecordsAgain, fast, fastFile)->Unit(benchmark::kMillisecond);

// bytes_per_second is that of the file that is read, as for loading; "written" that of the export.
void BM_Export(benchmark::State &state, std::string (*file)(), ExportFormat format) {
    const std::string path = file();
    const DataSet dataSet = loadWhole(path);
    const ExportSource source = sourceOf(dataSet);
    ExportRequest request;
    request.format = format;
    request.targetName = path + ".export";
    Unwatched progress;
    for (auto step : state) {
        runExport(source, request, progress);
    }
    const auto iterations = static_cast<double>(state.iterations());
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(fileSize(path)));
    state.counters["written"] =
        benchmark::Counter(iterations * fileSize(request.targetName), benchmark::Counter::kIsRate,
                           benchmark::Counter::OneK::kIs1024);
    std::remove(request.targetName.c_str());
}
BENCHMARK_CAPTURE(BM_Export, methane_text, methaneFile, ExportFormat::text)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Export, methane_tob1, methaneFile, ExportFormat::tob1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Export, methane_diagnostics, methaneFile, ExportFormat::diagnostics)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Export, fast_text, fastFile, ExportFormat::text)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Export, fast_tob1, fastFile, ExportFormat::tob1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Export, fast_diagnostics, fastFile, ExportFormat::diagnostics)
    ->Unit(benchmark::kMillisecond);

} // namespace

#include "benchmarks/HalfHourSource.h"

#include <benchmark/benchmark.h>
#include <vector>

namespace {

// Merging N files one by one, as they finish loading; the time of one file should not grow with N.
void BM_MergeFiles(benchmark::State &state) {
    std::vector<DataSet> sources;
    sources.reserve(static_cast<std::size_t>(state.range(0)));
    for (int i = 0; i < state.range(0); ++i) {
        // Every other file comes late, as files that load side by side do.
        sources.push_back(makeHalfHourSource(i % 2 == 0 ? i + 1 : i - 1));
    }
    for (auto step : state) {
        DataSet merged;
        for (const DataSet &source : sources) {
            merged.merge(source);
            benchmark::DoNotOptimize(merged.variableKeysRevision());
        }
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
}
BENCHMARK(BM_MergeFiles)->Arg(500)->Arg(2000)->Arg(17520)->Unit(benchmark::kMillisecond);

void BM_RemoveFiles(benchmark::State &state) {
    DataSet whole;
    for (int i = 0; i < state.range(0); ++i) {
        whole.merge(makeHalfHourSource(i));
    }
    for (auto step : state) {
        state.PauseTiming();
        DataSet merged = whole;
        state.ResumeTiming();
        for (int i = 0; i < state.range(0); ++i) {
            merged.removeFile(halfHourName(i));
        }
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
}
BENCHMARK(BM_RemoveFiles)->Arg(500)->Arg(2000)->Arg(17520)->Unit(benchmark::kMillisecond);

// A plot window of eight variables shows the whole range of very many files.
void BM_WholeRangeOfManyFiles(benchmark::State &state) {
    DataSet merged;
    for (int i = 0; i < state.range(0); ++i) {
        merged.merge(makeHalfHourSource(i));
    }
    std::vector<SeriesRequest> requests;
    for (int i = 0; i < 8; ++i) {
        for (const char *const selector : {"", "max", "min"}) {
            requests.push_back({"QA3401:DATA:COLUMN" + std::to_string(i * 5), selector});
        }
    }
    for (auto step : state) {
        benchmark::DoNotOptimize(
            merged.seriesOf(requests, wholeRangeStart, wholeRangeEnd, ShortBlocks::atAFinerLevel));
    }
}
BENCHMARK(BM_WholeRangeOfManyFiles)->Arg(500)->Arg(17520)->Unit(benchmark::kMillisecond);

// A window of an hour among very many files: what finding those in it costs.
void BM_WindowAmongManyFiles(benchmark::State &state) {
    DataSet merged;
    for (int i = 0; i < state.range(0); ++i) {
        merged.merge(makeHalfHourSource(i));
    }
    for (auto step : state) {
        benchmark::DoNotOptimize(merged.seriesOf({{"QA3401:DATA:COLUMN1", ""}}, 1500000000, 1500003600));
    }
}
BENCHMARK(BM_WindowAmongManyFiles)->Arg(500)->Arg(17520)->Unit(benchmark::kMicrosecond);

} // namespace

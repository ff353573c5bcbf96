#include "benchmarks/BenchmarkFiles.h"
#include "benchmarks/LoadedFile.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <string>
#include <vector>

namespace {

struct OpenFile {
    DataSet dataSet;
    std::string key;
    double start = 0;
};

// The fast analyser's file and one of its variables.
OpenFile openFastFile() {
    OpenFile open{loadWhole(fastFile()), {}, 0};
    const DataFragment &fragment = open.dataSet.fragments().front();
    const std::string &instrument = fragment.header().instrument;
    open.key = instrument + ":" + fragment.tag() + ":" + fragment.valueNames()[fragment.valueCount() / 2];
    open.start = fragment.firstTime();
    return open;
}

void readSpan(benchmark::State &state, double span) {
    const OpenFile open = openFastFile();
    std::vector<double> times;
    std::vector<double> values;
    for (auto step : state) {
        times.clear();
        values.clear();
        open.dataSet.series(open.key, "", open.start, open.start + span, times, values);
    }
    state.counters["points"] = static_cast<double>(times.size());
}

// Averages: a span just above the threshold of each level.
void BM_SeriesAveraged(benchmark::State &state) {
    readSpan(state, static_cast<double>(state.range(0)));
}
BENCHMARK(BM_SeriesAveraged)->Arg(5001)->Arg(300001)->Arg(1500001)->Arg(9000001);

// The records of one variable, read again from the file.
void BM_SeriesRaw(benchmark::State &state) {
    readSpan(state, static_cast<double>(state.range(0)));
}
BENCHMARK(BM_SeriesRaw)->Arg(10)->Arg(600)->Arg(5000)->Unit(benchmark::kMillisecond);

// A plot window of some variables, each with its averages, maxima and minima, reloads 5000 s in the middle of
// the file.
void BM_PlotWindow(benchmark::State &state) {
    const OpenFile open = openFastFile();
    const DataFragment &fragment = open.dataSet.fragments().front();
    std::vector<SeriesRequest> requests;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        const auto column = static_cast<std::size_t>(i) * 5 % fragment.valueCount();
        for (const char *const selector : {"", "max", "min"}) {
            requests.push_back(
                {fragment.header().instrument + ":" + fragment.tag() + ":" + fragment.valueNames()[column],
                 selector});
        }
    }
    const double start = std::floor((fragment.firstTime() + fragment.latestTime()) / 2);
    std::vector<SeriesPoints> points;
    for (auto step : state) {
        points = open.dataSet.seriesOf(requests, start, start + 5000);
    }
    state.counters["curves"] = static_cast<double>(points.size());
    state.counters["points"] = static_cast<double>(points.back().values->size());
}
BENCHMARK(BM_PlotWindow)->Arg(1)->Arg(8)->Unit(benchmark::kMillisecond);

// Very many blocks in one source.
void BM_ManyBlocks(benchmark::State &state) {
    const DataSet dataSet = loadWhole(manyBlocksArchive());
    std::vector<SeriesPoints> points;
    for (auto step : state) {
        points = dataSet.seriesOf({{"QA3401:DATA:A", ""}}, wholeRangeStart, wholeRangeEnd);
    }
    state.counters["points"] = static_cast<double>(points.front().values->size());
}
BENCHMARK(BM_ManyBlocks)->Unit(benchmark::kMillisecond);

} // namespace

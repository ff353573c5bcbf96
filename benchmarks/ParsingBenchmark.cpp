#include "benchmarks/BenchmarkFiles.h"
#include "benchmarks/LoadedFile.h"
#include "loading/lines/ChunkLineReader.h"

#include <benchmark/benchmark.h>

namespace {

void countBytes(benchmark::State &state, const std::string &path) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(fileSize(path)));
}

// The floor of every load: finding the lines and adding up their bytes.
void BM_FindLinesAndSumBytes(benchmark::State &state) {
    const std::string path = fastFile();
    for (auto step : state) {
        ChunkLineReader reader;
        reader.open(QString::fromStdString(path), {});
        std::uint32_t sum = 0;
        while (reader.nextLine()) {
            for (const char c : reader.line()) {
                sum += static_cast<unsigned char>(c);
            }
        }
        benchmark::DoNotOptimize(sum);
    }
    countBytes(state, path);
}
BENCHMARK(BM_FindLinesAndSumBytes)->Unit(benchmark::kMillisecond);

void BM_LoadPlainFile(benchmark::State &state, std::string (*file)()) {
    const std::string path = file();
    for (auto step : state) {
        benchmark::DoNotOptimize(loadWhole(path));
    }
    countBytes(state, path);
}
BENCHMARK_CAPTURE(BM_LoadPlainFile, methane, methaneFile)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_LoadPlainFile, fast, fastFile)->Unit(benchmark::kMillisecond);

} // namespace

#include "benchmarks/BenchmarkFiles.h"
#include "benchmarks/LoadedFile.h"
#include "data/VectorLevel.h"

#include <QFile>

#include <benchmark/benchmark.h>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

void countBytes(benchmark::State &state, const std::string &path) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(fileSize(path)));
}

// The floor of every load: taking the bytes out of the page cache, finding the lines and adding up their
// bytes.
void BM_FindLinesAndSumBytes(benchmark::State &state) {
    const std::string path = fastFile();
    std::vector<char> block(std::size_t{1} << 20U);
    for (auto step : state) {
        QFile file(QString::fromStdString(path));
        file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
        std::uint64_t sum = 0;
        std::uint64_t lines = 0;
        qint64 count = 0;
        while ((count = file.read(block.data(), static_cast<qint64>(block.size()))) > 0) {
            const char *at = block.data();
            const char *const end = at + count;
            while (at != end) {
                const auto *const feed =
                    static_cast<const char *>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
                const char *const behind = feed == nullptr ? end : feed + 1;
                std::uint8_t lineSum = 0; // in eight bits, so that the compiler adds many at a time
                for (; at != behind; ++at) {
                    lineSum = static_cast<std::uint8_t>(lineSum + static_cast<unsigned char>(*at));
                }
                sum += lineSum;
                lines += feed == nullptr ? 0 : 1;
            }
        }
        benchmark::DoNotOptimize(sum);
        benchmark::DoNotOptimize(lines);
    }
    countBytes(state, path);
}
BENCHMARK(BM_FindLinesAndSumBytes)->Unit(benchmark::kMillisecond);

void BM_LoadPlainFile(benchmark::State &state, std::string (*file)(), VectorLevel level) {
    const std::string path = file();
    const VectorLevel before = vectorLevel();
    if (isAvailable(level)) {
        useVectorLevel(level);
    } else {
        state.SetLabel("not with vectors of this width, which the processor lacks");
    }
    for (auto step : state) {
        benchmark::DoNotOptimize(loadWhole(path));
    }
    useVectorLevel(before);
    countBytes(state, path);
}
BENCHMARK_CAPTURE(BM_LoadPlainFile, methane, methaneFile, vectorLevel())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_LoadPlainFile, fast, fastFile, vectorLevel())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_LoadPlainFile, fast128, fastFile, VectorLevel::bits128)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_LoadPlainFile, fastPlain, fastFile, VectorLevel::plain)->Unit(benchmark::kMillisecond);

} // namespace

#include "benchmarks/BenchmarkFiles.h"
#include "benchmarks/LoadedFile.h"
#include "loading/lines/Archive.h"

#include <QByteArray>
#include <quazipfile.h>

#include <benchmark/benchmark.h>

namespace {

// Text bytes of all data members.
double textSize(const std::vector<std::string> &archives) {
    double size = 0;
    for (const std::string &archive : archives) {
        size += static_cast<double>(listArchive(QString::fromStdString(archive)).totalSize);
    }
    return size;
}

void countText(benchmark::State &state, const std::vector<std::string> &archives) {
    const auto iterations = static_cast<std::int64_t>(state.iterations());
    state.SetBytesProcessed(iterations * static_cast<std::int64_t>(textSize(archives)));
    state.SetItemsProcessed(iterations * static_cast<std::int64_t>(archives.size()));
}

// The floor of every load: inflating the members.
void BM_InflateArchives(benchmark::State &state) {
    const auto archives = halfHourArchives();
    QByteArray text(8 * 1024 * 1024, '\0');
    for (auto step : state) {
        for (const std::string &archive : archives) {
            for (const ArchiveMember &member : listArchive(QString::fromStdString(archive)).members) {
                QuaZipFile file(QString::fromStdString(archive), member.name);
                file.open(QIODevice::ReadOnly);
                while (file.read(text.data(), text.size()) > 0) {
                    benchmark::ClobberMemory();
                }
            }
        }
    }
    countText(state, archives);
}
BENCHMARK(BM_InflateArchives)->Unit(benchmark::kMillisecond);

void BM_LoadArchives(benchmark::State &state) {
    const auto archives = halfHourArchives();
    for (auto step : state) {
        for (const std::string &archive : archives) {
            benchmark::DoNotOptimize(loadWhole(archive));
        }
    }
    countText(state, archives);
}
BENCHMARK(BM_LoadArchives)->Unit(benchmark::kMillisecond);

} // namespace

// fvqa300-hostile-inputs MEGABYTES [WORD]: loads and exports files and archives that are made to cost as much
// as they can, one of each kind (only those with WORD in their names), and prints for each what it cost:
// processor seconds per megabyte (of an archive: inflated) to load and to export it, and the peak of memory
// above that of an empty file.
//
// Each is loaded and merged in a process of its own, as the viewer does it; then all records of the first
// block's instrument and tag are exported as text.

#include "data/DataSet.h"
#include "export/ExportJob.h"
#include "export/ExportProgress.h"
#include "loading/FileLoading.h"
#include "support/HostileArchives.h"
#include "support/HostileInputs.h"
#include "time/Timezone.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr double mebi = 1024.0 * 1024.0;

struct Cost {
    double loading = 0;   // seconds of processor
    double exporting = 0; // the same
    double megabytes = 0; // peak of resident memory
    bool isKnown = false;
};

class NoProgress : public ExportProgress {
public:
    void showFile(const std::string &) override {}
    void showTime(double) override {}
    bool isCancelled() override { return false; }
    void remark(const std::string &) override {}
};

rusage usageNow() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage;
}

double secondsUsed() {
    const rusage usage = usageNow();
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void load(const std::string &path, DataSet &merged) {
    const std::atomic<bool> cancelled = false;
    DataSet source(path);
    const LoadReport report = loadFile(QString::fromStdString(path), source, cancelled, [](int, qint64) {});
    merged.merge(source);
    const std::size_t keys = merged.variableKeys().size();
    const std::string message =
        (report.problem.isEmpty() ? QString::fromStdString(source.messageText()) : report.problem)
            .left(60)
            .toStdString();
    std::printf("%zu blocks, %zu variables%s%s", merged.fragments().size(), keys, message.empty() ? "" : ": ",
                message.c_str());
}

void exportFirst(const DataSet &data, const std::string &target) {
    const auto first = data.fragments().begin();
    if (first != data.fragments().end()) {
        NoProgress progress;
        ExportRequest request;
        request.targetName = target;
        runExport(exportSourceOf(data, (*first)->header().instrument, (*first)->tag()), request, progress);
    }
}

Cost measureHere(const std::string &path) {
    Cost cost;
    DataSet data;
    const double atBegin = secondsUsed();
    load(path, data);
    const double loaded = secondsUsed();
    exportFirst(data, path + ".txt");
    cost.loading = loaded - atBegin;
    cost.exporting = secondsUsed() - loaded;
    cost.megabytes = static_cast<double>(usageNow().ru_maxrss) / 1024.0;
    cost.isKnown = true;
    return cost;
}

Cost costOf(const std::string &path) {
    std::fflush(stdout);
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        return {};
    }
    const pid_t child = fork();
    if (child == 0) {
        const Cost cost = measureHere(path);
        std::fflush(stdout);
        _exit(write(ends[1], &cost, sizeof cost) == sizeof cost ? 0 : 1);
    }
    close(ends[1]);
    Cost cost;
    if (read(ends[0], &cost, sizeof cost) != sizeof cost) {
        cost = {};
    }
    close(ends[0]);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return cost;
}

void writeFile(const std::string &path, const std::string &text) {
    std::ofstream(path, std::ios::binary) << text;
}

// Loads and exports each, and prints a line or two about it.
class Measuring {
public:
    Measuring() {
        writeFile(path("a.data"), "DATAH\tA\n");
        empty_ = costOf(path("a.data"));
        std::puts("");
    }

    void measure(const std::string &name, const std::string &file, std::size_t bytes) {
        std::printf("%s: ", name.c_str());
        const Cost cost = costOf(file);
        const double size = static_cast<double>(bytes) / mebi;
        std::printf("\n    %.1f MB, %.3f s/MB to load, %.3f s/MB to export, %.1f MB of memory\n", size,
                    cost.loading / size, cost.exporting / size, cost.megabytes - empty_.megabytes);
        isGood_ = isGood_ && cost.isKnown;
    }
    std::string path(const char *name) const { return folder_.filePath(name).toStdString(); }
    bool isGood() const { return isGood_; }

private:
    const QTemporaryDir folder_;
    Cost empty_;
    bool isGood_ = true;
};

bool measureAll(std::size_t bytes, std::string_view word) {
    Measuring measuring;
    const auto isWanted = [word](const std::string &name) { return name.find(word) != std::string::npos; };
    for (const HostileInput &input : hostileInputs()) {
        if (isWanted(input.name)) {
            const std::string text = input.make(bytes);
            writeFile(measuring.path("a.data"), text);
            measuring.measure(input.name, measuring.path("a.data"), text.size());
        }
    }
    for (const HostileArchive &archive : hostileArchives()) {
        if (isWanted(archive.name)) {
            archive.write(QString::fromStdString(measuring.path("a.zip")), bytes);
            measuring.measure(archive.name, measuring.path("a.zip"), bytes);
        }
    }
    return measuring.isGood();
}

} // namespace

int main(int argc, char **argv) {
    double megabytes = 0;
    if (argc > 1) {
        std::from_chars(argv[1], argv[1] + std::string_view(argv[1]).size(), megabytes);
    }
    if (!(megabytes > 0)) {
        std::fputs("Usage: fvqa300-hostile-inputs MEGABYTES [WORD]\n", stderr);
        return 2;
    }
    const QCoreApplication application(argc, argv);
    zoneDirectory = QCoreApplication::applicationDirPath().toStdString() + "/zoneinfo";
    return measureAll(static_cast<std::size_t>(megabytes * mebi), argc > 2 ? argv[2] : "") ? 0 : 1;
}

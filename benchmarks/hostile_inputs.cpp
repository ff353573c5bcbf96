// fvqa300-hostile-inputs MEGABYTES [WORD]: loads files and archives that are made to cost as much as they
// can, one of each kind (only those with WORD in their names), and prints for each what it cost: processor
// seconds per megabyte (of an archive: inflated), and the peak of memory above that of an empty file.
//
// Each is loaded and merged in a process of its own, as the viewer does it.

#include "data/DataSet.h"
#include "loading/FileLoading.h"
#include "support/HostileArchives.h"
#include "support/HostileInputs.h"
#include "time/Timezone.h"

#include <QCoreApplication>
#include <QTemporaryDir>

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
    double seconds = 0;   // of processor
    double megabytes = 0; // peak of resident memory
    int status = 0;
};

void load(const std::string &path) {
    const std::atomic<bool> cancelled = false;
    DataSet merged;
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

Cost costOf(const std::string &path) {
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        load(path);
        std::fflush(stdout);
        _exit(0);
    }
    int waited = 0;
    rusage usage{};
    while (wait4(child, &waited, 0, &usage) < 0 && errno == EINTR) {
    }
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return {seconds(usage.ru_utime) + seconds(usage.ru_stime), static_cast<double>(usage.ru_maxrss) / 1024.0,
            WIFEXITED(waited) ? WEXITSTATUS(waited) : 1};
}

void write(const std::string &path, const std::string &text) {
    std::ofstream(path, std::ios::binary) << text;
}

// Loads each, and prints a line or two about it.
class Measuring {
public:
    Measuring() {
        write(path("a.data"), "DATAH\tA\n");
        empty_ = costOf(path("a.data"));
        std::puts("");
    }

    void measure(const std::string &name, const std::string &file, std::size_t bytes) {
        std::printf("%s: ", name.c_str());
        const Cost cost = costOf(file);
        const double size = static_cast<double>(bytes) / mebi;
        std::printf("\n    %.1f MB, %.3f s/MB, %.1f MB of memory\n", size,
                    (cost.seconds - empty_.seconds) / size, cost.megabytes - empty_.megabytes);
        isGood_ = isGood_ && cost.status == 0;
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
            write(measuring.path("a.data"), text);
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

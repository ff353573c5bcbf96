// Loads the files named as arguments into the real window and tells how long that takes, how long the window
// was deaf at most, the peak of memory, and the processor time of the process and of the interface thread.

#include "loading/ExecutablePath.h"
#include "loading/QDataSet.h"
#include "time/Timezone.h"
#include "ui/MyFrame.h"
#include "ui/MyMainWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <ctime>
#include <iostream>
#include <sys/resource.h>

namespace {

double peakMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

double processorSeconds(clockid_t clock) {
    constexpr double nanosecond = 1e-9;
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * nanosecond;
}

} // namespace

int main(int argc, char **argv) {
    zoneDirectory = zoneDirectoryFor(executablePath(argv[0]));
    const QApplication application(argc, argv);
    MyMainWindow window("", argv[0], 1, argv);
    window.show();
    const int files = argc - 1;

    QElapsedTimer sinceStart;
    QElapsedTimer sinceTick;
    qint64 longestGap = 0;
    QTimer ticks;
    QObject::connect(&ticks, &QTimer::timeout,
                     [&] { longestGap = std::max(longestGap, sinceTick.restart()); });
    int loaded = 0;
    auto *const dataSet = window.findChild<QDataSet *>();
    QObject::connect(dataSet, &QDataSet::FileLoaded, [&] {
        if (++loaded == files) {
            QTimer::singleShot(0, qApp, &QApplication::quit);
        }
    });
    sinceStart.start();
    sinceTick.start();
    ticks.start(1);
    QStringList paths;
    for (int i = 1; i < argc; ++i) {
        paths += QString::fromLocal8Bit(argv[i]);
    }
    QTimer::singleShot(0, [&] { window.findChild<MyFrame *>()->AddFiles(paths); });
    const int status = QApplication::exec();
    std::cout << files << " files, " << static_cast<double>(sinceStart.elapsed()) / 1000 << " s, longest gap "
              << longestGap << " ms, peak memory " << peakMegabytes() << " MB, processor "
              << processorSeconds(CLOCK_PROCESS_CPUTIME_ID) << " s, interface thread "
              << processorSeconds(CLOCK_THREAD_CPUTIME_ID) << " s\n";
    return status;
}

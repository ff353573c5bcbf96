// fvqa300-merge-files COUNT...: has the real window take in COUNT files that are loaded already, and prints
// the processor time of the interface thread for each of them: merging, the table of variables and the
// events.

#include "benchmarks/HalfHourSource.h"
#include "loading/ExecutablePath.h"
#include "loading/QDataSet.h"
#include "time/Timezone.h"
#include "ui/MyMainWindow.h"

#include <QApplication>
#include <QTimer>

#include <charconv>
#include <cstring>
#include <ctime>
#include <iostream>
#include <vector>

namespace {

double threadSeconds() {
    constexpr double nanosecond = 1e-9;
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * nanosecond;
}

struct Arrival {
    QString name;
    DataSet source;
};

std::vector<Arrival> makeArrivals(int count) {
    std::vector<Arrival> arrivals;
    arrivals.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        // Every other file comes late, as files that load side by side do.
        const int number = i % 2 == 0 ? i + 1 : i - 1;
        arrivals.push_back({QString::fromStdString(halfHourName(number)), makeHalfHourSource(number)});
    }
    return arrivals;
}

// Hands one file in at each round of the event loop, as the ends of the workers come in.
void mergeAll(QDataSet &dataSet, const std::vector<Arrival> &arrivals) {
    std::size_t next = 0;
    QTimer ticks;
    QObject::connect(&ticks, &QTimer::timeout, [&] {
        if (next == arrivals.size()) {
            QApplication::quit();
            return;
        }
        dataSet.addLoaded(arrivals[next].source);
        Q_EMIT dataSet.FileLoaded(arrivals[next].name);
        ++next;
    });
    ticks.start(0);
    QApplication::exec();
}

void measure(int count, char *program) {
    const std::vector<Arrival> arrivals = makeArrivals(count);
    MyMainWindow window("", program, 1, &program);
    window.show();
    QCoreApplication::processEvents();
    const double begin = threadSeconds();
    mergeAll(*window.findChild<QDataSet *>(), arrivals);
    constexpr double microseconds = 1e6;
    std::cout << count << " files, " << (threadSeconds() - begin) * microseconds / count
              << " us a file on the interface thread\n";
}

} // namespace

int main(int argc, char **argv) {
    zoneDirectory = zoneDirectoryFor(executablePath(argv[0]));
    const QApplication application(argc, argv);
    for (int i = 1; i < argc; ++i) {
        int count = 0;
        std::from_chars(argv[i], argv[i] + std::strlen(argv[i]), count);
        if (count <= 0) {
            std::cerr << "fvqa300-merge-files: not a number of files: " << argv[i] << '\n';
            return 2;
        }
        measure(count, argv[0]);
    }
    return argc > 1 ? 0 : 2;
}

// Opens a plot of the first variables of the files named as arguments, as a person would, and tells how long
// each step takes until it is drawn.

#include "loading/ExecutablePath.h"
#include "loading/QDataSet.h"
#include "plot/PlotDialog.h"
#include "plot/PlotZoomer.h"
#include "plot/QwtCurve.h"
#include "plot/TimeSeriesPlot.h"
#include "time/Timezone.h"

#include <QApplication>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QMimeData>

#include <algorithm>
#include <ctime>
#include <functional>
#include <iomanip>
#include <iostream>

namespace {

void loadAll(QDataSet &dataSet, int count, char **files) {
    int loaded = 0;
    QObject::connect(&dataSet, &QDataSet::FileLoaded, [&loaded, count] {
        if (++loaded == count) {
            QApplication::quit();
        }
    });
    for (int i = 0; i < count; ++i) {
        dataSet.AddFile(QString::fromLocal8Bit(files[i]));
    }
    QApplication::exec();
}

// Both the time on the wall and the processor's, which other programs do not lengthen.
void measure(const char *what, const std::function<void()> &step) {
    constexpr double nanosecondsPerMillisecond = 1e6;
    constexpr double clocksPerMillisecond = CLOCKS_PER_SEC / 1e3;
    QElapsedTimer timer;
    timer.start();
    const std::clock_t begin = std::clock();
    step();
    QCoreApplication::processEvents();
    const double wall = static_cast<double>(timer.nsecsElapsed()) / nanosecondsPerMillisecond;
    const double processor = static_cast<double>(std::clock() - begin) / clocksPerMillisecond;
    std::cout << std::left << std::setw(36) << what << std::right << std::fixed << std::setprecision(1)
              << std::setw(8) << wall << " ms, processor " << std::setw(8) << processor << " ms\n";
}

void drop(PlotDialog &plot, const QString &key) {
    QMimeData data;
    data.setText(key);
    QDragEnterEvent enter(QPoint(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&plot, &enter);
    QDropEvent event(QPointF(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&plot, &event);
}

QStringList someKeys(const QDataSet &dataSet) {
    constexpr int enough = 8;
    QStringList keys;
    for (const std::string &key : dataSet.variableKeys()) {
        keys += QString::fromStdString(key);
        if (keys.size() == enough) {
            break;
        }
    }
    return keys;
}

// A window of the longest time that still shows records, from the middle of all.
QRectF recordWindow(const PlotZoomer &zoomer) {
    constexpr double longest = 5000; // s
    QRectF rect = zoomer.zoomBase();
    rect.setLeft(rect.center().x());
    rect.setWidth(std::min(longest, rect.width() / 2));
    return rect;
}

} // namespace

int main(int argc, char **argv) {
    zoneDirectory = zoneDirectoryFor(executablePath(argv[0]));
    const QApplication application(argc, argv);
    QDataSet dataSet;
    measure("load", [&] { loadAll(dataSet, argc - 1, argv + 1); });
    const QStringList keys = someKeys(dataSet);
    if (keys.isEmpty()) {
        std::cerr << "The files hold no variable\n";
        return 1;
    }

    PlotDialog *plot = nullptr;
    measure("double-click to drawn plot", [&] {
        plot = new PlotDialog(nullptr, &dataSet, keys.front());
        plot->show();
    });
    auto *zoomer = plot->findChild<PlotZoomer *>();
    measure("zoom to 5000 s of one variable", [&] { zoomer->zoom(recordWindow(*zoomer)); });
    measure("back to everything", [&] { plot->OnZoomLeft(); });
    for (int i = 1; i < keys.size(); ++i) {
        measure(i == 1 ? "drop of a next variable" : "  another", [&] { drop(*plot, keys[i]); });
    }
    measure("zoom to 5000 s of all of them", [&] { zoomer->zoom(recordWindow(*zoomer)); });
    measure("zoom to 30 s", [&] {
        QRectF rect = recordWindow(*zoomer);
        rect.setWidth(30);
        zoomer->zoom(rect);
    });
    measure("hide a curve", [&] {
        QwtPlotItem *item = plot->findChild<TimeSeriesPlot *>()->entries().begin()->second.curve;
        plot->OnLegendChecked(plot->findChild<TimeSeriesPlot *>()->itemToInfo(item), false, 0);
    });
    return 0;
}

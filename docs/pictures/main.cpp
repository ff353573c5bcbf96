// Takes the pictures that the documents show from the real windows: fvqa300-pictures FOLDER FILE...
//
// The files are those of one analyser over a day and a QA-330's, and some that have something wrong;
// scripts/pictures makes them. The zones are in the folder zoneinfo below the working folder.

#include "Album.h"
#include "loading/QDataSet.h"
#include "plot/PlotDialog.h"
#include "plot/PlotZoomer.h"
#include "plot/QwtCurve.h"
#include "plot/TimeSeriesPlot.h"
#include "time/Timezone.h"
#include "ui/ExportWhatDialog.h"
#include "ui/MyFrame.h"
#include "ui/MyMainWindow.h"

#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPrinter>
#include <QProgressBar>
#include <QTabWidget>

#include <cmath>
#include <iostream>
#include <memory>
#include <tuple>

namespace {

// Heights of parts of windows, in pixels, where there is nothing to see below.
constexpr int progressHeight = 110;
constexpr int messagesHeight = 180;

void showTab(MyMainWindow &window, int page) {
    window.findChild<QTabWidget *>()->setCurrentIndex(page);
}

// Takes the picture of the progress when about half of it is done.
void loadAll(const Album &album, MyMainWindow &window, const QStringList &files) {
    auto *dataSet = window.findChild<QDataSet *>();
    auto *bar = window.findChild<QProgressBar *>();
    bool isTaken = false;
    int loaded = 0;
    const QObject context;
    QObject::connect(dataSet, &QDataSet::Progress, &context, [&] {
        if (!isTaken && bar->value() >= 50 && bar->value() < 100) {
            isTaken = true;
            album.take(window, QStringLiteral("progress"), progressHeight);
        }
    });
    QObject::connect(dataSet, &QDataSet::FileLoaded, &context, [&] {
        if (++loaded == files.size()) {
            QApplication::quit();
        }
    });
    showTab(window, 0);
    window.findChild<MyFrame *>()->AddFiles(files);
    QApplication::exec();
    if (!isTaken) {
        throw std::runtime_error("the files load too fast for a picture of the progress");
    }
}

// The key of the first variable whose name begins with `name`.
QString keyOf(const QDataSet &dataSet, const std::string &name) {
    for (const std::string &key : dataSet.variableKeys()) {
        if (key.find(":DATA:" + name) != std::string::npos) {
            return QString::fromStdString(key);
        }
    }
    throw std::runtime_error("no file holds " + name);
}

void dropOnRightHalf(PlotDialog &plot, const QString &key) {
    const QPoint at(plot.width() * 3 / 4, plot.height() / 2);
    QMimeData data;
    data.setText(key);
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&plot, &enter);
    QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&plot, &drop);
}

// `seconds` from a share of all.
void zoomTo(PlotDialog &plot, double seconds, double share = 0.5) {
    auto *zoomer = plot.findChild<PlotZoomer *>();
    QRectF rect = zoomer->zoomBase();
    rect.setLeft(rect.left() + rect.width() * share);
    rect.setWidth(seconds);
    zoomer->zoom(rect);
    plot.OnAutoScaleVertical();
}

void moveMouse(QWidget &canvas, QEvent::Type type, const QPoint &to, Qt::MouseButtons held) {
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, to, canvas.mapToGlobal(to), button, held, Qt::NoModifier);
    QCoreApplication::sendEvent(&canvas, &event);
}

// With the rectangle that the left button draws, and the position of the mouse beside it.
void takeZooming(const Album &album, PlotDialog &plot) {
    QWidget &canvas = *plot.findChild<TimeSeriesPlot *>()->canvas();
    const QPoint from(canvas.width() * 11 / 20, canvas.height() / 8);
    const QPoint to(canvas.width() * 15 / 20, canvas.height() * 7 / 8);
    moveMouse(canvas, QEvent::MouseButtonPress, from, Qt::LeftButton);
    moveMouse(canvas, QEvent::MouseMove, to, Qt::LeftButton);
    album.take(plot, QStringLiteral("plot-zooming"));
    plot.findChild<PlotZoomer *>()->abandon();
}

void takeMenu(const Album &album, PlotDialog &plot) {
    QContextMenuEvent wish(QContextMenuEvent::Keyboard, plot.rect().center(),
                           plot.mapToGlobal(plot.rect().center()));
    QCoreApplication::sendEvent(&plot, &wish);
    auto *menu = plot.findChild<QMenu *>();
    album.take(*menu, QStringLiteral("plot-menu"));
    menu->close();
}

void takeFlags(const Album &album, QDataSet &dataSet) {
    PlotDialog plot(nullptr, &dataSet, QStringLiteral("QA330:DATA:RSSI"));
    plot.setAttribute(Qt::WA_DeleteOnClose, false);
    plot.resize(900, 450); // the legend has nine entries
    plot.show();
    dropOnRightHalf(plot, QStringLiteral("QA330:DATA:DIAG:NOSIGNAL"));
    dropOnRightHalf(plot, QStringLiteral("QA330:DATA:DIAG:MOTORSPINNING"));
    zoomTo(plot, 180, 0.2);
    album.take(plot, QStringLiteral("plot-flags"));
}

// Types the range of values that the curves of `key` have in view, as one does when the left axis starts wide
// enough for those of the right one.
void fitLeftAxisTo(PlotDialog &plot, const std::string &key) {
    Extent values;
    for (const auto &[entryKey, entry] : plot.findChild<TimeSeriesPlot *>()->entries()) {
        if (entryKey.first == key) {
            values.include(entry.series->loadedRange());
        }
    }
    const QList<QLineEdit *> edits = plot.findChildren<QLineEdit *>();
    edits.front()->setText(QString::number(std::floor(values.low)));
    edits.back()->setText(QString::number(std::ceil(values.high)));
    plot.OnYMinMaxApplyClicked();
}

void takePlots(const Album &album, QDataSet &dataSet) {
    const QString gas = keyOf(dataSet, "CO2 (mg");
    const QString pressure = keyOf(dataSet, "Air Pressure");
    auto plot = std::make_unique<PlotDialog>(nullptr, &dataSet, gas);
    plot->show();
    takeZooming(album, *plot);
    zoomTo(*plot, 6 * 3600);
    takeMenu(album, *plot);
    zoomTo(*plot, 4 * 3600);
    album.take(*plot, "plot-averages");
    zoomTo(*plot, 1800);
    album.take(*plot, "plot-half-hour");

    plot = std::make_unique<PlotDialog>(nullptr, &dataSet, gas);
    plot->resize(900, 400);
    plot->show();
    dropOnRightHalf(*plot, pressure);
    zoomTo(*plot, 6 * 3600);
    fitLeftAxisTo(*plot, gas.toStdString());
    album.take(*plot, "plot-two-axes");
}

void takeExportDialog(const Album &album) {
    ExportWhatDialog dialog(nullptr, MyFrame::defaultTimeColumns);
    dialog.fillList({"AIU-0412:DATA", "QA330:DATA", "QA330:DATASTAT"});
    auto *list = dialog.findChild<QListWidget *>();
    auto *type = dialog.findChildren<QComboBox *>().front();
    auto *split = dialog.findChildren<QComboBox *>().back();
    dialog.resize(dialog.sizeHint().width(), 300);
    dialog.show();
    list->setCurrentRow(1);
    for (const auto &[typeIndex, splitIndex, name] : {std::tuple(0, 1, "export-tob1"), {1, 5, "export"}}) {
        type->setCurrentIndex(typeIndex);
        split->setCurrentIndex(splitIndex);
        album.take(dialog, QString::fromLatin1(name));
    }
}

void takeAll(const Album &album, const QStringList &files, const char *program) {
    MyMainWindow window(QStringLiteral("QA-310/320A/330/34xx File Viewer"), program, 1, &program);
    window.resize(1000, 650);
    window.show();
    loadAll(album, window, files);
    showTab(window, 2);
    album.take(window, QStringLiteral("messages"), messagesHeight);
    window.resize(1000, 560);
    showTab(window, 1);
    album.take(window, QStringLiteral("window"));
    auto &dataSet = *window.findChild<QDataSet *>();
    takePlots(album, dataSet);
    takeFlags(album, dataSet);
    takeExportDialog(album);
}

} // namespace

int main(int argc, char **argv) {
    zoneDirectory = "zoneinfo"; // messages show it, and the machine's folders concern nobody
    const QApplication application(argc, argv);
    if (argc < 3) {
        std::cerr << "Usage: fvqa300-pictures FOLDER FILE...\n";
        return 2;
    }
    try {
        takeAll(Album(QString::fromLocal8Bit(argv[1])), QApplication::arguments().mid(2), argv[0]);
    } catch (const std::exception &error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}

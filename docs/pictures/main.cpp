// Takes the pictures that the documents show from the real windows: fvqa300-pictures FOLDER FILE...
//
// The files are those of one analyser over a day or so; scripts/pictures makes them.

#include "loading/ExecutablePath.h"
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
#include <QDropEvent>
#include <QMimeData>
#include <QPrinter>
#include <QTabWidget>

#include <iostream>
#include <memory>

namespace {

class Album {
public:
    explicit Album(QString folder) : folder_(std::move(folder)) {}

    void take(QWidget &window, const QString &name) const {
        QCoreApplication::processEvents();
        const QString path = folder_ + QLatin1Char('/') + name + QStringLiteral(".png");
        if (!window.grab().save(path)) {
            throw std::runtime_error("cannot write " + path.toStdString());
        }
        std::cout << path.toStdString() << '\n';
    }

private:
    QString folder_;
};

void loadAll(MyMainWindow &window, const QStringList &files) {
    auto *dataSet = window.findChild<QDataSet *>();
    int loaded = 0;
    QObject::connect(dataSet, &QDataSet::FileLoaded, [&] {
        if (++loaded == files.size()) {
            QApplication::quit();
        }
    });
    window.findChild<MyFrame *>()->AddFiles(files);
    QApplication::exec();
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

// `seconds` from the middle of all.
void zoomTo(PlotDialog &plot, double seconds) {
    auto *zoomer = plot.findChild<PlotZoomer *>();
    QRectF rect = zoomer->zoomBase();
    rect.setLeft(rect.center().x());
    rect.setWidth(seconds);
    zoomer->zoom(rect);
    plot.OnAutoScaleVertical();
}

void takePlots(const Album &album, QDataSet &dataSet) {
    const QString gas = keyOf(dataSet, "CO2 (mg");
    const QString pressure = keyOf(dataSet, "Air Pressure");
    auto plot = std::make_unique<PlotDialog>(nullptr, &dataSet, gas);
    plot->show();
    album.take(*plot, "plot-day");
    zoomTo(*plot, 3600);
    album.take(*plot, "plot-hour");
    zoomTo(*plot, 30);
    album.take(*plot, "plot-30-seconds");

    plot = std::make_unique<PlotDialog>(nullptr, &dataSet, gas);
    plot->show();
    auto *curves = plot->findChild<TimeSeriesPlot *>();
    QwtPlotItem *maximum = std::next(curves->entries().begin())->second.curve;
    plot->OnLegendChecked(curves->itemToInfo(maximum), false, 0);
    curves->setLegendChecked(*maximum, false);
    album.take(*plot, "plot-hidden-curve");

    plot = std::make_unique<PlotDialog>(nullptr, &dataSet, gas);
    plot->resize(900, 450);
    plot->show();
    dropOnRightHalf(*plot, pressure);
    zoomTo(*plot, 6 * 3600);
    album.take(*plot, "plot-two-axes");
}

void takeExportDialog(const Album &album) {
    ExportWhatDialog dialog(nullptr, MyFrame::defaultTimeColumns);
    dialog.fillList({"AIU-0412:DATA", "QA330:DATA", "QA330:DATASTAT"});
    dialog.findChildren<QComboBox *>().front()->setCurrentIndex(1);
    dialog.show();
    album.take(dialog, "export");
}

void takeAll(const Album &album, const QStringList &files, const char *program) {
    MyMainWindow window(QStringLiteral("QA-310/320A/330/34xx File Viewer"), program, 1, &program);
    window.resize(1000, 650);
    window.show();
    album.take(window, "start");
    loadAll(window, files);
    for (const auto &[page, name] : {std::pair(0, "progress"), {1, "window"}, {2, "messages"}}) {
        window.findChild<QTabWidget *>()->setCurrentIndex(page);
        album.take(window, name);
    }
    takePlots(album, *window.findChild<QDataSet *>());
    takeExportDialog(album);
}

} // namespace

int main(int argc, char **argv) {
    zoneDirectory = zoneDirectoryFor(executablePath(argv[0]));
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

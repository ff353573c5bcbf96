// Takes a picture of every window for people to judge: fvqa300-looks FOLDER ENDING light|dark FILE...
//
// The files are the examples. QT_SCALE_FACTOR says how many pixels a point of the screen has;
// scripts/pictures
// --looks runs through all that there is.

#include "Album.h"
#include "loading/QDataSet.h"
#include "plot/PlotDialog.h"
#include "plot/PlotZoomer.h"
#include "plot/QwtCurve.h"
#include "plot/TimeSeriesPlot.h"
#include "time/Timezone.h"
#include "ui/ExportProgressDialog.h"
#include "ui/ExportWhatDialog.h"
#include "ui/MyFrame.h"
#include "ui/MyMainWindow.h"

#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QTabWidget>
#include <QTableWidget>

#include <memory>

namespace {

QPalette darkPalette() {
    QPalette dark(QColor(49, 54, 59), QColor(42, 46, 50));
    dark.setColor(QPalette::Base, QColor(27, 30, 32));
    dark.setColor(QPalette::AlternateBase, QColor(35, 38, 41));
    dark.setColor(QPalette::Text, QColor(252, 252, 252));
    dark.setColor(QPalette::PlaceholderText, QColor(161, 169, 177));
    dark.setColor(QPalette::Highlight, QColor(61, 174, 233));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        dark.setColor(QPalette::Disabled, role, QColor(110, 113, 117));
    }
    return dark;
}

void loadAll(MyMainWindow &window, const QStringList &files) {
    int loaded = 0;
    const QObject context;
    QObject::connect(window.findChild<QDataSet *>(), &QDataSet::FileLoaded, &context, [&] {
        if (++loaded == files.size()) {
            QApplication::quit();
        }
    });
    window.findChild<MyFrame *>()->AddFiles(files);
    QApplication::exec();
}

void takeMainWindow(const Album &album, MyMainWindow &window, const QStringList &files) {
    auto &tabs = *window.findChild<QTabWidget *>();
    const auto takeTabs = [&](const QString &state) {
        const QStringList names{"progress", "variables", "messages"};
        for (int page = 0; page < names.size(); ++page) {
            tabs.setCurrentIndex(page);
            album.take(window, QStringLiteral("window-") + state + QLatin1Char('-') + names[page]);
        }
    };
    window.show();
    album.take(window, QStringLiteral("window-start"));
    auto &list = *window.findChild<QListView *>();
    loadAll(window, files.mid(0, 1));
    list.selectAll();
    window.findChild<MyFrame *>()->OnCloseFile();
    takeTabs(QStringLiteral("empty"));
    loadAll(window, files);
    list.setCurrentIndex(list.model()->index(1, 0));
    window.findChild<QTableWidget *>()->setCurrentCell(2, 0);
    takeTabs(QStringLiteral("files"));
}

void drop(PlotDialog &plot, const QString &key, double share) {
    const QPoint at(static_cast<int>(plot.width() * share), plot.height() / 2);
    QMimeData data;
    data.setText(key);
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&plot, &enter);
    QDropEvent event(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&plot, &event);
}

void moveMouse(QWidget &canvas, QEvent::Type type, const QPoint &to, Qt::MouseButtons held) {
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, to, canvas.mapToGlobal(to), button, held, Qt::NoModifier);
    QCoreApplication::sendEvent(&canvas, &event);
}

// A window for `key`, with further variables beside it.
std::unique_ptr<PlotDialog> plotOf(QDataSet &dataSet, const QStringList &keys) {
    auto plot = std::make_unique<PlotDialog>(nullptr, &dataSet, keys.front());
    plot->show();
    for (int i = 1; i < keys.size(); ++i) {
        drop(*plot, keys[i], i % 2 == 0 ? 0.25 : 0.75);
    }
    return plot;
}

void takePlots(const Album &album, QDataSet &dataSet) {
    QStringList keys;
    for (const std::string &key : dataSet.variableKeys()) {
        const QString text = QString::fromStdString(key);
        if (text.contains(QStringLiteral(":DATA:")) && !text.contains(QStringLiteral("DIAG"))) {
            keys += text;
        }
    }
    auto plot = plotOf(dataSet, keys.mid(6, 1));
    album.take(*plot, QStringLiteral("plot"));
    auto &zoomer = *plot->findChild<PlotZoomer *>();
    QRectF rect = zoomer.zoomBase();
    rect.setWidth(120);
    zoomer.zoom(rect);
    QWidget &canvas = *plot->findChild<TimeSeriesPlot *>()->canvas();
    moveMouse(canvas, QEvent::MouseButtonPress, {canvas.width() / 2, canvas.height() / 4}, Qt::LeftButton);
    moveMouse(canvas, QEvent::MouseMove, {canvas.width() * 9 / 10, canvas.height() / 2}, Qt::LeftButton);
    album.take(*plot, QStringLiteral("plot-zooming"));
    zoomer.abandon();
    canvas.setFocus();
    album.take(*plot, QStringLiteral("plot-focus"));
    QContextMenuEvent wish(QContextMenuEvent::Keyboard, plot->rect().center(),
                           plot->mapToGlobal(plot->rect().center()));
    QCoreApplication::sendEvent(plot.get(), &wish);
    auto *menu = plot->findChild<QMenu *>();
    album.take(*menu, QStringLiteral("plot-menu"));
    menu->close();
    plot->resize(plot->minimumSize());
    album.take(*plot, QStringLiteral("plot-smallest"));

    album.take(*plotOf(dataSet, keys.mid(0, 2)), QStringLiteral("plot-two-axes"));
    plot = plotOf(dataSet, keys.mid(0, 10));
    plot->resize(1000, 600);
    album.take(*plot, QStringLiteral("plot-ten-variables"));
    album.take(*plotOf(dataSet, {QStringLiteral("NONE")}), QStringLiteral("plot-nothing"));
}

void takeExport(const Album &album, QDataSet &dataSet) {
    ExportWhatDialog dialog(nullptr, MyFrame::defaultTimeColumns);
    dialog.fillList({"AIU-0412:DATA", "QA330:DATA", "QA330:DATASTAT"});
    dialog.show();
    album.take(dialog, QStringLiteral("export"));
    dialog.findChild<QComboBox *>()->setCurrentIndex(1);
    album.take(dialog, QStringLiteral("export-text"));
    ExportProgressDialog progress(nullptr, dataSet, "QA330");
    progress.showFile("/home/field/2019/qa330-data-with-a-rather-long-name-of-its-own.tob1");
    progress.setValue(40);
    progress.show();
    album.take(progress, QStringLiteral("export-progress"));
}

} // namespace

int main(int argc, char **argv) {
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    zoneDirectory = "zoneinfo";
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 5) {
        std::cerr << "Usage: fvqa300-looks FOLDER ENDING light|dark FILE...\n";
        return 2;
    }
    QApplication::setStyle(QStringLiteral("Fusion"));
    if (arguments[3] == QLatin1String("dark")) {
        QApplication::setPalette(darkPalette());
    }
    try {
        const Album album(arguments[1], arguments[2]);
        MyMainWindow window(QStringLiteral("QA-310/320A/330/34xx File Viewer"), QString(), 1, argv);
        takeMainWindow(album, window, arguments.mid(4));
        takePlots(album, *window.findChild<QDataSet *>());
        takeExport(album, *window.findChild<QDataSet *>());
    } catch (const std::exception &error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}

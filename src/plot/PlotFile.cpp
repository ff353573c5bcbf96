#include "plot/PlotFile.h"

#include "data/Record.h"
#include "plot/PlotPicture.h"
#include "plot/TimeSeriesPlot.h"

#include <QApplication>

namespace {

// Drawing texts needs an application, which needs no display.
void makeApplication() {
    if (QCoreApplication::instance() != nullptr) {
        return;
    }
    static int argumentCount = 1;
    static char name[] = "fvqa300-cli";
    static char *arguments[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QApplication application(argumentCount, arguments);
}

void show(TimeSeriesPlot &plot, const PlotFileWish &wish) {
    QRectF rect = plot.wholeRect();
    if (wish.from != wholeRangeStart) {
        rect.setLeft(wish.from);
    }
    if (wish.to != wholeRangeEnd) {
        rect.setRight(wish.to);
    }
    if (wish.from != wholeRangeStart || wish.to != wholeRangeEnd) {
        plot.loadWindow(rect.left(), rect.right());
    }
    const QRectF shown = withArea(rect);
    plot.setAxisScale(QwtPlot::xBottom, shown.left(), shown.right());
    plot.setAxisScale(QwtPlot::yLeft, shown.top(), shown.bottom());
    plot.updateAxes();
    plot.restartLabels();
    plot.replot();
}

} // namespace

bool isPlotFileName(const QString &path) {
    return isPictureName(path);
}

QString writePlotFile(const QDataSet &dataSet, const PlotFileWish &wish) {
    makeApplication();
    TimeSeriesPlot plot(dataSet, QString::fromStdString(wish.leftKeys.front()));
    for (std::size_t i = 1; i < wish.leftKeys.size(); ++i) {
        plot.addVariable(QString::fromStdString(wish.leftKeys[i]), TimeSeriesPlot::Side::left);
    }
    for (const std::string &key : wish.rightKeys) {
        plot.addVariable(QString::fromStdString(key), TimeSeriesPlot::Side::right);
    }
    plot.resize(wish.size);
    show(plot, wish);
    return writePicture(plot, wish.path, wish.size);
}

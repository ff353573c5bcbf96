#include "plot/PlotFile.h"

#include "data/Record.h"
#include "plot/PlotPicture.h"
#include "plot/TimeSeriesPlot.h"

#include <QApplication>

#include <utility>

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
    if (wish.from != wholeRangeStart || wish.to != wholeRangeEnd) {
        rect = withTimes(rect, {wish.from != wholeRangeStart ? wish.from : rect.left(),
                                wish.to != wholeRangeEnd ? wish.to : rect.right()});
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

PlotFileReport writePlotFile(const QDataSet &dataSet, const PlotFileWish &wish) {
    makeApplication();
    std::vector<std::pair<std::string, TimeSeriesPlot::Side>> variables;
    for (const std::string &key : wish.leftKeys) {
        variables.emplace_back(key, TimeSeriesPlot::Side::left);
    }
    for (const std::string &key : wish.rightKeys) {
        variables.emplace_back(key, TimeSeriesPlot::Side::right);
    }
    const auto &[firstKey, firstSide] = variables.front();
    TimeSeriesPlot plot(dataSet, QString::fromStdString(firstKey), nullptr, firstSide);
    for (std::size_t i = 1; i < variables.size(); ++i) {
        plot.addVariable(QString::fromStdString(variables[i].first), variables[i].second);
    }
    plot.resize(wish.size);
    show(plot, wish);
    return {writePicture(plot, wish.path, wish.size),
            plot.loadedRange(TimeSeriesPlot::Curves::all).isEmpty()};
}

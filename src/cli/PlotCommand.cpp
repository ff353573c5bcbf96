#include "cli/PlotCommand.h"

#include "cli/ProgressBar.h"
#include "cli/StandardError.h"
#include "loading/QDataSet.h"
#include "plot/PlotFile.h"

#include <iostream>

namespace {

// Those keys that the data have; the others are named on standard error.
std::vector<std::string> knownOf(const std::vector<std::string> &keys, const std::set<std::string> &known) {
    std::vector<std::string> found;
    for (const std::string &key : keys) {
        if (known.contains(key)) {
            found.push_back(key);
        } else {
            std::cerr << key << ": No file holds this variable\n";
        }
    }
    return found;
}

} // namespace

void drawPlot(const DataSet &data, const PlotWish &wish, StandardError &standardError) {
    const std::set<std::string> known = data.variableKeys();
    PlotFileWish picture{
        knownOf(wish.left, known),      knownOf(wish.right, known),         wish.from, wish.to,
        QSize(wish.width, wish.height), QString::fromStdString(wish.output)};
    if (picture.leftKeys.empty() && picture.rightKeys.empty()) {
        return;
    }
    QDataSet dataSet;
    dataSet.addLoaded(data);
    ProgressBar progress(standardError, "Drawing", 1);
    const PlotFileReport report = writePlotFile(dataSet, picture);
    if (!report.problem.isEmpty()) {
        std::cerr << wish.output << ": " << report.problem.toStdString() << '\n';
    } else if (report.isEmpty) {
        standardError.remark(wish.output + ": The picture is empty: no point lies in this range of time");
    }
    progress.advance(1);
}

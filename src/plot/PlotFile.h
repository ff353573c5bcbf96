#pragma once

#include <QSize>
#include <QString>

#include <string>
#include <vector>

class QDataSet;

// A picture of some variables, as a plot window shows them.
struct PlotFileWish {
    std::vector<std::string> leftKeys; // variable keys for the left axis and for the right one, one at least
    std::vector<std::string> rightKeys;
    double from = 0; // UTC seconds, or the whole-range bounds
    double to = 0;
    QSize size; // pixels of 96 to the inch
    QString path;
};

// True when the path ends like a picture that can be written.
bool isPlotFileName(const QString &path);

struct PlotFileReport {
    QString problem;      // why the picture could not be written; empty when it was
    bool isEmpty = false; // no point of any variable can be drawn
};

// Draws the picture without a display and writes it. Makes the process's application object at its first
// call. Throws Timezone::Error when the zone's file has become unreadable.
PlotFileReport writePlotFile(const QDataSet &dataSet, const PlotFileWish &wish);

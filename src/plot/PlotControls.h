#pragma once

#include "plot/YRangeEdits.h"

#include <QCoreApplication>

class QHBoxLayout;
class QPushButton;
class QToolButton;

// The controls of a plot window, in a row: zooming, the left axis's range, printing and closing.
//
// Connected to nothing, and the zoom buttons cannot be used yet. The layout that takes the row owns that, the
// window whose layout it is the controls.
class PlotControls {
    Q_DECLARE_TR_FUNCTIONS(PlotControls)

public:
    PlotControls();

    QToolButton *previous;
    QToolButton *next;
    QToolButton *full;
    QToolButton *horizontal;
    QToolButton *vertical;
    QPushButton *applyYRange;
    YRangeEdits yRange;
    QPushButton *print;
    QPushButton *close;
    QHBoxLayout *row; // holds the others, in this order
};

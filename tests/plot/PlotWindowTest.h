#pragma once

#include "plot/PlotWindow.h"

#include <optional>

// What the tests of the plot window share: one data set of the short block for all of them, and for each a
// new window over "GA:DATA:X", which is not shown yet. A class that wants more of its window has an init() of
// its own, which calls this one first.
class PlotWindowTest : public QObject {
    Q_OBJECT

protected Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

protected:
    std::optional<PlotData> data_;
    std::optional<PlotWindow> window_;
};

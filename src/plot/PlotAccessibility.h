#pragma once

class TimeSeriesPlot;

// Tells a screen reader what the plot shows, and gives its legend's entries, which are check boxes of their
// own kind, a name and a state. The Tab key walks them before the curves. To be called again when variables
// have been added.
void describeForScreenReaders(TimeSeriesPlot &plot);

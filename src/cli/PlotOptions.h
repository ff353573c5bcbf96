#pragma once

#include <string_view>

struct PlotWish;

// The options of the command "plot". All throw UsageError for a value that they do not take.
void addPlotVariable(PlotWish &wish, std::string_view value);
void addPlotRight(PlotWish &wish, std::string_view value);
void setPlotOutput(PlotWish &wish, std::string_view value);
void setPlotSize(PlotWish &wish, std::string_view value);

// Throws UsageError for an option that is missing, and for a window of no time.
void requireWholePlot(const PlotWish &wish);

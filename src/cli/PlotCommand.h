#pragma once

#include "cli/Arguments.h"
#include "data/DataSet.h"

class StandardError;

// Draws the wanted variables of the loaded data into a picture file.
void drawPlot(const DataSet &data, const PlotWish &wish, StandardError &standardError);

#pragma once

#include <iosfwd>

class DataFragment;
class DataSet;

// Writes a fragment's source, header values, byte range and time range as labelled lines. The times have the
// stream's default format, so present-day ones print as 1.55935e+09; scripts know this coarse form, so it is
// kept.
void writeSummary(const DataFragment &fragment, std::ostream &stream);

// The same for every fragment of a data set, in its order.
void writeSummary(const DataSet &dataSet, std::ostream &stream);

#pragma once

#include "loading/QDataSet.h"
#include "support/LoadedSource.h"
#include "support/ScratchFolder.h"
#include "time/Timezone.h"

#include <functional>
#include <map>
#include <string>

// When the records of the plots' tests begin: 2020-09-13 12:26:40 UTC.
inline constexpr int plotStart = 1600000000;

// One instrument's records at even times.
struct PlotBlock {
    std::string instrument;
    std::string columns; // separated by tabs
    int count = 100;
    std::function<std::string(int)> values; // of a record by its number, separated by tabs
    std::string zone = "UTC";
    int first = plotStart; // UTC seconds
    int step = 1;          // s
};

inline std::string textOf(const PlotBlock &block) {
    std::string text = "Instrument:\t" + block.instrument + '\n';
    if (!block.zone.empty()) {
        text += "Timezone:\t" + block.zone + '\n';
    }
    text += "DATAH\tSECONDS\tNANOSECONDS\t" + block.columns + '\n';
    for (int i = 0; i < block.count; ++i) {
        text += "DATA\t" + std::to_string(block.first + i * block.step) + "\t0\t" + block.values(i) + '\n';
    }
    return text;
}

// Files of records, loaded into a data set.
class PlotData {
public:
    PlotData() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    void add(const PlotBlock &block) { addText(block.instrument, textOf(block)); }
    void addText(const std::string &name, const std::string &text) {
        paths_[name] = folder_.write(name + ".data", text);
        set.addLoaded(loadSource(paths_[name]));
    }
    void remove(const std::string &name) { set.RemoveFile(QString::fromStdString(paths_.at(name))); }
    const std::string &pathOf(const std::string &name) const { return paths_.at(name); }

    QDataSet set;

private:
    ScratchFolder folder_;
    std::map<std::string, std::string> paths_;
};

// A hundred records, one a second: X rises from 0 to 99, Y falls from 500 to 401.
inline PlotBlock shortBlock(const std::string &instrument = "GA") {
    return {instrument, "X\tY", 100,
            [](int i) { return std::to_string(i) + '\t' + std::to_string(500 - i); }};
}

// Three days, a record every ten seconds: its whole range is shown by averages of a minute. The highest and
// lowest of each minute lie 5 above and 0 below the hundreds.
inline PlotBlock longBlock(const std::string &instrument = "LONG") {
    PlotBlock block{instrument, "X", 3 * 8640, [](int i) { return std::to_string(i / 360 * 100 + i % 6); }};
    block.step = 10;
    return block;
}

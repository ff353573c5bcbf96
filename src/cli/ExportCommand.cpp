#include "cli/ExportCommand.h"

#include "cli/Arguments.h"
#include "cli/ProgressBar.h"
#include "cli/StandardError.h"
#include "data/DataSet.h"
#include "export/ExportJob.h"
#include "export/ExportProgress.h"

#include <iostream>
#include <limits>

namespace {

ProgressScale scaleFor(const DataSet &data, const std::string &instrument) {
    double earliest = std::numeric_limits<double>::max();
    double latest = std::numeric_limits<double>::lowest();
    data.timeRangeOfInstrument(instrument, earliest, latest);
    return {earliest, latest};
}

// An export shown as a bar. An interrupt ends the program, so nobody cancels.
class BarProgress : public ExportProgress {
public:
    BarProgress(StandardError &standardError, ProgressScale scale)
        : standardError_(standardError), scale_(scale), bar_(standardError, "Exporting", complete) {}

    void showFile(const std::string &) override {}
    void showTime(double utcSeconds) override { showPercent(scale_.percentAt(utcSeconds)); }
    bool isCancelled() override { return false; }
    void showEnd() override { showPercent(complete); }
    void remark(const std::string &line) override { standardError_.remark(line); }

private:
    static constexpr int complete = 100;

    // Clocks may step back; the bar does not.
    void showPercent(int percent) {
        if (percent > percent_) {
            bar_.advance(percent - percent_);
            percent_ = percent;
        }
    }

    StandardError &standardError_;
    ProgressScale scale_;
    ProgressBar bar_;
    int percent_ = 0;
};

} // namespace

void exportData(const DataSet &data, const std::vector<std::string> &inputs, const ExportWish &wish,
                StandardError &standardError) {
    ExportSource source = exportSourceOf(data, wish.instrument, wish.tag);
    if (source.fragments.empty()) {
        std::cerr << wish.instrument + ':' + wish.tag + ": No file holds this data\n";
        return;
    }
    source.loadedFiles = [files = std::make_shared<const std::set<std::string>>(
                              inputs.begin(), inputs.end())] { return files; };
    BarProgress progress(standardError, scaleFor(data, wish.instrument));
    runExport(source, wish.request, progress);
}

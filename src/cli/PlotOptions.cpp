#include "cli/PlotOptions.h"

#include "cli/OptionValues.h"
#include "plot/PlotFile.h"

namespace {

void addKey(std::vector<std::string> &keys, std::string_view option, std::string_view value) {
    if (value.empty()) {
        throw UsageError(std::string(option) + " takes a variable key, not an empty text");
    }
    keys.emplace_back(value);
}

} // namespace

void addPlotVariable(PlotWish &wish, std::string_view value) {
    addKey(wish.left, "--variable", value);
}

void addPlotRight(PlotWish &wish, std::string_view value) {
    addKey(wish.right, "--right", value);
}

void setPlotOutput(PlotWish &wish, std::string_view value) {
    const QString path = QString::fromUtf8(value.data(), static_cast<int>(value.size()));
    if (path.toStdString() != value) {
        throw UsageError("--output takes a path in UTF-8, not " + quoted(value));
    }
    if (!isPlotFileName(path)) {
        throw UsageError("--output takes a path that ends in .png, .svg or .pdf, not " + quoted(value));
    }
    wish.output = value;
}

void setPlotSize(PlotWish &wish, std::string_view value) {
    constexpr int smallest = 50;
    constexpr int largest = 20000;
    const auto cross = value.find('x');
    const auto sideFrom = [&](std::string_view text) {
        const int side = numberFrom<int>(text).value_or(0);
        if (cross == std::string_view::npos || side < smallest || side > largest) {
            throw UsageError("--size takes WIDTHxHEIGHT in pixels from 50 to 20000, not " + quoted(value));
        }
        return side;
    };
    wish.width = sideFrom(value.substr(0, cross));
    wish.height = sideFrom(value.substr(cross + 1));
}

void requireWholePlot(const PlotWish &wish) {
    if (wish.left.empty()) {
        throw UsageError("plot needs --variable KEY");
    }
    if (wish.output.empty()) {
        throw UsageError("plot needs --output PATH");
    }
    if (!(wish.from < wish.to)) {
        throw UsageError("--from must be earlier than --to");
    }
}

#pragma once

#include "data/Record.h"
#include "export/ExportRequest.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

enum class Command { none, summary, variables, messages, series, plot, exportData };

// What is wrong with the command line, for people; names the option or command in question.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The points wanted of a variable, in the terms of DataSet::series.
struct SeriesWish {
    std::string variable; // key
    std::string_view selector;
    double from = wholeRangeStart; // UTC seconds
    double to = wholeRangeEnd;
};

// The picture wanted of some variables.
struct PlotWish {
    std::vector<std::string> left; // variable keys, at least one, and those for the right axis
    std::vector<std::string> right;
    double from = wholeRangeStart; // UTC seconds
    double to = wholeRangeEnd;
    int width = 1200; // pixels
    int height = 600;
    std::string output; // path that ends in .png, .svg or .pdf
};

// The data to export, and how.
struct ExportWish {
    std::string instrument;
    std::string tag;
    std::optional<ExportFormat> format; // as given; set for a command that runs
    ExportRequest request;
};

// A command line, understood.
struct Arguments {
    enum class Action { run, showHelp, showVersion };

    Action action = Action::run;
    Command command = Command::none; // none only for the general help and the version
    std::optional<std::string> zoneDirectory;
    std::optional<unsigned> jobs; // at least 1
    bool quiet = false;
    SeriesWish series;
    PlotWish plot;
    ExportWish exporting;
    std::vector<std::string> files; // at least one for a command that runs
};

// Reads the arguments behind the program's name. Options may stand before and after files, "--" ends them.
// Throws UsageError.
Arguments parseArguments(const std::vector<std::string> &arguments);

#include "cli/Arguments.h"

#include "cli/ExportOptions.h"
#include "cli/OptionValues.h"
#include "cli/PlotOptions.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr std::array<std::pair<std::string_view, Command>, 6> commandNames{{
    {"summary", Command::summary},
    {"variables", Command::variables},
    {"messages", Command::messages},
    {"series", Command::series},
    {"plot", Command::plot},
    {"export", Command::exportData},
}};

constexpr std::array<std::pair<std::string_view, std::string_view>, 3> selectors{{
    {"average", ""},
    {"maximum", "max"},
    {"minimum", "min"},
}};

void setJobs(Arguments &arguments, std::string_view value) {
    arguments.jobs = numberFrom<unsigned>(value);
    if (arguments.jobs.value_or(0) == 0) {
        throw UsageError("--jobs takes a number of workers from 1 up, not " + quoted(value));
    }
}

void setVariable(Arguments &arguments, std::string_view value) {
    if (!arguments.series.variable.empty()) {
        throw UsageError("--variable may be given only once");
    }
    if (value.empty()) {
        throw UsageError("--variable takes a variable key, not an empty text");
    }
    arguments.series.variable = value;
}

void setStatistic(Arguments &arguments, std::string_view value) {
    const auto *const found = std::find_if(selectors.begin(), selectors.end(),
                                           [value](const auto &row) { return row.first == value; });
    if (found == selectors.end()) {
        throw UsageError("--statistic takes average, maximum or minimum, not " + quoted(value));
    }
    arguments.series.selector = found->second;
}

struct Option {
    std::string_view name;
    Command command; // none: an option of every command
    bool takesValue;
    void (*apply)(Arguments &arguments, std::string_view value);
};

constexpr std::array<Option, 18> options{{
    {"--zoneinfo", Command::none, true,
     [](Arguments &arguments, std::string_view value) { arguments.zoneDirectory = value; }},
    {"--jobs", Command::none, true, setJobs},
    {"--quiet", Command::none, false, [](Arguments &arguments, std::string_view) { arguments.quiet = true; }},
    {"--variable", Command::series, true, setVariable},
    {"--statistic", Command::series, true, setStatistic},
    {"--from", Command::series, true,
     [](Arguments &arguments, std::string_view value) { arguments.series.from = timeFrom("--from", value); }},
    {"--to", Command::series, true,
     [](Arguments &arguments, std::string_view value) { arguments.series.to = timeFrom("--to", value); }},
    {"--variable", Command::plot, true,
     [](Arguments &arguments, std::string_view value) { addPlotVariable(arguments.plot, value); }},
    {"--right", Command::plot, true,
     [](Arguments &arguments, std::string_view value) { addPlotRight(arguments.plot, value); }},
    {"--output", Command::plot, true,
     [](Arguments &arguments, std::string_view value) { setPlotOutput(arguments.plot, value); }},
    {"--size", Command::plot, true,
     [](Arguments &arguments, std::string_view value) { setPlotSize(arguments.plot, value); }},
    {"--from", Command::plot, true,
     [](Arguments &arguments, std::string_view value) { arguments.plot.from = timeFrom("--from", value); }},
    {"--to", Command::plot, true,
     [](Arguments &arguments, std::string_view value) { arguments.plot.to = timeFrom("--to", value); }},
    {"--data", Command::exportData, true,
     [](Arguments &arguments, std::string_view value) { setExportData(arguments.exporting, value); }},
    {"--format", Command::exportData, true,
     [](Arguments &arguments, std::string_view value) { setExportFormat(arguments.exporting, value); }},
    {"--output", Command::exportData, true,
     [](Arguments &arguments, std::string_view value) { setExportOutput(arguments.exporting, value); }},
    {"--time-columns", Command::exportData, true,
     [](Arguments &arguments, std::string_view value) { setExportTimeColumns(arguments.exporting, value); }},
    {"--split", Command::exportData, true,
     [](Arguments &arguments, std::string_view value) { setExportSplit(arguments.exporting, value); }},
}};

// Walks over the arguments once.
class Parser {
public:
    explicit Parser(const std::vector<std::string> &arguments)
        : at_(arguments.begin()), end_(arguments.end()) {}

    Arguments parse() {
        bool optionsEnded = false;
        while (at_ != end_ && result_.action == Arguments::Action::run) {
            const std::string &argument = *at_++;
            if (optionsEnded || argument.size() < 2 || argument.front() != '-') {
                takePositional(argument);
            } else if (argument == "--") {
                optionsEnded = true;
            } else {
                takeOption(argument);
            }
        }
        if (result_.action == Arguments::Action::run) {
            requireWhole();
        }
        return std::move(result_);
    }

private:
    void takePositional(const std::string &argument) {
        if (result_.command != Command::none) {
            result_.files.push_back(argument);
            return;
        }
        const auto *const found = std::find_if(commandNames.begin(), commandNames.end(),
                                               [&](const auto &row) { return row.first == argument; });
        if (found == commandNames.end()) {
            throw UsageError("there is no command " + quoted(argument));
        }
        result_.command = found->second;
    }

    // An option's value is the next argument, or what stands behind a "=".
    void takeOption(std::string_view argument) {
        const auto equals = argument.find('=');
        const std::string_view name = argument.substr(0, equals);
        if (argument == "--help") {
            result_.action = Arguments::Action::showHelp;
            return;
        }
        if (argument == "--version") {
            result_.action = Arguments::Action::showVersion;
            return;
        }
        const Option &option = find(name);
        if (!option.takesValue && equals != std::string_view::npos) {
            throw UsageError(std::string(name) + " takes no value");
        }
        option.apply(result_,
                     equals != std::string_view::npos ? argument.substr(equals + 1) : valueOf(option));
    }

    const Option &find(std::string_view name) const {
        const auto *const found = std::find_if(options.begin(), options.end(), [&](const Option &option) {
            return option.name == name &&
                   (option.command == Command::none || option.command == result_.command);
        });
        if (found == options.end()) {
            throw UsageError(result_.command == Command::none
                                 ? "there is no option " + quoted(name) + " before a command"
                                 : "there is no option " + quoted(name) + " for this command");
        }
        return *found;
    }

    std::string_view valueOf(const Option &option) {
        if (!option.takesValue) {
            return {};
        }
        if (at_ == end_) {
            throw UsageError(std::string(option.name) + " needs a value");
        }
        return *at_++;
    }

    void requireWhole() const {
        if (result_.command == Command::none) {
            throw UsageError("no command is given");
        }
        if (result_.command == Command::series && result_.series.variable.empty()) {
            throw UsageError("series needs --variable KEY");
        }
        if (result_.command == Command::plot) {
            requireWholePlot(result_.plot);
        }
        if (result_.command == Command::exportData) {
            requireWholeExport(result_.exporting);
        }
        if (result_.files.empty()) {
            throw UsageError("no FILE is given");
        }
    }

    std::vector<std::string>::const_iterator at_;
    std::vector<std::string>::const_iterator end_;
    Arguments result_;
};

} // namespace

Arguments parseArguments(const std::vector<std::string> &arguments) {
    return Parser(arguments).parse();
}

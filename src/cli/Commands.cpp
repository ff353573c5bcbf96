#include "cli/Commands.h"

#include "cli/FileArguments.h"
#include "cli/OrderedLoader.h"
#include "cli/Output.h"
#include "cli/PlotCommand.h"
#include "cli/ProgressBar.h"
#include "cli/StandardError.h"
#include "data/FragmentSummary.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iostream>
#include <sstream>
#include <thread>

namespace {

// As many as the viewer has at most; more gains nothing on an ordinary disk.
unsigned defaultJobs() {
    return std::clamp(std::thread::hardware_concurrency(), 1U, 10U);
}

std::vector<std::string> filesOf(const Arguments &arguments) {
    FileArguments expanded = expandFileArguments(arguments.files);
    for (const std::string &problem : expanded.problems) {
        std::cerr << problem << '\n';
    }
    return std::move(expanded.files);
}

// True when both names lead to one file.
bool isSameFile(const std::string &one, const std::string &other) {
    std::error_code error;
    return std::filesystem::equivalent(one, other, error);
}

bool isAmongInputs(const std::string &output, const Arguments &arguments) {
    const std::vector<std::string> inputs = expandFileArguments(arguments.files).files;
    return std::any_of(inputs.begin(), inputs.end(),
                       [&output](const std::string &input) { return isSameFile(input, output); });
}

std::int64_t bytesOf(const std::vector<std::string> &files) {
    std::int64_t bytes = 0;
    for (const std::string &file : files) {
        std::error_code error;
        const std::uintmax_t size = std::filesystem::file_size(file, error);
        bytes += error ? 0 : static_cast<std::int64_t>(size);
    }
    return bytes;
}

// Loads all files and hands them to `use` in the order given.
void loadEach(const Arguments &arguments, StandardError &standardError,
              const std::function<void(const LoadedFile &)> &use) {
    std::vector<std::string> files = filesOf(arguments);
    ProgressBar progress(standardError, "Loading", bytesOf(files));
    OrderedLoader loader(std::move(files), arguments.jobs.value_or(defaultJobs()), progress);
    while (const auto file = loader.next()) {
        if (!file->report.problem.isEmpty()) {
            std::cerr << file->name << ": " << file->report.problem.toStdString() << '\n';
        }
        use(*file);
    }
}

DataSet loadMerged(const Arguments &arguments, StandardError &standardError) {
    DataSet merged;
    loadEach(arguments, standardError, [&merged](const LoadedFile &file) { merged.merge(file.data); });
    return merged;
}

void printSummary(const DataSet &data, Output &output) {
    for (const auto &fragment : data.fragments()) {
        std::ostringstream block;
        writeSummary(*fragment, block);
        output.write(block.str());
    }
}

void printVariables(const DataSet &data, Output &output) {
    std::string line;
    for (const auto &[key, unit] : data.variableUnits()) {
        line = key;
        line.append("\t").append(unit).append("\n");
        output.write(line);
    }
}

bool hasErrors(const LoadedFile &file) {
    return file.data.checksumFailures() != 0 || !file.data.messageText().empty();
}

void printMessages(const Arguments &arguments, Output &output, StandardError &standardError) {
    loadEach(arguments, standardError, [&](const LoadedFile &file) {
        for (const QString &message : messagesOf(file.data, file.report)) {
            output.write(file.name + ": " + message.toStdString() + '\n');
        }
        if (hasErrors(file)) {
            std::cerr << file.name + ": Checksum or parse errors\n";
        }
    });
}

// The shortest decimal form that reads back to the same number; the sign of a not-a-number means nothing.
void appendNumber(std::string &text, double number) {
    std::array<char, 32> digits; // NOLINT(cppcoreguidelines-pro-type-member-init): to_chars fills it
    const double plain = std::isnan(number) ? std::fabs(number) : number;
    text.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), plain).ptr);
}

void printSeries(const DataSet &data, const SeriesWish &wish, Output &output) {
    if (!data.variableKeys().contains(wish.variable)) {
        std::cerr << wish.variable << ": No file holds this variable\n";
        return;
    }
    std::vector<double> times;
    std::vector<double> values;
    data.series(wish.variable, wish.selector, wish.from, wish.to, times, values);
    std::string line;
    for (std::size_t i = 0; i < times.size(); ++i) {
        line.clear();
        appendNumber(line, times[i]);
        line += '\t';
        appendNumber(line, values[i]);
        line += '\n';
        output.write(line);
    }
}

} // namespace

void runCommand(const Arguments &arguments, Output &output, StandardError &standardError) {
    switch (arguments.command) {
    case Command::none:
        break;
    case Command::summary:
        printSummary(loadMerged(arguments, standardError), output);
        break;
    case Command::variables:
        printVariables(loadMerged(arguments, standardError), output);
        break;
    case Command::messages:
        printMessages(arguments, output, standardError);
        break;
    case Command::series:
        printSeries(loadMerged(arguments, standardError), arguments.series, output);
        break;
    case Command::plot:
        if (isAmongInputs(arguments.plot.output, arguments)) {
            std::cerr << arguments.plot.output
                      << ": This is one of the files to be read; nothing is written\n";
            break;
        }
        drawPlot(loadMerged(arguments, standardError), arguments.plot, standardError);
        break;
    }
}

#include "cli/Commands.h"

#include "cli/ExportCommand.h"
#include "cli/FileArguments.h"
#include "cli/OrderedLoader.h"
#include "cli/Output.h"
#include "cli/PlotCommand.h"
#include "cli/ProgressBar.h"
#include "cli/StandardError.h"
#include "data/FragmentSummary.h"
#include "export/LoadedFileGuard.h"

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

std::vector<std::string> filesOf(const Arguments &arguments, StandardError &standardError) {
    FileArguments expanded = expandFileArguments(arguments.files);
    for (const std::string &remark : expanded.remarks) {
        standardError.remark(remark);
    }
    for (const std::string &problem : expanded.problems) {
        std::cerr << problem << '\n';
    }
    return std::move(expanded.files);
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
void loadEach(const Arguments &arguments, const std::vector<std::string> &files, StandardError &standardError,
              const std::function<void(const LoadedFile &)> &use) {
    ProgressBar progress(standardError, "Loading", bytesOf(files));
    OrderedLoader loader(files, arguments.jobs.value_or(defaultJobs()), progress);
    while (const auto file = loader.next()) {
        if (!file->report.problem.isEmpty()) {
            std::cerr << file->name << ": " << file->report.problem.toStdString() << '\n';
        }
        use(*file);
    }
}

DataSet loadMerged(const Arguments &arguments, const std::vector<std::string> &files,
                   StandardError &standardError) {
    DataSet merged;
    loadEach(arguments, files, standardError, [&merged](const LoadedFile &file) { merged.merge(file.data); });
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

void printMessages(const Arguments &arguments, const std::vector<std::string> &files, Output &output,
                   StandardError &standardError) {
    loadEach(arguments, files, standardError, [&](const LoadedFile &file) {
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

// An input is never replaced.
bool mayWriteTo(const std::string &path, const std::vector<std::string> &inputs) {
    auto names = std::make_shared<const std::set<std::string>>(inputs.begin(), inputs.end());
    LoadedFileGuard guard([&names] { return names; });
    const bool isInput = guard.isLoaded(path);
    if (isInput) {
        std::cerr << path << ": This is one of the files to be read; nothing is written\n";
    }
    return !isInput;
}

} // namespace

void runCommand(const Arguments &arguments, Output &output, StandardError &standardError) {
    const std::vector<std::string> files = filesOf(arguments, standardError);
    const auto merged = [&] { return loadMerged(arguments, files, standardError); };
    switch (arguments.command) {
    case Command::none:
        break;
    case Command::summary:
        printSummary(merged(), output);
        break;
    case Command::variables:
        printVariables(merged(), output);
        break;
    case Command::messages:
        printMessages(arguments, files, output, standardError);
        break;
    case Command::series:
        printSeries(merged(), arguments.series, output);
        break;
    case Command::plot:
        if (mayWriteTo(arguments.plot.output, files)) {
            drawPlot(merged(), arguments.plot, standardError);
        }
        break;
    case Command::exportData:
        exportData(merged(), files, arguments.exporting, standardError);
        break;
    }
}

// Any texts as names of export files, as choices of an export and as names in the headers of exports.

#include "FuzzCheck.h"
#include "FuzzInput.h"
#include "export/DiagnosticsWriter.h"
#include "export/ExportChoices.h"
#include "export/ExportNames.h"
#include "export/MemorySink.h"
#include "export/TextWriter.h"
#include "export/Tob1Writer.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::size_t countOf(std::string_view text, char c) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), c));
}

Record recordFrom(FuzzInput &input, std::size_t values) {
    Record record;
    record.seconds = static_cast<std::uint32_t>(input.number(4));
    record.nanoseconds = static_cast<std::uint32_t>(input.number(4));
    record.diagnosticWord = static_cast<std::uint32_t>(input.number(4));
    record.utcOffset = static_cast<std::int32_t>(input.number(4));
    record.year = static_cast<std::uint16_t>(input.number(2));
    for (std::uint8_t *const field :
         {&record.month, &record.day, &record.hour, &record.minute, &record.second}) {
        *field = input.byte();
    }
    record.values.assign(values, static_cast<double>(record.seconds) / 16);
    return record;
}

void checkNames(std::string_view name, std::string_view item, const Record &record) {
    const TargetParts parts = splitTarget(name);
    require(std::string(parts.stem).append(parts.extension) == name, "a target is the sum of its parts");
    require(parts.extension.empty() || parts.extension.rfind('.') == 0, "an extension has the last point");

    const std::string whole(name);
    for (const char *const extension : {".txt", ".tob1"}) {
        const std::string extended = withExtension(whole, extension);
        require(extended.ends_with(extension) && extended.starts_with(name), "an extension comes behind");
        require(withExtension(extended, extension) == extended, "and only once");
        require(withExtensionChanged(extended, extension, ".new").ends_with(".new"), "and can be changed");
        const std::string proposed = proposedName(item, name, extension);
        require(proposed.ends_with(extension), "a proposed name has its extension");
        const auto separator = proposed.find_last_of("/\\");
        require(proposed.find(':', separator == std::string::npos ? 0 : separator) == std::string::npos,
                "what is proposed holds no colon");
    }

    for (const SplitChoice &choice : splitChoices) {
        if (choice.period == 0) {
            continue;
        }
        const std::string piece = pieceName(name, record, choice.period);
        require(piece.starts_with(parts.stem) && piece.ends_with(parts.extension),
                "a piece is named after its target");
        const std::size_t added = piece.size() - name.size();
        require(added >= (choice.period < 86400 ? 16U : 11U) && added <= 22, "and its time");
        require(numberedName(piece, 1) == piece, "the first of a name has no number");
        require(numberedName(piece, 2) != numberedName(piece, 3), "the others have their own");
        const std::uint64_t end = pieceEnd(record.seconds, choice.period);
        const auto period = static_cast<std::uint64_t>(choice.period);
        require(end % period == 0 && end > record.seconds && end - record.seconds <= period,
                "a piece ends at the next multiple of its period");
    }
}

void checkChoices(std::string_view text) {
    const auto flags = timeColumnsFrom(text);
    require(!flags || *flags <= TimeColumns::all, "no other flags are made than there are");
    if (flags) {
        require(text.find_first_not_of("abcdefghijklmnopqrstuvwxyz,0123456789") == std::string_view::npos,
                "a choice is a number or a list of words");
        require(timeColumnsFrom(std::to_string(*flags)) == flags, "and can be given as a number");
    }
}

void checkTob1Name(std::string_view text) {
    const std::string name = tob1Name(text);
    require(name.size() <= 16, "a logger's name is short");
    require(name.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_") ==
                std::string::npos,
            "of letters, digits and underscores");
    require(name.empty() || name[0] < '0' || name[0] > '9', "and begins with no digit");
    require(tob1Name(name) == name, "and stays as it is");
}

// Two names more than values, each quoted when it holds a blank.
void checkTextHeader(const std::vector<std::string> &names, const Record &record, std::uint32_t columns) {
    MemoryOutput output;
    TextWriter writer(*output);
    writer.setColumns(names, columns);
    writer.write(record);
    const std::string bytes = output.bytes();
    std::string expected;
    std::vector<std::string> shown;
    const std::array<const char *, 5> timeNames{"SECONDS", "NANOSECONDS", "DATE", "TIME", "TIMESTAMP"};
    for (std::size_t i = 0; i < timeNames.size(); ++i) {
        if ((columns >> i & 1U) != 0) {
            shown.emplace_back(timeNames.at(i));
        }
    }
    shown.insert(shown.end(), names.begin(), names.end());
    shown.resize(record.values.size() + 2);
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const std::string quote = countOf(shown[i], ' ') > 0 ? "\"" : "";
        expected.append(quote).append(shown[i]).append(quote).append(i + 1 < shown.size() ? "\t" : "\n");
    }
    require(bytes.starts_with(expected), "the first line names the columns");
    const std::string_view line = std::string_view(bytes).substr(expected.size());
    require(countOf(line, '\n') == 1 && line.ends_with('\n'), "a record is a line");
    const std::size_t timeColumns = shown.size() < 2 ? 0 : countOf(line, '\t') + 1;
    require(timeColumns >= record.values.size(), "with a field for each value");
}

// Five lines of as many quoted entries as there are fields, then the records.
void checkTob1(const std::vector<std::string> &names, const Record &record) {
    MemoryOutput output;
    Tob1Writer writer(*output);
    writer.setEnvironment({"QA330", "QA330", "", "1.0", "QA330", "QA330", "DATA"});
    writer.setFieldNames(names);
    writer.setUnits(names);
    writer.setProcessing({});
    writer.write(record);
    writer.write(record);
    const std::string bytes = output.bytes();
    std::size_t at = 0;
    for (int line = 0; line < 5; ++line) {
        const std::size_t end = bytes.find("\r\n", at);
        require(end != std::string::npos, "a header has five lines");
        const std::size_t entries = line == 0 ? 8 : record.values.size() + 3;
        require(countOf(std::string_view(bytes).substr(at, end - at), '"') == 2 * entries,
                "of quoted entries, one for each field");
        at = end + 2;
    }
    require(bytes.size() - at == (record.values.size() + 3) * 2 * 4, "records follow without gaps");
}

void checkDiagnostics(const std::vector<std::string> &names, const Record &record) {
    MemoryOutput output;
    DiagnosticsWriter writer(*output, names);
    writer.write(record);
    writer.write(record);
    const std::string bytes = output.bytes();
    const std::size_t lines = countOf(bytes, '\n');
    require(bytes.ends_with("\r\n") && countOf(bytes, '\r') == lines, "lines end in CR LF");
    require(lines == 1 || lines == 2, "a state is told once");
    require(countOf(bytes, '\t') == 7 * lines, "in eight columns");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
    FuzzInput input(bytes, size);
    const std::uint32_t columns = input.byte() % (TimeColumns::all + 1);
    const std::size_t values = input.below(20);
    const Record record = recordFrom(input, values);
    const std::string_view name = input.line();
    const std::string_view item = input.line();
    checkNames(name, item, record);
    checkChoices(item);
    std::vector<std::string> names;
    while (!input.isUsedUp() && names.size() < 30) {
        names.emplace_back(input.line());
        checkChoices(names.back());
        checkTob1Name(names.back());
    }
    checkTextHeader(names, record, columns);
    checkTob1(names, record);
    checkDiagnostics(names, record);
    return 0;
}

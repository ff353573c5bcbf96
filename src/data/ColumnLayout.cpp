#include "data/ColumnLayout.h"

#include "data/UnitTable.h"

#include <algorithm>
#include <stdexcept>

namespace {

using Kind = FieldReader::Kind;

struct Keyword {
    std::string_view name;
    Kind kind;
};

// Columns of these exact names give no plain value; an empty name is a column to be skipped.
constexpr Keyword keywords[] = {
    {"SECONDS", Kind::seconds},
    {"NANOSECONDS", Kind::nanoseconds},
    {"DATE", Kind::date},
    {"TIME", Kind::timeOfDay},
    {"DIAG", Kind::diagnosticWord},
    {"CHK", Kind::checksum},
    {"FILENAME", Kind::skip},
    {"REMARK", Kind::skip},
    {"", Kind::skip},
};

Kind kindOf(std::string_view columnName) {
    for (const Keyword &keyword : keywords) {
        if (columnName == keyword.name) {
            return keyword.kind;
        }
    }
    return Kind::value;
}

void noteUnitInName(const std::string &columnName) {
    const auto open = columnName.find('(');
    if (open == std::string::npos) {
        return;
    }
    const auto close = columnName.find(')', open);
    setUnit(columnName, columnName.substr(open + 1, close == std::string::npos ? close : close - open - 1));
}

std::uint8_t byteSum(std::string_view text) {
    unsigned sum = 0;
    for (const char c : text) {
        sum += static_cast<unsigned char>(c);
    }
    return static_cast<std::uint8_t>(sum);
}

void addValue(ColumnLayout &layout, std::string name, std::string unit) {
    layout.valueNames.push_back(std::move(name));
    layout.valueUnits.push_back(std::move(unit));
}

std::size_t countValues(const std::vector<std::string> &columnNames, std::size_t flags) {
    std::size_t count = 0;
    for (const std::string &name : columnNames) {
        const Kind kind = kindOf(name);
        count += kind == Kind::value ? 1 : 0;
        count += kind == Kind::diagnosticWord ? 1 + flags : 0;
    }
    return count;
}

[[noreturn]] void refuse(std::size_t count, const char *what, std::size_t maximum) {
    std::string text = "The header line asks for ";
    text.append(std::to_string(count)).append(" ").append(what);
    text.append(", more than ").append(std::to_string(maximum)).append(": its records are left out");
    throw std::length_error(text);
}

} // namespace

ColumnLayout layOutColumns(std::string_view tag, const std::vector<std::string> &columnNames,
                           const std::vector<std::string> &diagnosticNames) {
    const bool hasWord = std::any_of(columnNames.begin(), columnNames.end(), [](const std::string &name) {
        return kindOf(name) == Kind::diagnosticWord;
    });
    if (hasWord && diagnosticNames.size() > maximumDiagnosticNames) {
        refuse(diagnosticNames.size(), "names of diagnostic bits", maximumDiagnosticNames);
    }
    const std::size_t valueCount = countValues(columnNames, diagnosticNames.size());
    if (valueCount > maximumValueColumns) {
        refuse(valueCount, "value columns", maximumValueColumns);
    }
    ensureSeeded();
    ColumnLayout layout;
    layout.readers.reserve(columnNames.size());
    for (const std::string &name : columnNames) {
        noteUnitInName(name);
        FieldReader reader{kindOf(name), static_cast<std::uint32_t>(layout.valueNames.size()), 0};
        if (reader.kind == Kind::value) {
            addValue(layout, name, unitOf(name));
        } else if (reader.kind == Kind::diagnosticWord) {
            reader.flagCount = static_cast<std::uint32_t>(diagnosticNames.size());
            addValue(layout, name, unitOf(name));
            for (const std::string &flag : diagnosticNames) {
                addValue(layout, std::string(name).append(":").append(flag), "BOOL");
            }
        } else if (reader.kind == Kind::checksum) {
            layout.checksumSeed = static_cast<std::uint8_t>(byteSum(tag) + '\t');
        }
        layout.readers.push_back(reader);
    }
    while (!layout.readers.empty() && layout.readers.back().kind == Kind::skip) {
        layout.readers.pop_back();
    }
    noteRuns(layout.readers);
    return layout;
}

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

// The unit that the name carries, else that of the table. One that is carried counts also when the table is
// full.
std::string noteUnit(const std::string &columnName) {
    const auto open = columnName.find('(');
    if (open == std::string::npos) {
        return unitOf(columnName);
    }
    const auto close = columnName.find(')', open);
    std::string unit = columnName.substr(open + 1, close == std::string::npos ? close : close - open - 1);
    setUnit(columnName, unit);
    return unit;
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

[[noreturn]] void refuse(std::size_t count, const char *what, std::size_t maximum) {
    std::string text = "The header line asks for ";
    text.append(std::to_string(count)).append(" ").append(what);
    text.append(", more than ").append(std::to_string(maximum)).append(": its records are left out");
    throw std::length_error(text);
}

} // namespace

ColumnDemand demandOf(const std::vector<std::string> &columnNames,
                      const std::vector<std::string> &diagnosticNames) {
    std::size_t words = 0;
    ColumnDemand demand;
    for (const std::string &name : columnNames) {
        const Kind kind = kindOf(name);
        words += kind == Kind::diagnosticWord ? 1 : 0;
        if (kind == Kind::value) {
            ++demand.values;
            demand.nameBytes += name.size();
        }
    }
    if (words > 0 && diagnosticNames.size() > maximumDiagnosticNames) {
        refuse(diagnosticNames.size(), "names of diagnostic bits", maximumDiagnosticNames);
    }
    for (const std::string &flag : diagnosticNames) {
        demand.nameBytes += words * flag.size();
    }
    demand.values += words * (1 + diagnosticNames.size());
    if (demand.values > maximumValueColumns) {
        refuse(demand.values, "value columns", maximumValueColumns);
    }
    return demand;
}

ColumnLayout layOutColumns(std::string_view tag, const std::vector<std::string> &columnNames,
                           const std::vector<std::string> &diagnosticNames) {
    demandOf(columnNames, diagnosticNames);
    ensureSeeded();
    ColumnLayout layout;
    layout.readers.reserve(columnNames.size());
    for (const std::string &name : columnNames) {
        FieldReader reader{kindOf(name), static_cast<std::uint32_t>(layout.valueNames.size()), 0};
        if (reader.kind == Kind::value) {
            addValue(layout, name, noteUnit(name));
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

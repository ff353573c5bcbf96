#pragma once

#include <string>
#include <string_view>

// The process-wide table of units by column name.
//
// It starts with the variables that the analysers write without a unit in the column name and grows with
// every column that carries one, up to 100,000 names. Any thread may call any of these.

// Fills an empty table with the analysers' own variables.
void ensureSeeded();

// Sets or replaces the unit of `columnName`.
void setUnit(const std::string &columnName, const std::string &unit);

// The unit of `columnName`, empty when it has none.
std::string unitOf(const std::string &columnName);

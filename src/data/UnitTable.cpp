#include "data/UnitTable.h"

#include "data/LockGuards.h"

#include <array>
#include <map>

namespace {

struct Row {
    const char *columnName;
    const char *unit;
};

constexpr std::array<Row, 25> analyserVariables{{
    {"MSEC", "msec"},         {"CH4D", "mmol/m^3"},   {"CH4", "umol/mol"},        {"TEMP", "C"},
    {"PRESSURE", "kPa"},      {"RSSI", "%"},          {"DROPRATE", "%"},          {"DIAG", "DIAG"},
    {"REFRSSI", "%"},         {"LCTSETPT", "C"},      {"LCTACTUAL", "C"},         {"BCTSETPT", "C"},
    {"BCTACTUAL", "C"},       {"CHASSISTEMP", "C"},   {"CHASSISTCCOLDTEMP", "C"}, {"OPTICSTEMP", "C"},
    {"OPTICSRH", "RH"},       {"SUPPLYVOLTAGE", "V"}, {"CALIBRATING", "BOOL"},    {"BOX", "BOOL"},
    {"SAMPLESIG", "%"},       {"HEATER", "BOOL"},     {"MOTORRPM", "rpm"},        {"MOTORDESIRED", "count"},
    {"MOTORACTUAL", "count"},
}};

// Far more names than all analysers use. It is never emptied: without an end, damaged files would fill it.
constexpr std::size_t mostNames = 100000;

std::map<std::string, std::string> unitTable;
QReadWriteLock unitTableLock;

} // namespace

void ensureSeeded() {
    {
        const ReadGuard guard(unitTableLock);
        if (!unitTable.empty()) {
            return;
        }
    }
    // Two loaders that start at once may both get here: the second writes the same rows again.
    const WriteGuard guard(unitTableLock);
    for (const Row &row : analyserVariables) {
        unitTable[row.columnName] = row.unit;
    }
}

void setUnit(const std::string &columnName, const std::string &unit) {
    const WriteGuard guard(unitTableLock);
    if (unitTable.size() < mostNames || unitTable.contains(columnName)) {
        unitTable[columnName] = unit;
    }
}

std::string unitOf(const std::string &columnName) {
    const ReadGuard guard(unitTableLock);
    const auto found = unitTable.find(columnName);
    return found == unitTable.end() ? std::string() : found->second;
}

#include "tools/Qa34xxColumns.h"

#include <array>

namespace {

using State = Qa34xxState;

constexpr double co2Mass = 44.0095;  // g/mol
constexpr double waterMass = 18.015; // g/mol

double co2Wet(const State &s) {
    return s.co2 * s.dryShare();
}
double h2oWet(const State &s) {
    return s.h2o * s.dryShare();
}
double co2Density(const State &s) {
    return co2Wet(s) * s.molarDensity / 1000;
} // mmol/m^3
double h2oDensity(const State &s) {
    return h2oWet(s) * s.molarDensity;
} // mmol/m^3
double co2Absorbed(const State &s) {
    return 0.00028 * co2Wet(s) / (1 + 0.0004 * co2Wet(s));
}
double h2oAbsorbed(const State &s) {
    return 0.0052 * h2oWet(s) / (1 + 0.012 * h2oWet(s));
}

constexpr std::array<Qa34xxColumn, 3> beforeDate{{
    {"Sequence Number", 0, [](const State &s) { return static_cast<double>(s.sequence); }},
    {"Diagnostic Value", 0, [](const State &s) { return static_cast<double>(s.diagnostics); }},
    {"Diagnostic Value 2", 0, [](const State &s) { return static_cast<double>(s.faults); }},
}};

constexpr std::array<Qa34xxColumn, 42> behindTime{{
    {"CO2 dry (umol/mol)", 3, [](const State &s) { return s.co2; }},
    {"H2O dry (mmol/mol)", 4, [](const State &s) { return s.h2o; }},
    {"CO2 (umol/mol)", 3, co2Wet},
    {"H2O (mmol/mol)", 4, h2oWet},
    {"CO2 (mmol/m^3)", 5, co2Density},
    {"H2O (mmol/m^3)", 3, h2oDensity},
    {"CO2 (mg/m^3)", 3, [](const State &s) { return co2Density(s) * co2Mass; }},
    {"H2O (g/m^3)", 5, [](const State &s) { return h2oDensity(s) * waterMass / 1000; }},
    {"CO2 Absorption", 6, co2Absorbed},
    {"H2O Absorption", 6, h2oAbsorbed},
    {"Dew Point (C)", 3, [](const State &s) { return s.air.dewPoint(); }},
    {"Temperature (C)", 3, [](const State &s) { return s.cellTemperature(); }},
    {"Inlet Temperature (C)", 3, [](const State &s) { return s.inlet; }},
    {"Outlet Temperature (C)", 3, [](const State &s) { return s.outlet; }},
    {"Housing Temperature (C)", 3, [](const State &s) { return s.housing; }},
    {"Total Pressure (kPa)", 4, [](const State &s) { return s.cellPressure; }},
    {"Air Pressure (kPa)", 4, [](const State &s) { return s.air.pressure; }},
    {"Head Pressure (kPa)", 4, [](const State &s) { return s.headPressure; }},
    {"Molar Density (mol/m^3)", 4, [](const State &s) { return s.molarDensity; }},
    {"CO2 Signal Strength", 2, [](const State &s) { return 100 * s.light; }},
    {"H2O Signal Strength", 2, [](const State &s) { return 98.4 * s.light; }},
    {"CO2 Sample (counts)", 0,
     [](const State &s) { return 41800 * s.light * (1 - co2Absorbed(s)) + 3 * s.detectorNoise; }},
    {"CO2 Reference (counts)", 0, [](const State &s) { return 43100 * s.light; }},
    {"H2O Sample (counts)", 0, [](const State &s) { return 39200 * s.light * (1 - h2oAbsorbed(s)); }},
    {"H2O Reference (counts)", 0, [](const State &s) { return 40600 * s.light; }},
    {"Flow (lpm)", 3, [](const State &s) { return s.flow; }},
    {"Pump Drive (%)", 2, [](const State &s) { return s.pumpDrive; }},
    {"Detector Cooler (V)", 3, [](const State &s) { return 1.62 + 0.011 * s.housing; }},
    {"Lamp Current (mA)", 2, [](const State &s) { return 187 + 0.05 * s.housing; }},
    {"Filter Wheel (rpm)", 0, [](const State &s) { return 9000 + 2 * s.detectorNoise; }},
    {"Supply Voltage (V)", 2, [](const State &s) { return s.supply; }},
    {"Clock Drift (us)", 0, [](const State &s) { return s.clockDrift; }},
    {"Aux 1 - U (m/s)", 3, [](const State &s) { return s.air.windU; }},
    {"Aux 2 - V (m/s)", 3, [](const State &s) { return s.air.windV; }},
    {"Aux 3 - W (m/s)", 3, [](const State &s) { return s.air.windW; }},
    {"Aux 4 - Sonic Temperature (C)", 3,
     [](const State &s) { return s.air.temperature + 0.14 * s.air.h2o + 0.02 * s.detectorNoise; }},
    {"Aux 5 - Relative Humidity (%)", 2, [](const State &s) { return s.air.relativeHumidity(); }},
    {"Aux 6 - Net Radiation (W/m^2)", 1, [](const State &s) { return s.netRadiation; }},
    {"Aux 7 - Soil Heat (W/m^2)", 2, [](const State &s) { return s.soilHeat; }},
    {"Aux 8 - Soil Temperature (C)", 2, [](const State &s) { return s.soil; }},
    {"Aux 9 - Rain (mm)", 2, [](const State &s) { return s.rain; }},
    {"Aux 10 - CH4 (umol/mol)", 4, [](const State &s) { return s.air.ch4; }},
}};

} // namespace

std::span<const Qa34xxColumn> qa34xxColumnsBeforeDate() {
    return beforeDate;
}
std::span<const Qa34xxColumn> qa34xxColumnsBehindTime() {
    return behindTime;
}

#pragma once

#include "tools/AirSignals.h"
#include "tools/CalibrationSchedule.h"
#include "tools/ColouredNoise.h"
#include "tools/OpticalPath.h"
#include "tools/Random.h"

#include <cstdint>

// What an analyser of the QA-34xx family knows at one moment. Its cell draws air through a heated tube, so
// the gas is warmer and at a lower pressure than the air outside.
struct Qa34xxState {
    Air air;
    std::int64_t sequence = 0;
    std::int64_t diagnostics = 0;
    std::int64_t faults = 0;
    double co2 = 0;           // umol/mol, dry, as measured
    double h2o = 0;           // mmol/mol, dry, as measured
    double molarDensity = 0;  // mol/m^3, in the cell
    double light = 0;         // 0 to 1
    double inlet = 0;         // degrees C
    double outlet = 0;        // degrees C
    double housing = 0;       // degrees C
    double headPressure = 0;  // kPa, below the air's
    double cellPressure = 0;  // kPa
    double flow = 0;          // lpm
    double pumpDrive = 0;     // %
    double supply = 0;        // V
    double soil = 0;          // degrees C
    double netRadiation = 0;  // W/m^2
    double soilHeat = 0;      // W/m^2
    double rain = 0;          // mm since the start
    double clockDrift = 0;    // us
    double detectorNoise = 0; // deviation 1, of this sample

    double cellTemperature() const { return 0.2 * inlet + 0.8 * outlet; }
    // Share of dry air in the moist air.
    double dryShare() const { return 1000 / (1000 + h2o); }
};

// The analyser: what it measures of the air, and its own state. Deterministic for (seed, rate, first second).
class Qa34xxInstrument {
public:
    Qa34xxInstrument(std::uint64_t seed, unsigned rate);

    // Once for each second, before its samples.
    void advanceSecond(std::int64_t utc, const Air &air);
    const Qa34xxState &nextSample(const Air &air);

    // False while it takes no samples.
    bool isSampling() const { return !gasFlows_; }

private:
    Random noise_;
    Random housekeeping_;
    ColouredNoise flowNoise_;
    ColouredNoise tubeNoise_;
    OpticalPath path_;
    CalibrationSchedule calibrations_;
    bool gasFlows_ = false;
    bool wasBlocked_ = false;
    double clouds_ = 1;
    Qa34xxState state_;
};

#pragma once

#include "tools/ColouredNoise.h"
#include "tools/Random.h"

// The air at one moment.
struct Air {
    double temperature = 0; // degrees C
    double pressure = 0;    // kPa
    double co2 = 0;         // umol/mol, dry air
    double h2o = 0;         // mmol/mol, dry air
    double ch4 = 0;         // umol/mol
    double windU = 0;       // m/s, along the mean wind
    double windV = 0;       // m/s, across
    double windW = 0;       // m/s, upwards
    double sunlight = 0;    // 0 at night to 1 at noon

    // Amount of air in mol/m^3.
    double molarDensity() const;
    // Pressure of the water vapour in kPa.
    double vapourPressure() const;
    double dewPoint() const;         // degrees C
    double relativeHumidity() const; // %
};

// Air above a field: a daily cycle, weather that changes over hours, turbulence that is strong by day and
// weak at night, gases that gather near the ground at night, and plumes of methane that drift by.
//
// Deterministic for (seed, rate). Call advanceSecond once for each second, then nextSample `rate` times.
class AirSignals {
public:
    AirSignals(std::uint64_t seed, unsigned rate);

    // `day`: local time as a fraction of the day, 0 at midnight.
    void advanceSecond(double day);
    const Air &nextSample();

private:
    void startPlume();

    double step_; // seconds from sample to sample
    Random plumes_;
    ColouredNoise u_;
    ColouredNoise v_;
    ColouredNoise w_;
    ColouredNoise shared_; // eddies that carry heat, water and gases together
    ColouredNoise ownTemperature_;
    ColouredNoise ownCo2_;
    ColouredNoise ownH2o_;
    ColouredNoise ownCh4_;
    ColouredNoise slowWind_;
    ColouredNoise slowTemperature_;
    ColouredNoise slowPressure_;
    ColouredNoise slowGas_;
    ColouredNoise slowMoisture_;

    Air mean_; // of the present second
    double strength_ = 0;
    double plumeSource_ = 0;
    double plumeFade_ = 0;
    double plume_ = 0;
    Air air_;
};

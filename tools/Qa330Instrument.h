#pragma once

#include "tools/AirSignals.h"
#include "tools/CalibrationSchedule.h"
#include "tools/OpticalPath.h"
#include "tools/Qa330Diagnostics.h"
#include "tools/Random.h"
#include "tools/Thermostat.h"

#include <cstdint>

// What one DATA record of the QA-330 says.
struct Qa330Reading {
    double ch4Density = 0;  // mmol/m^3
    double ch4 = 0;         // umol/mol
    double temperature = 0; // degrees C
    double pressure = 0;    // kPa
    double rssi = 0;        // %
    double dropRate = 0;    // %
    std::uint32_t diagnostics = 0;
};

// What one DATASTAT record says beyond the diagnostic word; temperatures in degrees C.
struct Qa330Status {
    double referenceRssi = 0; // %
    double laserSetpoint = 12.5;
    double laserActual = 12.5;
    double blockSetpoint = 35;
    double blockActual = 35;
    double chassis = 0;
    double coldJunction = 0;
    double optics = 0;
    double opticsHumidity = 0; // RH
    double supply = 0;         // V
    double sampleSignal = 0;   // %
    double motorSpeed = 0;     // rpm
    double motorDesired = 0;   // counts
    double motorActual = 0;    // counts
};

// A QA-330 in the field: its optics get dirty or blocked, it washes and spins its mirrors clean, heats them,
// and calibrates itself once an hour. Deterministic for (seed, rate, first second).
class Qa330Instrument {
public:
    Qa330Instrument(std::uint64_t seed, unsigned rate);

    // Once for each second, before its samples.
    void advanceSecond(std::int64_t utc, const Air &air);
    const Qa330Reading &nextSample(const Air &air);

    // False while it takes no samples.
    bool isSampling() const { return !gasFlows_; }
    std::uint32_t diagnostics() const { return reading_.diagnostics; }
    const Qa330Status &status() const { return status_; }
    // Milliseconds since it was switched on.
    std::int64_t uptime() const { return uptimeSeconds_ * 1000; }

private:
    void careForMirrors();
    void updateStatus(const Air &air);

    Random noise_;
    Random housekeeping_;
    OpticalPath path_;
    CalibrationSchedule calibrations_;
    Thermostat topHeater_;
    Thermostat bottomHeater_;
    std::int64_t uptimeSeconds_ = -1;
    bool wasBlocked_ = false;
    int washSeconds_ = 0; // left of the present wash: pump first, motor all the time
    bool gasFlows_ = false;
    std::uint32_t secondBits_ = 0; // bits that change at full seconds
    Qa330Status status_;
    Qa330Reading reading_;
};

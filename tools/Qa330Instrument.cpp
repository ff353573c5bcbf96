#include "tools/Qa330Instrument.h"

#include <algorithm>

namespace {

constexpr double cleanRssi = 78;     // %, with clean mirrors
constexpr double noSignalRssi = 10;  // %
constexpr double dropsBelow = 22;    // %: below it, scans are lost
constexpr double motorCounts = 3600; // asked for while the mirror spins
constexpr int washPumpSeconds = 8;
constexpr int washTotalSeconds = 25;
constexpr int settlingSeconds = 30;

std::uint32_t bitIf(bool condition, Qa330Bit bit) {
    return condition ? bit : 0U;
}

} // namespace

Qa330Instrument::Qa330Instrument(std::uint64_t seed, unsigned rate)
    : noise_(seed, 400),
      housekeeping_(seed, 401),
      path_(seed, rate),
      calibrations_(seed, 3600),
      topHeater_(1.2, 2.6, 0.06, 0.006),
      bottomHeater_(1.0, 3.1, 0.05, 0.005) {
    reading_.rssi = cleanRssi; // until the first sample
}

void Qa330Instrument::advanceSecond(std::int64_t utc, const Air &air) {
    ++uptimeSeconds_;
    path_.advanceSecond();
    careForMirrors();
    const double loss = 1 + 0.25 * air.windU;
    topHeater_.advanceSecond(loss);
    bottomHeater_.advanceSecond(loss);
    gasFlows_ = calibrations_.isGasFlowing(utc);
    updateStatus(air);

    secondBits_ = bitIf(uptimeSeconds_ < settlingSeconds, SettlingBit) |
                  bitIf(path_.isBlocked() && housekeeping_.happens(0.2), RefUnlockedBit) |
                  bitIf(status_.laserActual > status_.laserSetpoint + 0.03, LaserDriftBit) |
                  bitIf(status_.blockActual > status_.blockSetpoint + 0.07, BlockDriftBit) |
                  bitIf(washSeconds_ > 0, MotorSpinningBit) |
                  bitIf(washSeconds_ > washTotalSeconds - washPumpSeconds, PumpOnBit) |
                  bitIf(topHeater_.isOn(), TopHeaterOnBit) | bitIf(bottomHeater_.isOn(), BottomHeaterOnBit) |
                  bitIf(calibrations_.isCalibrating(utc), CalibratingBit) |
                  bitIf(status_.supply < 11.8, LowSupplyBit) | BoxConnectedBit;
    reading_.diagnostics = secondBits_ | bitIf(reading_.rssi < noSignalRssi, NoSignalBit);
}

void Qa330Instrument::careForMirrors() {
    const bool cleared = wasBlocked_ && !path_.isBlocked();
    wasBlocked_ = path_.isBlocked();
    if (washSeconds_ > 0) {
        --washSeconds_;
        if (washSeconds_ == 0) {
            path_.clean();
        }
    } else if (cleared || path_.dirt() > 0.45) {
        washSeconds_ = washTotalSeconds;
    }
}

void Qa330Instrument::updateStatus(const Air &air) {
    Qa330Status &s = status_;
    const bool spins = washSeconds_ > 0;
    s.referenceRssi = 68 + 0.15 * housekeeping_.normal();
    s.laserActual = s.laserSetpoint + 0.009 * housekeeping_.normal();
    s.blockActual = s.blockSetpoint + 0.02 * housekeeping_.normal();
    s.chassis = air.temperature + 6.5 + 3 * air.sunlight + 0.04 * housekeeping_.normal();
    s.coldJunction = s.chassis - 0.4 + 0.03 * housekeeping_.normal();
    s.optics = s.chassis + 1.1 + 0.03 * housekeeping_.normal();
    s.opticsHumidity = 6.5 + 0.05 * housekeeping_.normal();
    s.supply = 12.6 + 0.9 * air.sunlight - (spins ? 0.5 : 0) - (topHeater_.isOn() ? 0.15 : 0) +
               0.02 * housekeeping_.normal();
    s.sampleSignal = std::max(0.0, reading_.rssi * 0.97 + 0.2 * housekeeping_.normal());
    s.motorDesired = spins ? motorCounts : 0;
    s.motorActual += (s.motorDesired - s.motorActual) * 0.6;
    s.motorSpeed = s.motorActual / 3;
}

const Qa330Reading &Qa330Instrument::nextSample(const Air &air) {
    Qa330Reading &r = reading_;
    r.rssi = cleanRssi * path_.nextSample();
    r.dropRate = r.rssi < dropsBelow ? std::min(100.0, 100 * (dropsBelow - r.rssi) / (dropsBelow - 3)) : 0;
    // The less light, the more noise; now and then a sample goes wrong altogether.
    const double noise = 0.0035 * noise_.normal() * (70 / std::max(r.rssi, 1.0));
    const double spike = noise_.happens(1.0 / 8000) ? noise_.uniform(-0.6, 1.8) : 0;
    r.ch4 = std::max(0.0, air.ch4 + noise + spike);
    r.temperature = air.temperature + 0.015 * noise_.normal();
    r.pressure = air.pressure + 0.002 * noise_.normal();
    r.ch4Density = r.ch4 * air.molarDensity() / 1000;
    r.diagnostics = secondBits_ | bitIf(r.rssi < noSignalRssi, NoSignalBit);
    return r;
}

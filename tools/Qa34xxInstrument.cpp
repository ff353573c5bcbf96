#include "tools/Qa34xxInstrument.h"

#include <algorithm>

namespace {

constexpr std::int64_t calibrationPeriod = 14400; // seconds
constexpr double gasConstant = 8.314462618;
constexpr double flowSetpoint = 14.5; // lpm

// Bits of the diagnostic value: the low four are the light in steps of 6.25 %, the others tell what is well.
constexpr std::int64_t allWell = 0x1ff0;
constexpr std::int64_t flowWell = 0x0100;
constexpr std::int64_t lightWell = 0x0200;

} // namespace

Qa34xxInstrument::Qa34xxInstrument(std::uint64_t seed, unsigned rate)
    : noise_(seed, 500),
      housekeeping_(seed, 501),
      flowNoise_({seed, 502}, 2, 1, 1.0 / rate),
      tubeNoise_({seed, 503}, 3, 20, 1),
      path_(seed, rate),
      calibrations_(seed, calibrationPeriod) {}

void Qa34xxInstrument::advanceSecond(std::int64_t utc, const Air &air) {
    Qa34xxState &s = state_;
    path_.advanceSecond();
    if (wasBlocked_ && !path_.isBlocked()) {
        path_.clean(); // rinsed by what blocked it
    }
    wasBlocked_ = path_.isBlocked();
    gasFlows_ = calibrations_.isGasFlowing(utc);

    const double tube = tubeNoise_.next();
    s.inlet = air.temperature + 2.4 + 0.15 * tube;
    s.outlet = air.temperature + 5.1 + 1.2 * air.sunlight + 0.1 * tube;
    s.housing = air.temperature + 9 + 2 * air.sunlight + 0.02 * housekeeping_.normal();
    s.supply = 24.1 + 0.6 * air.sunlight + 0.03 * housekeeping_.normal();
    s.soil = 15.5 + (air.temperature - 13.5) * 0.15 + 0.01 * housekeeping_.normal();
    clouds_ += (1 - clouds_) * 0.01 + 0.03 * housekeeping_.normal();
    clouds_ = std::clamp(clouds_, 0.35, 1.1);
    s.netRadiation = 560 * air.sunlight * clouds_ - 55 + 1.5 * housekeeping_.normal();
    s.soilHeat = 0.11 * s.netRadiation + 0.4 * housekeeping_.normal();
    s.rain += path_.isRaining() ? 0.0011 : 0;
    s.clockDrift = 40 * tube + 5 * housekeeping_.normal();
}

const Qa34xxState &Qa34xxInstrument::nextSample(const Air &air) {
    Qa34xxState &s = state_;
    s.air = air;
    ++s.sequence;
    s.light = path_.nextSample();
    s.flow = flowSetpoint + 0.06 * flowNoise_.next();
    s.pumpDrive = 41 + 12 * (flowSetpoint - s.flow) + 0.1 * noise_.normal();
    s.headPressure = -(3.1 + 0.9 * (s.flow - flowSetpoint)) + 0.006 * noise_.normal();
    s.cellPressure = air.pressure + s.headPressure;
    s.detectorNoise = noise_.normal();
    const double loudness = 0.9 / std::max(s.light, 0.02);
    s.co2 = air.co2 + 0.11 * loudness * s.detectorNoise;
    s.h2o = std::max(0.0, air.h2o + 0.006 * loudness * noise_.normal());
    s.molarDensity = s.cellPressure * 1000 / (gasConstant * (s.cellTemperature() + 273.15));

    const std::int64_t lightSteps = std::clamp<std::int64_t>(static_cast<std::int64_t>(s.light * 16), 0, 15);
    const bool darkened = s.light < 0.3;
    const bool flowIsOff = s.flow < flowSetpoint - 0.15 || s.flow > flowSetpoint + 0.15;
    s.diagnostics = (allWell | lightSteps) & ~(darkened ? lightWell : 0) & ~(flowIsOff ? flowWell : 0);
    s.faults = (darkened ? 1 : 0) + (flowIsOff ? 2 : 0);
    return s;
}

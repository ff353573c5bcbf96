#include "tools/AirSignals.h"

#include "tools/Waves.h"

#include <algorithm>
#include <cmath>

namespace {

// The streams of random numbers, one for each signal.
enum Stream : std::uint64_t {
    PlumeStream = 100,
    UStream,
    VStream,
    WStream,
    SharedStream,
    TemperatureStream,
    Co2Stream,
    H2oStream,
    Ch4Stream,
    SlowWindStream,
    SlowTemperatureStream,
    SlowPressureStream,
    SlowGasStream,
    SlowMoistureStream,
};

constexpr double quickestEddy = 0.125;  // seconds
constexpr double quickestWeather = 600; // seconds
constexpr double gasConstant = 8.314462618;

// Saturation of water vapour as an eighth power of a line in the temperature (Bosen's form): its inverse
// needs square roots only.
constexpr double saturationScale = 3.38639; // kPa
constexpr double saturationSlope = 0.00738;
constexpr double saturationOffset = 0.8072;

double saturationPressure(double celsius) {
    double power = saturationSlope * celsius + saturationOffset;
    power *= power;
    power *= power;
    return saturationScale * power * power;
}

} // namespace

double Air::molarDensity() const {
    return pressure * 1000 / (gasConstant * (temperature + 273.15));
}

double Air::vapourPressure() const {
    return pressure * h2o / (1000 + h2o);
}

double Air::dewPoint() const {
    const double eighthRoot = std::sqrt(std::sqrt(std::sqrt(vapourPressure() / saturationScale)));
    return (eighthRoot - saturationOffset) / saturationSlope;
}

double Air::relativeHumidity() const {
    return std::min(100.0, 100 * vapourPressure() / saturationPressure(temperature));
}

AirSignals::AirSignals(std::uint64_t seed, unsigned rate)
    : step_(1.0 / rate),
      plumes_(seed, PlumeStream),
      u_({seed, UStream}, 4, quickestEddy, step_),
      v_({seed, VStream}, 4, quickestEddy, step_),
      w_({seed, WStream}, 3, quickestEddy, step_),
      shared_({seed, SharedStream}, 4, quickestEddy, step_),
      ownTemperature_({seed, TemperatureStream}, 3, quickestEddy, step_),
      ownCo2_({seed, Co2Stream}, 3, quickestEddy, step_),
      ownH2o_({seed, H2oStream}, 3, quickestEddy, step_),
      ownCh4_({seed, Ch4Stream}, 3, quickestEddy, step_),
      slowWind_({seed, SlowWindStream}, 3, quickestWeather, 1),
      slowTemperature_({seed, SlowTemperatureStream}, 3, quickestWeather, 1),
      slowPressure_({seed, SlowPressureStream}, 3, 4 * quickestWeather, 1),
      slowGas_({seed, SlowGasStream}, 3, quickestWeather, 1),
      slowMoisture_({seed, SlowMoistureStream}, 3, quickestWeather, 1) {}

void AirSignals::advanceSecond(double day) {
    const double warmth = sineOfTurns(day - 0.375); // warmest at 15:00
    const double sun = std::max(0.0, sineOfTurns(day - 0.25));
    const double stillness = std::max(0.0, -sineOfTurns(day - 0.29));

    mean_.sunlight = sun;
    mean_.temperature = 13.5 + 7.5 * warmth + 1.2 * slowTemperature_.next();
    mean_.pressure = 84.6 + 0.08 * sineOfTurns(2 * day - 0.1) + 0.4 * slowPressure_.next();
    const double gas = slowGas_.next();
    mean_.co2 = 408 - 9 * sun + 38 * stillness * (1 + 0.3 * gas) + 1.5 * gas;
    mean_.ch4 = 1.925 + 0.11 * stillness * (1 + 0.4 * gas) + 0.006 * gas;
    mean_.h2o = 9.0 + 1.4 * sun - 0.8 * stillness + 0.9 * slowMoisture_.next();
    mean_.windU = std::max(0.4, 1.6 + 2.2 * sun + 0.9 * slowWind_.next());

    // What the wind stirs: the mean wind, and by day the warm ground.
    strength_ = 0.08 * mean_.windU + 0.45 * sun;
    if (plumes_.happens(sun > 0.2 ? 1.0 / 2500 : 1.0 / 900)) {
        startPlume();
    }
}

void AirSignals::startPlume() {
    const double size = plumes_.uniform();
    plumeSource_ += 0.15 + 2.6 * size * size * size;
    plumeFade_ = plumes_.uniform(4, 25);
}

const Air &AirSignals::nextSample() {
    const double sun = mean_.sunlight;
    const double upwards = w_.next();
    const double shared = 0.45 * upwards + 0.89 * shared_.next();

    if (plumeSource_ > 0) {
        plume_ += (plumeSource_ - plume_) * std::min(1.0, step_ / 1.5);
        plumeSource_ -= plumeSource_ * std::min(1.0, step_ / plumeFade_);
        if (plumeSource_ < 1e-6) {
            plumeSource_ = 0;
            plume_ = 0;
        }
    }

    air_ = mean_;
    air_.windW = 1.1 * strength_ * upwards;
    air_.windU += 2.2 * strength_ * u_.next();
    air_.windV = 1.9 * strength_ * v_.next();
    // Rising air is warm, moist and poor in CO2 by day; at night the eddies are weak and the other way round.
    air_.temperature += (0.55 * sun - 0.06) * shared + 0.05 * ownTemperature_.next();
    air_.co2 += (1.0 - 4.0 * sun) * shared + 0.3 * ownCo2_.next();
    air_.h2o += (0.05 + 0.45 * sun) * shared + 0.04 * ownH2o_.next();
    air_.ch4 +=
        (0.010 - 0.007 * sun) * shared + 0.003 * ownCh4_.next() + plume_ * std::max(0.0, 1 + 0.5 * shared);
    return air_;
}

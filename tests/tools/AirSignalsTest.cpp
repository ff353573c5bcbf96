#include "tools/AirSignals.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

constexpr unsigned rate = 2;
constexpr int secondsInADay = 86400;

std::vector<Air> daysOfAir(std::uint64_t seed, int days) {
    AirSignals signals(seed, rate);
    std::vector<Air> air;
    for (int second = 0; second < days * secondsInADay; ++second) {
        signals.advanceSecond(second % secondsInADay / double(secondsInADay));
        for (unsigned i = 0; i < rate; ++i) {
            air.push_back(signals.nextSample());
        }
    }
    return air;
}

struct Statistics {
    double mean = 0;
    double deviation = 0;
    double correlation = 0; // of neighbours
};

// Of the samples between two hours of the first day.
template <typename Value>
Statistics statistics(const std::vector<Air> &air, Value value, double fromHour = 0, double toHour = 24) {
    const auto at = [](double hour) { return static_cast<std::size_t>(hour * 3600 * rate); };
    const double count = static_cast<double>(at(toHour) - at(fromHour));
    Statistics result;
    for (std::size_t i = at(fromHour); i < at(toHour); ++i) {
        result.mean += value(air[i]) / count;
    }
    double neighbours = 0;
    for (std::size_t i = at(fromHour); i < at(toHour); ++i) {
        const double difference = value(air[i]) - result.mean;
        result.deviation += difference * difference / count;
        if (i + 1 < at(toHour)) {
            neighbours += difference * (value(air[i + 1]) - result.mean) / count;
        }
    }
    result.correlation = neighbours / result.deviation;
    result.deviation = std::sqrt(result.deviation);
    return result;
}

double temperature(const Air &air) {
    return air.temperature;
}
double upwards(const Air &air) {
    return air.windW;
}
double methane(const Air &air) {
    return air.ch4;
}
double carbonDioxide(const Air &air) {
    return air.co2;
}

} // namespace

TEST(AirSignals, AfternoonIsWarmerThanTheEndOfTheNight) {
    const std::vector<Air> air = daysOfAir(1, 1);
    EXPECT_GT(statistics(air, temperature, 14, 16).mean, statistics(air, temperature, 3, 5).mean + 8);
}

TEST(AirSignals, TurbulenceIsStrongerAtNoonThanAtNight) {
    const std::vector<Air> air = daysOfAir(1, 1);
    EXPECT_GT(statistics(air, upwards, 11, 13).deviation, 2 * statistics(air, upwards, 1, 3).deviation);
    EXPECT_NEAR(statistics(air, upwards).mean, 0, 0.05);
}

TEST(AirSignals, NeighbouringSamplesAreRelated) {
    const std::vector<Air> air = daysOfAir(1, 1);
    EXPECT_GT(statistics(air, upwards, 12, 13).correlation, 0.5);
    EXPECT_GT(statistics(air, temperature, 12, 13).correlation, 0.9);
}

TEST(AirSignals, GasesGatherAtNight) {
    const std::vector<Air> air = daysOfAir(1, 1);
    EXPECT_GT(statistics(air, carbonDioxide, 0, 4).mean, statistics(air, carbonDioxide, 11, 15).mean + 15);
    EXPECT_GT(statistics(air, methane, 0, 4).mean, statistics(air, methane, 11, 15).mean + 0.03);
}

TEST(AirSignals, PlumesOfMethaneDriftBy) {
    const std::vector<Air> air = daysOfAir(1, 1);
    EXPECT_TRUE(std::any_of(air.begin(), air.end(), [](const Air &sample) { return sample.ch4 > 2.8; }));
}

TEST(AirSignals, StaysWithinWhatAirCanBe) {
    for (const std::uint64_t seed : {1U, 2U, 3U}) {
        for (const Air &air : daysOfAir(seed, 4)) {
            ASSERT_GT(air.temperature, -10);
            ASSERT_LT(air.temperature, 40);
            ASSERT_GT(air.pressure, 81);
            ASSERT_LT(air.pressure, 88);
            ASSERT_GT(air.co2, 350);
            ASSERT_LT(air.co2, 560);
            ASSERT_GT(air.h2o, 1);
            ASSERT_GT(air.ch4, 1.7);
            ASSERT_LE(air.dewPoint(), air.temperature + 5);
            ASSERT_LE(air.relativeHumidity(), 100);
        }
    }
}

TEST(Air, DewPointOfSaturatedAirIsItsTemperature) {
    Air air;
    air.temperature = 15;
    air.pressure = 85;
    const double saturated = 1.705; // kPa at 15 degrees C
    air.h2o = 1000 * saturated / (air.pressure - saturated);
    EXPECT_NEAR(air.dewPoint(), 15, 0.2);
    EXPECT_NEAR(air.relativeHumidity(), 100, 1.5);
}

TEST(Air, MolarDensityFollowsTheGasLaw) {
    Air air;
    air.temperature = 0;
    air.pressure = 101.325;
    EXPECT_NEAR(air.molarDensity(), 44.615, 0.001); // 1 / 22.414 litres
}

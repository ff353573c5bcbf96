#include "plot/TimeScaleEngine.h"

#include "plot/AxisTimes.h"
#include "plot/TimeTicks.h"

#include <qwt_transform.h>

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <vector>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double largest = std::numeric_limits<double>::max();

double at(int year, unsigned month, unsigned day, int hour = 0, int minute = 0, int second = 0) {
    return static_cast<double>(utc(year, month, day, hour, minute, second));
}

struct Scale {
    double x1;
    double x2;
    double step;
    friend bool operator==(const Scale &, const Scale &) = default;
    friend void PrintTo(const Scale &scale, std::ostream *out) {
        *out << std::to_string(scale.x1) << " " << std::to_string(scale.x2) << " " << scale.step;
    }
};

Scale scaled(const TimeScaleEngine &engine, double x1, double x2, int maxSteps = 8) {
    double step = 0;
    engine.autoScale(maxSteps, x1, x2, step);
    return {x1, x2, step};
}

QList<double> majors(const QwtScaleDiv &division) {
    return division.ticks(QwtScaleDiv::MajorTick);
}

bool isInverted(const QwtScaleDiv &division) {
    return division.lowerBound() > division.upperBound();
}

class AxisInUtc : public testing::Test {
protected:
    TimeScaleEngine engine_{zoneNamed("UTC")};
};

using AutoScale = AxisInUtc;
using DivideScale = AxisInUtc;

} // namespace

TEST_F(AutoScale, WidensTheIntervalToItsStep) {
    EXPECT_EQ(scaled(engine_, at(2021, 3, 4, 13, 5, 7), at(2021, 3, 4, 13, 44, 10)),
              (Scale{at(2021, 3, 4, 13, 5), at(2021, 3, 4, 13, 45), 300}));
}

TEST_F(AutoScale, AcceptsTheEndsInEitherOrder) {
    EXPECT_EQ(scaled(engine_, at(2021, 3, 4, 13, 44, 10), at(2021, 3, 4, 13, 5, 7)),
              (Scale{at(2021, 3, 4, 13, 5), at(2021, 3, 4, 13, 45), 300}));
}

TEST_F(AutoScale, TakesTheStepForItsBudgetAndTheWidthBeforeItIsAligned) {
    EXPECT_EQ(scaled(engine_, 30, 30 + 8 * 60, 8).step, 60);
    EXPECT_EQ(scaled(engine_, 30, 31 + 8 * 60, 8).step, 300);
    EXPECT_EQ(scaled(engine_, 30, 30 + 8 * 60, 1).step, 900);
    EXPECT_EQ(scaled(engine_, 30, 30 + 8 * 60, 0).step, 31536000);
}

TEST_F(AutoScale, AddsTheMargins) {
    engine_.setMargins(600, 1200);
    EXPECT_EQ(scaled(engine_, at(2021, 3, 4, 13, 5, 7), at(2021, 3, 4, 13, 14, 10)),
              (Scale{at(2021, 3, 4, 12, 55), at(2021, 3, 4, 13, 35), 300}));
}

TEST_F(AutoScale, KeepsTheIntervalWhenFloating) {
    engine_.setAttribute(QwtScaleEngine::Floating);
    EXPECT_EQ(scaled(engine_, 1000.5, 2000.25), (Scale{1000.5, 2000.25, 300}));
}

TEST_F(AutoScale, IsSymmetricAroundTheReference) {
    engine_.setAttribute(QwtScaleEngine::Symmetric);
    engine_.setReference(3600);
    EXPECT_EQ(scaled(engine_, 3000, 5400), (Scale{1800, 5400, 900}));
}

TEST_F(AutoScale, ContainsTheReferenceWhenAsked) {
    engine_.setReference(0);
    EXPECT_EQ(scaled(engine_, 3600, 5400).x1, 3600);
    engine_.setAttribute(QwtScaleEngine::IncludeReference);
    EXPECT_EQ(scaled(engine_, 3600, 5400), (Scale{0, 5400, 900}));
}

TEST_F(AutoScale, SwapsTheEndsAndNegatesTheStepWhenInverted) {
    engine_.setAttribute(QwtScaleEngine::Inverted);
    EXPECT_EQ(scaled(engine_, at(2021, 3, 4, 13, 5, 7), at(2021, 3, 4, 13, 44, 10)),
              (Scale{at(2021, 3, 4, 13, 45), at(2021, 3, 4, 13, 5), -300}));
}

TEST_F(AutoScale, WidensAPointAsOtherAxesDo) {
    // By half of its value to both sides.
    engine_.setAttribute(QwtScaleEngine::Floating);
    EXPECT_EQ(scaled(engine_, 1e9, 1e9), (Scale{0.5e9, 1.5e9, 31536000}));
    EXPECT_EQ(scaled(engine_, 0, 0), (Scale{-0.5, 0.5, 1}));
}

TEST_F(AutoScale, KeepsAnIntervalThatAlignmentWouldLeaveWithoutWidth) {
    // The end on a whole minute is rounded down onto the start.
    EXPECT_EQ(scaled(engine_, 310, 420, 1), (Scale{310, 420, 300}));
}

TEST_F(AutoScale, LeavesWhatIsNoTimeAsItIs) {
    EXPECT_EQ(scaled(engine_, -infinity, infinity), (Scale{-infinity, infinity, 31536000}));
    EXPECT_EQ(scaled(engine_, -1e300, 1e300), (Scale{-1e300, 1e300, 31536000}));
    const Scale none = scaled(engine_, noNumber, 5);
    EXPECT_TRUE(std::isnan(none.x1));
    EXPECT_EQ(none.x2, 5);
}

TEST_F(DivideScale, OfNothingIsEmpty) {
    for (const auto &[x1, x2] : std::vector<std::pair<double, double>>{
             {5, 5}, {0, 0}, {noNumber, 5}, {5, noNumber}, {noNumber, noNumber}, {infinity, infinity}}) {
        const QwtScaleDiv division = engine_.divideScale(x1, x2, 8, 5);
        EXPECT_TRUE(division.isEmpty());
        for (int type = 0; type < QwtScaleDiv::NTickTypes; ++type) {
            EXPECT_TRUE(division.ticks(type).empty());
        }
    }
}

TEST_F(DivideScale, ChoosesTheStepOfTheTable) {
    const QwtScaleDiv division = engine_.divideScale(at(2021, 3, 4, 13, 4), at(2021, 3, 4, 13, 21, 30), 8, 5);
    EXPECT_EQ(majors(division), (QList<double>{at(2021, 3, 4, 13, 5), at(2021, 3, 4, 13, 10),
                                               at(2021, 3, 4, 13, 15), at(2021, 3, 4, 13, 20)}));
    EXPECT_EQ(division.lowerBound(), at(2021, 3, 4, 13, 4));
    EXPECT_EQ(division.upperBound(), at(2021, 3, 4, 13, 21, 30));
}

TEST_F(DivideScale, AllowsAtLeastTwoSteps) {
    for (const int budget : {-5, 0, 1, 2}) {
        EXPECT_EQ(majors(engine_.divideScale(30, 150, budget, 5)), (QList<double>{60, 120})) << budget;
    }
}

TEST_F(DivideScale, TakesAGivenStepWhateverItsSign) {
    for (const double step : {60.0, -60.0}) {
        EXPECT_EQ(majors(engine_.divideScale(0.5, 200, 1, 5, step)), (QList<double>{60, 120, 180})) << step;
    }
    EXPECT_EQ(majors(engine_.divideScale(0.5, 700, 8, 5, 61)), (QList<double>{300, 600}));
}

TEST_F(DivideScale, StripsTicksOutsideTheInterval) {
    const QwtScaleDiv division = engine_.divideScale(100, 220, 8, 5, 60);
    EXPECT_EQ(majors(division), (QList<double>{120, 180}));
    EXPECT_EQ(division.ticks(QwtScaleDiv::MinorTick), (QList<double>{105, 135, 165, 195}));
    EXPECT_EQ(division.ticks(QwtScaleDiv::MediumTick), (QList<double>{150, 210}));
}

TEST_F(DivideScale, LeavesOutAMajorTickOnTheAlignedEnd) {
    EXPECT_EQ(majors(engine_.divideScale(0, 180, 8, 5, 60)), (QList<double>{0, 60, 120}));
}

TEST_F(DivideScale, HasSmallTicksOnlyWhenAskedFor) {
    for (const int budget : {0, -1}) {
        const QwtScaleDiv division = engine_.divideScale(0, 200, 8, budget, 60);
        EXPECT_TRUE(division.ticks(QwtScaleDiv::MinorTick).empty());
        EXPECT_TRUE(division.ticks(QwtScaleDiv::MediumTick).empty());
        EXPECT_FALSE(majors(division).empty());
    }
    EXPECT_FALSE(engine_.divideScale(0, 200, 8, 1, 60).ticks(QwtScaleDiv::MinorTick).empty());
}

TEST_F(DivideScale, OfAnInvertedIntervalIsInverted) {
    const QwtScaleDiv division = engine_.divideScale(200, 0, 8, 5, -60);
    EXPECT_TRUE(isInverted(division));
    EXPECT_EQ(division.lowerBound(), 200);
    EXPECT_EQ(majors(division), (QList<double>{180, 120, 60, 0}));
}

TEST_F(DivideScale, OfAFractionOfASecondHasItsQuarters) {
    const double second = at(2021, 3, 4, 13, 5, 7);
    const QwtScaleDiv division = engine_.divideScale(second + 0.1, second + 0.6, 8, 5);
    EXPECT_TRUE(majors(division).empty());
    EXPECT_EQ(division.ticks(QwtScaleDiv::MinorTick), QList<double>{second + 0.25});
    EXPECT_EQ(division.ticks(QwtScaleDiv::MediumTick), QList<double>{second + 0.5});
}

TEST_F(DivideScale, OfFourteenDayStepsHasASingleMediumTickBetween) {
    const QwtScaleDiv division = engine_.divideScale(at(2021, 3, 14), at(2021, 4, 20), 8, 5, 1205600);
    EXPECT_EQ(majors(division), (QList<double>{at(2021, 3, 14), at(2021, 3, 28), at(2021, 4, 11)}));
    EXPECT_TRUE(division.ticks(QwtScaleDiv::MinorTick).empty());
    EXPECT_EQ(division.ticks(QwtScaleDiv::MediumTick).first(), at(2021, 3, 14) + 602800);
}

TEST_F(DivideScale, TakesTheSameStepThatAutoScaleChose) {
    double x1 = at(2021, 3, 4, 13, 5, 7);
    double x2 = at(2021, 8, 4, 13, 5, 7);
    double step = 0;
    engine_.autoScale(8, x1, x2, step);
    EXPECT_EQ(x1, at(2021, 3, 1));
    EXPECT_EQ(x2, at(2021, 9, 1));
    EXPECT_EQ(majors(engine_.divideScale(x1, x2, 8, 5, step)),
              (QList<double>{at(2021, 3, 1), at(2021, 4, 1), at(2021, 5, 1), at(2021, 6, 1), at(2021, 7, 1),
                             at(2021, 8, 1)}));
}

TEST_F(DivideScale, WithAStepOfASecondOverYearsStaysWithinItsBounds) {
    const QwtScaleDiv division = engine_.divideScale(at(2000, 1, 1), at(2020, 1, 1), 8, 5, 1);
    EXPECT_EQ(majors(division).size(), maxTicks);
    EXPECT_EQ(division.ticks(QwtScaleDiv::MinorTick).size(), maxTicks);
    EXPECT_EQ(division.ticks(QwtScaleDiv::MediumTick).size(), maxTicks);
}

TEST_F(DivideScale, EndsForEveryIntervalWithBoundedTicksInside) {
    const double ends[] = {noNumber,
                           -infinity,
                           infinity,
                           -largest,
                           largest,
                           -1e300,
                           1e300,
                           -1e18,
                           1e18,
                           -9.1e15,
                           9e15,
                           -1e12,
                           1e12,
                           -86400,
                           -1.5,
                           -0.0,
                           0,
                           5e-324,
                           1e-9,
                           1,
                           1.6e9,
                           1.6e9 + 0.001,
                           1.6e9 + 0.5,
                           1.6e9 + 1.6e8,
                           4294967295.0,
                           4294967296.0,
                           1e10};
    const double steps[] = {0,       1,       -1,       1e-300, 0.25,     86400,   1205600,
                            2592000, 7776000, 31536000, 1e300,  infinity, noNumber};
    TimeScaleEngine eastern(zoneNamed("America/New_York"));
    for (const double x1 : ends) {
        for (const double x2 : ends) {
            for (const double step : steps) {
                const QwtScaleDiv division = eastern.divideScale(x1, x2, 8, 5, step);
                const double width = std::abs(division.range());
                for (int type = 0; type < QwtScaleDiv::NTickTypes; ++type) {
                    const QList<double> ticks = division.ticks(type);
                    ASSERT_LE(ticks.size(), maxTicks) << x1 << " " << x2 << " " << step;
                    for (const double tick : ticks) {
                        ASSERT_GE(tick, std::min(x1, x2) - 1e-6 * width);
                        ASSERT_LE(tick, std::max(x1, x2) + 1e-6 * width);
                    }
                }
            }
        }
    }
}

TEST_F(AutoScale, EndsForEveryInterval) {
    const double ends[] = {noNumber, -infinity, infinity, -largest, 1e18,
                           -1e12,    -1.5,      0,        1.6e9,    4294967296.0};
    for (const int attributes : {0, 1, 2, 4, 8, 15}) {
        TimeScaleEngine engine(zoneNamed("America/New_York"));
        engine.setAttributes(QwtScaleEngine::Attributes(attributes));
        for (const double x1 : ends) {
            for (const double x2 : ends) {
                for (const int budget : {std::numeric_limits<int>::min(), 8, 1000000}) {
                    const Scale scale = scaled(engine, x1, x2, budget);
                    EXPECT_EQ(scale.step < 0, (attributes & QwtScaleEngine::Inverted) != 0);
                    const QwtScaleDiv division = engine.divideScale(scale.x1, scale.x2, 8, 5, scale.step);
                    ASSERT_LE(majors(division).size(), maxTicks);
                }
            }
        }
    }
}

TEST(TimeScaleEngine, IsLinearInSeconds) {
    const TimeScaleEngine engine(zoneNamed("UTC"));
    const std::unique_ptr<QwtTransform> transform(engine.transformation());
    ASSERT_NE(dynamic_cast<QwtNullTransform *>(transform.get()), nullptr);
    EXPECT_EQ(transform->transform(1.6e9), 1.6e9);
}

TEST(TimeScaleEngine, HasAZoneOfItsOwn) {
    auto zone = std::make_unique<Timezone>(zoneNamed("Asia/Kathmandu"));
    const TimeScaleEngine engine(*zone);
    zone.reset();
    EXPECT_EQ(scaled(engine, at(2021, 3, 4, 4, 35), at(2021, 3, 4, 9, 15)),
              (Scale{at(2021, 3, 4, 4, 15), at(2021, 3, 4, 9, 15), 3600}));
}

TEST(TimeScaleEngine, TicksAcrossADaylightSavingChangeStayOnLocalMidnightOrTheFirstOfTheMonth) {
    const TimeScaleEngine engine(zoneNamed("America/New_York"));
    EXPECT_EQ(
        majors(engine.divideScale(at(2021, 3, 12, 12), at(2021, 3, 17), 8, 5)),
        (QList<double>{at(2021, 3, 13, 5), at(2021, 3, 14, 5), at(2021, 3, 15, 4), at(2021, 3, 16, 4)}));
    EXPECT_EQ(
        majors(engine.divideScale(at(2021, 11, 5, 12), at(2021, 11, 10), 8, 5)),
        (QList<double>{at(2021, 11, 6, 4), at(2021, 11, 7, 4), at(2021, 11, 8, 5), at(2021, 11, 9, 5)}));
    EXPECT_EQ(majors(engine.divideScale(at(2021, 1, 15), at(2021, 6, 15), 8, 5)),
              (QList<double>{at(2021, 2, 1, 5), at(2021, 3, 1, 5), at(2021, 4, 1, 4), at(2021, 5, 1, 4),
                             at(2021, 6, 1, 4)}));
    EXPECT_EQ(majors(engine.divideScale(at(2015, 7, 1), at(2018, 7, 1), 4, 5)),
              (QList<double>{at(2016, 1, 1, 5), at(2017, 1, 1, 5), at(2018, 1, 1, 5)}));
}

#pragma once

#include "plot/TimeSteps.h"
#include "time/Timezone.h"

#include <qwt_interval.h>
#include <qwt_scale_div.h>
#include <qwt_scale_engine.h>

// Ticks of an axis in UTC seconds on round local times of a zone, from quarters of a second to years.
//
// Ends in short time with bounded lists for whatever numbers it is given. Belongs to one thread: conversions
// write the caches of its zone.
class TimeScaleEngine : public QwtScaleEngine {
public:
    explicit TimeScaleEngine(const Timezone &zone);

    void autoScale(int maxSteps, double &x1, double &x2, double &stepSize) const override;
    // A `stepSize` other than 0 stands for the finest step that is no shorter.
    QwtScaleDiv divideScale(double x1, double x2, int maxMajorSteps, int maxMinorSteps,
                            double stepSize = 0.0) const override;

private:
    QwtInterval aligned(const QwtInterval &interval, const TimeStep &step) const;

    mutable Timezone zone_;
};

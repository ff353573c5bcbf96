#include "plot/TimeScaleEngine.h"

#include "plot/TimeTicks.h"

#include <qwt_transform.h>

#include <algorithm>
#include <utility>

TimeScaleEngine::TimeScaleEngine(const Timezone &zone) : zone_(zone.fresh()) {
    setTransformation(new QwtNullTransform);
}

void TimeScaleEngine::autoScale(int maxSteps, double &x1, double &x2, double &stepSize) const {
    QwtInterval interval = QwtInterval(x1, x2).normalized();
    interval.setMinValue(interval.minValue() - lowerMargin());
    interval.setMaxValue(interval.maxValue() + upperMargin());
    if (testAttribute(Symmetric)) {
        interval = interval.symmetrize(reference());
    }
    if (testAttribute(IncludeReference)) {
        interval = interval.extend(reference());
    }
    if (interval.isValid() && interval.width() == 0) {
        interval = buildInterval(interval.minValue());
    }
    const TimeStep &step = timeStepForWidth(interval.width(), maxSteps);
    if (!testAttribute(Floating)) {
        interval = aligned(interval, step);
    }
    stepSize = step.seconds;
    x1 = interval.minValue();
    x2 = interval.maxValue();
    if (testAttribute(Inverted)) {
        std::swap(x1, x2);
        stepSize = -stepSize;
    }
}

QwtScaleDiv TimeScaleEngine::divideScale(double x1, double x2, int maxMajorSteps, int maxMinorSteps,
                                         double stepSize) const {
    const QwtInterval interval = QwtInterval(x1, x2).normalized();
    if (!(interval.width() > 0)) {
        return QwtScaleDiv();
    }
    const TimeStep &step = stepSize == 0 ? timeStepForWidth(interval.width(), std::max(maxMajorSteps, 2))
                                         : timeStepForSeconds(stepSize);
    QList<double> ticks[QwtScaleDiv::NTickTypes];
    if (const auto span = alignTimes(interval.minValue(), interval.maxValue(), step, zone_)) {
        const QList<double> major = majorTicks(*span, step, zone_);
        if (maxMinorSteps > 0) {
            const SmallTicks small = smallTicks(major, step.seconds, step.minorSeconds);
            ticks[QwtScaleDiv::MinorTick] = strip(small.minor, interval);
            ticks[QwtScaleDiv::MediumTick] = strip(small.medium, interval);
        }
        ticks[QwtScaleDiv::MajorTick] = strip(major, interval);
    }
    const QwtScaleDiv division(interval, ticks);
    return x1 > x2 ? division.inverted() : division;
}

// An interval that would be left without width, or lies beyond any calendar, stays as it is.
QwtInterval TimeScaleEngine::aligned(const QwtInterval &interval, const TimeStep &step) const {
    const auto span = alignTimes(interval.minValue(), interval.maxValue(), step, zone_);
    if (!span || span->first >= span->last) {
        return interval;
    }
    return {static_cast<double>(span->first), static_cast<double>(span->last)};
}

#pragma once

#include "plot/LabelSequence.h"
#include "time/Timezone.h"

#include <qwt_scale_draw.h>
#include <qwt_text.h>

// Draws an axis in UTC seconds with labels in the local time of a zone: the time of day and, where it is new,
// the date.
//
// A label depends on those asked for before; Qwt asks once for each tick of a new scale division. Belongs to
// the interface thread.
class TimeScaleDraw : public QwtScaleDraw {
public:
    explicit TimeScaleDraw(const Timezone &zone);

    QwtText label(double utcSeconds) const override;
    // The time of day alone (at midnight the date), whatever was asked for before.
    virtual QwtText timeLabel(double utcSeconds) const;

private:
    mutable Timezone zone_;
    mutable LabelSequence sequence_;
};

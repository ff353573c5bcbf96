#include "plot/TimeScaleDraw.h"

#include "plot/TimeAlignment.h"
#include "plot/TimeLabels.h"

namespace {

QwtText plainText(const std::string &text) {
    return QwtText(QString::fromUtf8(text.data(), static_cast<int>(text.size())));
}

} // namespace

TimeScaleDraw::TimeScaleDraw(const Timezone &zone) : zone_(zone.fresh()) {}

QwtText TimeScaleDraw::label(double utcSeconds) const {
    const std::int64_t time = wholeSeconds(utcSeconds);
    return plainText(timeLabelText(time, sequence_.referenceFor(time), zone_));
}

QwtText TimeScaleDraw::timeLabel(double utcSeconds) const {
    return plainText(timeOfDayLabelText(wholeSeconds(utcSeconds), zone_));
}

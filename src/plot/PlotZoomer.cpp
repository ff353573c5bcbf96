#include "plot/PlotZoomer.h"

#include <QSignalBlocker>
#include <qwt_plot.h>

#include <algorithm>
#include <cmath>

namespace {

QStack<QRectF> stackOf(std::initializer_list<QRectF> rects) {
    QStack<QRectF> stack;
    for (const QRectF &rect : rects) {
        stack.push(rect);
    }
    return stack;
}

} // namespace

PlotZoomer::PlotZoomer(QWidget *canvas, const Timezone &zone)
    : QwtPlotZoomer(canvas, true), timezone_(zone.fresh()) {
    setTrackerMode(AlwaysOn);
}

void PlotZoomer::restart(const QRectF &base) {
    const QSignalBlocker blocker(this);
    setZoomStack(stackOf({base}), 0);
    rescale();
}

void PlotZoomer::restart(const QRectF &base, const QRectF &shown) {
    const QSignalBlocker blocker(this);
    setZoomStack(stackOf({base, shown}), 1);
    rescale();
}

void PlotZoomer::rescale() {
    const QRectF rect = zoomRect();
    plot()->setAxisScale(xAxis(), rect.left(), rect.right());
    plot()->setAxisScale(yAxis(), rect.top(), rect.bottom());
    plot()->updateAxes();
}

// Deep enough to tell two records apart in a year of them, shallow enough for doubles.
QSizeF PlotZoomer::minZoomSize() const {
    constexpr double narrowest = 0.01; // s
    constexpr double flattest = 1e-9;  // of the base
    return {narrowest, zoomStack().front().height() * flattest};
}

QwtText PlotZoomer::trackerTextF(const QPointF &at) const {
    QwtText text(timeText(at.x()) + QStringLiteral("   ") + valueText(at.y()), QwtText::PlainText);
    text.setColor(Qt::black);
    text.setBackgroundBrush(QColor(255, 255, 255, 200));
    return text;
}

// The text's size is measured a little short where fonts are scaled: its last digit needs some room.
QRect PlotZoomer::trackerRect(const QFont &font) const {
    constexpr int room = 4;
    QRect rect = QwtPlotZoomer::trackerRect(font);
    if (!rect.isValid()) {
        return rect;
    }
    rect.adjust(-room, 0, room, 0);
    const QRect canvasRect = canvas()->rect();
    rect.moveRight(std::min(rect.right(), canvasRect.right()));
    rect.moveLeft(std::max(rect.left(), canvasRect.left()));
    return rect;
}

QString PlotZoomer::timeText(double utcSeconds) const {
    constexpr double showsHundredths = 600; // s
    constexpr int tmYearBase = 1900;
    const double seconds = std::floor(utcSeconds);
    std::tm local{};
    timezone_.localTime(static_cast<std::int64_t>(seconds), &local);
    const auto twoDigits = [](int number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    QString text = QString::number(local.tm_year + tmYearBase) + QLatin1Char('-') +
                   twoDigits(local.tm_mon + 1) + QLatin1Char('-') + twoDigits(local.tm_mday) +
                   QLatin1Char(' ') + twoDigits(local.tm_hour) + QLatin1Char(':') + twoDigits(local.tm_min) +
                   QLatin1Char(':') + twoDigits(local.tm_sec);
    if (zoomRect().width() < showsHundredths) {
        text += QLatin1Char('.') + twoDigits(static_cast<int>((utcSeconds - seconds) * 100));
    }
    return text;
}

// With the digits that tell one pixel from the next.
QString PlotZoomer::valueText(double value) const {
    const double pixel = zoomRect().height() / std::max(1, canvas()->height());
    const double needed = std::ceil(std::log10(std::abs(value) / pixel)) + 1;
    constexpr double fewest = 6;
    constexpr double most = 15;
    const double digits = std::isfinite(needed) ? std::clamp(needed, fewest, most) : fewest;
    return QString::number(value, 'g', static_cast<int>(digits));
}

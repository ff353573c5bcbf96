#include "plot/PlotZoomer.h"

#include <QKeyEvent>
#include <QMouseEvent>
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
    // Qwt's own keys move the mouse's pointer, which not every desktop allows, one pixel at a time.
    for (const KeyPatternCode code : {KeySelect1, KeyLeft, KeyRight, KeyUp, KeyDown}) {
        setKeyPattern(code, Qt::Key_unknown);
    }
    plot()->installEventFilter(this);
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

// The canvas leaves its keys to the plot.
bool PlotZoomer::eventFilter(QObject *watched, QEvent *event) {
    return (watched == plot() && event->type() == QEvent::KeyPress &&
            takeKey(*static_cast<QKeyEvent *>(event))) ||
           QwtPlotZoomer::eventFilter(watched, event);
}

bool PlotZoomer::takeKey(const QKeyEvent &key) {
    if (isActive() && mark_ == Mark::none) {
        return false; // the mouse draws a rectangle
    }
    const bool isReturn = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    if (isReturn && mark_ != Mark::none) {
        if (!key.isAutoRepeat()) {
            fixMark();
        }
        return true;
    }
    const std::optional<double> moved = markMovedBy(key);
    if (moved) {
        const QRectF view = zoomRect();
        markedTime_ = std::clamp(*moved, view.left(), view.right());
        mark_ = mark_ == Mark::none ? Mark::oneEnd : mark_;
        showMark();
    }
    return moved.has_value();
}

// Where the key puts the mark; an arrow key that finds none puts it in the middle.
std::optional<double> PlotZoomer::markMovedBy(const QKeyEvent &key) const {
    constexpr double smallSteps = 100; // in a view
    constexpr double largeSteps = 10;
    const Qt::KeyboardModifiers modifiers = key.modifiers() & ~Qt::KeypadModifier;
    if ((modifiers & ~Qt::ControlModifier) != 0) {
        return std::nullopt;
    }
    const QRectF view = zoomRect();
    const double step = view.width() / (modifiers == Qt::NoModifier ? smallSteps : largeSteps);
    switch (key.key()) {
    case Qt::Key_Left:
        return mark_ == Mark::none ? view.center().x() : markedTime_ - step;
    case Qt::Key_Right:
        return mark_ == Mark::none ? view.center().x() : markedTime_ + step;
    case Qt::Key_Home:
        return view.left();
    case Qt::Key_End:
        return view.right();
    default:
        return std::nullopt;
    }
}

// As a rectangle of the whole height, which is a line as long as one end is not fixed.
void PlotZoomer::showMark() {
    const Mark mark = mark_;
    reset();
    const QRect area = pickArea().boundingRect().toRect();
    const auto columnOf = [this](double time) { return qRound(plot()->transform(xAxis(), time)); };
    const int marked = std::clamp(columnOf(markedTime_), area.left(), area.right());
    const int fixed = mark == Mark::otherEnd ? columnOf(fixedTime_) : marked;
    QMouseEvent hover(QEvent::MouseMove, QPoint(marked, area.center().y()), Qt::NoButton, Qt::NoButton,
                      Qt::NoModifier);
    QwtPlotZoomer::widgetMouseMoveEvent(&hover); // the time stands there
    begin();
    if (isActive()) { // else the view is as short as a view can be
        mark_ = mark;
        append({fixed, area.top()});
        append({marked, area.bottom()});
    }
}

void PlotZoomer::fixMark() {
    if (mark_ == Mark::oneEnd) {
        fixedTime_ = markedTime_;
        mark_ = Mark::otherEnd;
        showMark();
        return;
    }
    const QRectF view = zoomRect();
    const auto [from, to] = std::minmax({fixedTime_, markedTime_});
    if (to - from >= minZoomSize().width()) {
        reset();
        zoom(QRectF(from, view.top(), to - from, view.height()));
    }
}

void PlotZoomer::reset() {
    const bool wasMarked = mark_ != Mark::none;
    mark_ = Mark::none;
    QwtPlotZoomer::reset();
    if (wasMarked) {
        QEvent leave(QEvent::Leave);
        widgetLeaveEvent(&leave); // no time stands where no mouse is
    }
}

void PlotZoomer::widgetMousePressEvent(QMouseEvent *event) {
    if (mark_ != Mark::none) {
        reset();
    }
    QwtPlotZoomer::widgetMousePressEvent(event);
}

void PlotZoomer::widgetMouseMoveEvent(QMouseEvent *event) {
    if (mark_ == Mark::none) {
        QwtPlotZoomer::widgetMouseMoveEvent(event);
    }
}

// A mark belongs to the view in which it was placed.
void PlotZoomer::rescale() {
    if (mark_ != Mark::none) {
        reset();
    }
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
    QString shown = timeText(at.x()) + QStringLiteral("   ") + valueText(at.y());
    if (mark_ == Mark::oneEnd) {
        shown = timeText(markedTime_);
    } else if (mark_ == Mark::otherEnd) {
        const auto [from, to] = std::minmax({fixedTime_, markedTime_});
        shown = timeText(from) + QStringLiteral(" - ") + timeText(to);
    }
    QwtText text(shown, QwtText::PlainText);
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

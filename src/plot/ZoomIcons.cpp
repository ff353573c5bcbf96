#include "plot/ZoomIcons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace {

constexpr int side = 22;

struct Colours {
    QColor arrow;
    QColor glass;
};

bool isDesktopDark() {
    constexpr int dark = 128; // of 255
    return QGuiApplication::palette().color(QPalette::Window).lightness() < dark;
}

Colours coloursOf(QIcon::Mode mode) {
    const bool isDark = isDesktopDark();
    if (mode == QIcon::Disabled) {
        return isDark ? Colours{QColor(88, 92, 97), QColor(80, 84, 89)}
                      : Colours{QColor(170, 170, 170), QColor(190, 190, 190)};
    }
    return isDark ? Colours{QColor(84, 150, 240), QColor(175, 180, 187)}
                  : Colours{QColor(32, 92, 190), QColor(110, 115, 122)};
}

using Drawing = void (*)(QPainter &painter, const Colours &colours);

// Calls the drawing for whatever size is asked for.
class DrawnIcon : public QIconEngine {
public:
    explicit DrawnIcon(Drawing draw) : draw_(draw) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(static_cast<double>(rect.width()) / side, static_cast<double>(rect.height()) / side);
        draw_(*painter, coloursOf(mode));
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine *clone() const override { return new DrawnIcon(draw_); }

private:
    Drawing draw_;
};

// An arrow to the right, from the tail at (2, 11) to the tip at (20, 11).
void drawBroadArrow(QPainter &painter, const QColor &colour) {
    QPainterPath arrow(QPointF(2.5, 8.5));
    for (const QPointF &corner : {QPointF(11, 8.5), QPointF(11, 3.5), QPointF(19.5, 11), QPointF(11, 18.5),
                                  QPointF(11, 13.5), QPointF(2.5, 13.5)}) {
        arrow.lineTo(corner);
    }
    arrow.closeSubpath();
    painter.setPen(QPen(colour.darker(130), 1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(colour);
    painter.drawPath(arrow);
}

void drawMagnifier(QPainter &painter, const QColor &colour) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, 3, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(15.2, 15.2), QPointF(19.5, 19.5));
    painter.setPen(QPen(colour, 1.6));
    painter.drawEllipse(QPointF(9.5, 9.5), 7.7, 7.7);
}

// An arrow with two heads within the glass, along x or turned by `degrees`.
void drawSpan(QPainter &painter, const QColor &colour, double degrees) {
    painter.save();
    painter.translate(9.5, 9.5);
    painter.rotate(degrees);
    painter.setPen(QPen(colour, 1.5, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(-3, 0), QPointF(3, 0));
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    for (const double direction : {-1.0, 1.0}) {
        painter.drawConvexPolygon(
            QPolygonF({{direction * 5.6, 0}, {direction * 2.4, -2.6}, {direction * 2.4, 2.6}}));
    }
    painter.restore();
}

void drawNext(QPainter &painter, const Colours &colours) {
    drawBroadArrow(painter, colours.arrow);
}

void drawPrevious(QPainter &painter, const Colours &colours) {
    painter.translate(side, 0);
    painter.scale(-1, 1);
    drawBroadArrow(painter, colours.arrow);
}

void drawHorizontal(QPainter &painter, const Colours &colours) {
    drawMagnifier(painter, colours.glass);
    drawSpan(painter, colours.arrow, 0);
}

void drawVertical(QPainter &painter, const Colours &colours) {
    drawMagnifier(painter, colours.glass);
    drawSpan(painter, colours.arrow, 90);
}

void drawFull(QPainter &painter, const Colours &colours) {
    drawMagnifier(painter, colours.glass);
    drawSpan(painter, colours.arrow, 0);
    drawSpan(painter, colours.arrow, 90);
}

} // namespace

QIcon previousZoomIcon() {
    return QIcon(new DrawnIcon(drawPrevious));
}

QIcon nextZoomIcon() {
    return QIcon(new DrawnIcon(drawNext));
}

QIcon scaleFullIcon() {
    return QIcon(new DrawnIcon(drawFull));
}

QIcon scaleHorizontalIcon() {
    return QIcon(new DrawnIcon(drawHorizontal));
}

QIcon scaleVerticalIcon() {
    return QIcon(new DrawnIcon(drawVertical));
}

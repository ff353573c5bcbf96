#include "ui/FileIcons.h"

#include "ui/icons/add.xpm"
#include "ui/icons/remove.xpm"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int side = 22;

enum class Sign { plus, minus };

const QColor outline(0x2b, 0x57, 0x9b);
const QColor badgeOutline(0x0f, 0x2f, 0x6b);

QLinearGradient downwards(double from, double to, const QColor &first, const QColor &last) {
    QLinearGradient gradient(0, from, 0, to);
    gradient.setColorAt(0, first);
    gradient.setColorAt(1, last);
    return gradient;
}

void drawPage(QPainter &painter) {
    const QPolygonF page({{2.5, 1.5}, {10.5, 1.5}, {14.5, 5.5}, {14.5, 19.5}, {2.5, 19.5}});
    const QPolygonF fold({{10.5, 1.5}, {10.5, 5.5}, {14.5, 5.5}});
    painter.setPen(QPen(outline, 1, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(downwards(1, 20, QColor(0xf2, 0xf8, 0xff), QColor(0xc7, 0xdd, 0xf7)));
    painter.drawPolygon(page);
    painter.setBrush(QColor(0x97, 0xbf, 0xec));
    painter.drawPolygon(fold);
    painter.setPen(QPen(QColor(0x7f, 0xa9, 0xdd), 1, Qt::SolidLine, Qt::FlatCap));
    for (const double line : {8.5, 11.5, 14.5, 17.5}) {
        painter.drawLine(QPointF(5, line), QPointF(12, line));
    }
}

void drawBadge(QPainter &painter, Sign sign) {
    constexpr QPointF centre(15, 15);
    // A gap sets the badge off from the page.
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawEllipse(centre, 6.9, 6.9);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);

    painter.setPen(QPen(badgeOutline, 1));
    painter.setBrush(downwards(9, 21, QColor(0x54, 0x96, 0xe3), QColor(0x1f, 0x5b, 0xb9)));
    painter.drawEllipse(centre, 5.5, 5.5);
    painter.setPen(QPen(QColor(0xf2, 0xf8, 0xff), 2, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(12, 15), QPointF(18, 15));
    if (sign == Sign::plus) {
        painter.drawLine(QPointF(15, 12), QPointF(15, 18));
    }
}

QPixmap drawnPixmap(Sign sign, const QSize &size) {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(static_cast<double>(size.width()) / side, static_cast<double>(size.height()) / side);
    drawPage(painter);
    drawBadge(painter, sign);
    return pixmap;
}

// The pixel image as far as it goes; enlarged it would be coarse.
class FileIcon : public QIconEngine {
public:
    explicit FileIcon(Sign sign) : sign_(sign) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override {
        const double ratio = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rect, pixmap((QSizeF(rect.size()) * ratio).toSize(), mode, state));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode, QIcon::State) override {
        if (size == QSize(side, side)) {
            return QPixmap(sign_ == Sign::plus ? add_xpm : remove_xpm);
        }
        return drawnPixmap(sign_, size);
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) const override { return {QSize(side, side)}; }

    QIconEngine *clone() const override { return new FileIcon(sign_); }

private:
    Sign sign_;
};

} // namespace

QIcon addFileIcon() {
    return QIcon(new FileIcon(Sign::plus));
}

QIcon removeFileIcon() {
    return QIcon(new FileIcon(Sign::minus));
}

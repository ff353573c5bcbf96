#include "ui/EmptyHint.h"

#include <QAbstractScrollArea>
#include <QPainter>

void drawEmptyHint(QAbstractScrollArea &view, const QString &text) {
    constexpr int margin = 12;
    QPainter painter(view.viewport());
    painter.setPen(view.palette().color(QPalette::PlaceholderText));
    painter.drawText(view.viewport()->rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignCenter | Qt::TextWordWrap, text);
}

#include "ui/AboutWidget.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace {

constexpr char aboutText[] = "<html><head><style type=\"text/css\">"
                             "p{color:darkblue; text-align:center; }"
                             "</style></head>"
                             "<body><strong><center>"
                             "&nbsp;"
                             "<p>File Viewer for QA-310, QA-320A, QA-330, and QA-34xx</p>"
                             "<p>Version " FVQA_VERSION " (" FVQA_RELEASE_DATE ")</p>"
                             "<p>© Ombrix</p>"
                             "<p>All rights reserved</p>"
                             "&nbsp;"
                             "</center></strong></body></html>";

} // namespace

AboutWidget::AboutWidget(QWidget *parent)
    : QWidget(parent), label_(new QLabel(QString::fromUtf8(aboutText))) {
    // Without interaction the label leaves every click to the page.
    label_->setTextInteractionFlags(Qt::NoTextInteraction);
    // Lines wrap rather than being cut off when the font is large and the page small.
    label_->setWordWrap(true);
    label_->setMinimumWidth(450);

    auto *layout = new QGridLayout(this);
    layout->addWidget(label_, 3, 1, Qt::AlignHCenter);
    layout->setRowStretch(0, 1);
    layout->setRowStretch(6, 1);
    // Else the column is as wide as the page, and the height for that width too small for the label's.
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(2, 1);

    // The text is dark blue in every colour scheme, so the page is light in every colour scheme.
    QPalette light = palette();
    light.setColor(QPalette::Window, Qt::white);
    setPalette(light);
    setAutoFillBackground(true);

    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setToolTip(tr("Click to add files"));
    setAccessibleName(tr("About this program"));
    setAccessibleDescription(toolTip());
}

void AboutWidget::keyPressEvent(QKeyEvent *event) {
    const bool opens =
        event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space;
    if (opens && !event->isAutoRepeat()) {
        Q_EMIT OpenFile();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void AboutWidget::mousePressEvent(QMouseEvent *event) {
    event->setAccepted(event->button() == Qt::LeftButton);
}

void AboutWidget::mouseReleaseEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->pos())) {
        Q_EMIT OpenFile();
    } else {
        QWidget::mouseReleaseEvent(event);
    }
}

void AboutWidget::paintEvent(QPaintEvent *event) {
    QWidget::paintEvent(event);
    if (!hasFocus()) {
        return;
    }
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.rect = label_->geometry().adjusted(-6, 0, 6, 0).intersected(rect());
    option.backgroundColor = palette().color(QPalette::Window);
    QStylePainter(this).drawPrimitive(QStyle::PE_FrameFocusRect, option);
}

#include "plot/PlotControls.h"

#include "plot/ZoomIcons.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

namespace {

QToolButton *makeToolButton(const QIcon &icon, const QString &toolTip) {
    auto *button = new QToolButton;
    button->setAutoRaise(true);
    button->setIcon(icon);
    button->setIconSize(QSize(22, 22));
    button->setToolTip(toolTip);
    button->setAccessibleName(toolTip);
    button->setEnabled(false);
    return button;
}

QPushButton *makePushButton(const QString &text, const QString &accessibleDescription) {
    auto *button = new QPushButton(text);
    button->setAccessibleDescription(accessibleDescription);
    return button;
}

} // namespace

PlotControls::PlotControls()
    : previous(makeToolButton(previousZoomIcon(), tr("Go to previous zoom level"))),
      next(makeToolButton(nextZoomIcon(), tr("Go to next zoom level"))),
      full(makeToolButton(scaleFullIcon(), tr("Auto scale to view entire data set"))),
      horizontal(makeToolButton(scaleHorizontalIcon(), tr("Auto scale horizontally"))),
      vertical(makeToolButton(scaleVerticalIcon(), tr("Auto scale vertically"))),
      applyYRange(
          makePushButton(tr("Ymin Ymax"), tr("Shows the range between the two values on the left axis"))),
      print(makePushButton(tr("Print..."), tr("Prints the plot, as Ctrl+P does"))),
      close(makePushButton(tr("Close"), tr("Closes this window, as Escape does"))),
      row(new QHBoxLayout) {
    for (QToolButton *button : {previous, next, full, horizontal, vertical}) {
        row->addWidget(button);
    }
    row->addWidget(applyYRange);
    row->addWidget(yRange.minimum());
    row->addWidget(yRange.maximum());
    row->addStretch();
    row->addWidget(print);
    row->addWidget(close);
}

#include "plot/PlotMenu.h"

#include <QAction>
#include <QMenu>
#include <QToolButton>

QAction *addMenuAction(QWidget &window, const QString &text, const QList<QKeySequence> &keys,
                       const char *slot) {
    auto *action = new QAction(text, &window);
    action->setShortcuts(keys);
    QObject::connect(action, SIGNAL(triggered()), &window, slot);
    window.addAction(action);
    return action;
}

QAction *addMenuAction(QWidget &window, const QToolButton &button, const QList<QKeySequence> &keys,
                       const char *slot) {
    QAction *action = addMenuAction(window, button.toolTip(), keys, slot);
    action->setIcon(button.icon());
    action->setEnabled(false);
    return action;
}

void addMenuSeparator(QWidget &window) {
    auto *separator = new QAction(&window);
    separator->setSeparator(true);
    window.addAction(separator);
}

void openMenu(QWidget &window, const QPoint &at) {
    auto *menu = new QMenu(&window);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addActions(window.actions());
    menu->popup(at);
}

#pragma once

#include <QKeySequence>
#include <QList>

class QAction;
class QPoint;
class QString;
class QToolButton;
class QWidget;

// The actions of a window are what its context menu offers, in the order in which they were added; their keys
// work while the menu is closed, too.

// Adds an action. `slot` is one of the window's, as SLOT() writes it.
QAction *addMenuAction(QWidget &window, const QString &text, const QList<QKeySequence> &keys,
                       const char *slot);

// Adds an action that does what a button does, with its icon. It cannot be used yet.
QAction *addMenuAction(QWidget &window, const QToolButton &button, const QList<QKeySequence> &keys,
                       const char *slot);

void addMenuSeparator(QWidget &window);

// Opens the menu at a place on the screen and returns at once.
void openMenu(QWidget &window, const QPoint &at);

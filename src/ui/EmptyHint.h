#pragma once

#include <QString>

class QAbstractScrollArea;

// Writes what to do next in the middle of an empty list or table, as quietly as an edit's placeholder. To be
// called from the view's paintEvent.
void drawEmptyHint(QAbstractScrollArea &view, const QString &text);

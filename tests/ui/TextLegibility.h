#pragma once

#include <QStringList>

class QWidget;

// What of a shown window's texts cannot be read: each as "class: text: why".

// Texts of labels, buttons, tabs, boxes, tables' headers and cells, legends and axes that have less room than
// they need, and controls that stick out of what they lie in.
QStringList cutTexts(QWidget &window);

// Texts of enabled labels, buttons and legends that hardly differ from what they are written on.
QStringList faintTexts(QWidget &window);

// How many texts the two look at.
int textCount(QWidget &window);

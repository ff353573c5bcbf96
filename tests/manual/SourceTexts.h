#pragma once

#include <QString>
#include <QStringList>

// The texts in a C++ source's quotation marks, in their order, as the program has them. Texts that follow
// each other directly are one. Comments and included names are left out.
QStringList textsOf(const QString &source);

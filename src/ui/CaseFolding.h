#pragma once

#include <QString>

#include <string>

// The text with letter case taken out, for hash sets: two texts have equal results exactly when
// QString::compare(a, b, Qt::CaseInsensitive) calls them equal. Not for showing.
std::u32string caseFolded(const QString &text);

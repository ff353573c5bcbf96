#pragma once

#include <QColor>
#include <QImage>
#include <QPair>
#include <QRect>
#include <QVector>

using ColumnRanges = QVector<QPair<int, int>>;

// The ranges of neighbouring columns, first and last, that show the colour somewhere within `rows`.
inline ColumnRanges inkedColumns(const QImage &image, const QColor &colour, QPair<int, int> rows = {0, -1}) {
    const int bottom = rows.second < 0 ? image.height() - 1 : rows.second;
    ColumnRanges ranges;
    for (int x = 0; x < image.width(); ++x) {
        bool isInked = false;
        for (int y = rows.first; y <= bottom && !isInked; ++y) {
            isInked = image.pixelColor(x, y) == colour;
        }
        if (!isInked) {
            continue;
        }
        if (!ranges.isEmpty() && ranges.last().second == x - 1) {
            ranges.last().second = x;
        } else {
            ranges.append({x, x});
        }
    }
    return ranges;
}

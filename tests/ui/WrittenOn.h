#pragma once

#include <QAbstractScrollArea>
#include <QImage>

// Whether anything stands in the middle of the view: it has more than one colour.
inline bool isWrittenOn(QAbstractScrollArea &view) {
    view.resize(400, 300);
    const QImage image = view.viewport()->grab().toImage();
    const QRgb paper = image.pixel(image.rect().center().x(), image.height() - 2);
    for (int y = image.height() / 3; y < image.height() * 2 / 3; ++y) {
        for (int x = 0; x < image.width() - 2; ++x) {
            if (image.pixel(x, y) != paper) {
                return true;
            }
        }
    }
    return false;
}

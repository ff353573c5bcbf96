#pragma once

#include <QCoreApplication>
#include <QPixmap>
#include <QWidget>

#include <iostream>
#include <stdexcept>

// A folder of pictures. Prints the path of each.
class Album {
public:
    // The pictures' names end in `ending`.
    explicit Album(QString folder, QString ending = {})
        : folder_(std::move(folder)), ending_(std::move(ending)) {}

    // Of the whole window, or of its upper part.
    void take(QWidget &window, const QString &name, int height = -1) const {
        QCoreApplication::processEvents();
        const QString path = folder_ + QLatin1Char('/') + name + ending_ + QStringLiteral(".png");
        constexpr int smallest = 0; // of all qualities of a PNG: the same picture in the fewest bytes
        if (!window.grab(QRect(0, 0, window.width(), height < 0 ? window.height() : height))
                 .save(path, "PNG", smallest)) {
            throw std::runtime_error("cannot write " + path.toStdString());
        }
        std::cout << path.toStdString() << '\n';
    }

private:
    QString folder_;
    QString ending_;
};

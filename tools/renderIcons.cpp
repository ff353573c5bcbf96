// Draws an icon from its SVG: fvqa300-render-icons SVG FOLDER SIZE... writes FOLDER/SIZE.png for each size.

#include <QCoreApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

namespace {

QImage drawn(QSvgRenderer &renderer, int side) {
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter);
    return image;
}

int fail(const QString &text) {
    std::fprintf(stderr, "%s\n", qPrintable(text));
    return 1;
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 4) {
        return fail(QStringLiteral("Usage: fvqa300-render-icons SVG FOLDER SIZE..."));
    }
    QSvgRenderer renderer(arguments[1]);
    if (!renderer.isValid()) {
        return fail(arguments[1] + QStringLiteral(": This is no picture in SVG"));
    }
    for (const QString &size : arguments.mid(3)) {
        const int side = size.toInt();
        const QString path = arguments[2] + '/' + size + QStringLiteral(".png");
        if (side <= 0 || !drawn(renderer, side).save(path)) {
            return fail(path + QStringLiteral(": This could not be written"));
        }
    }
    return 0;
}

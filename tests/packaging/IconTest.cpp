#include "ui/icons/ApplicationIcon.h"

#include <QImage>
#include <QtTest>

#include <algorithm>

namespace {

const QRgb axisColour = qRgb(0xff, 0xff, 0xff);
const QRgb tileColour = qRgb(0x1b, 0x4f, 0x8f);

QImage pictureOf(int side) {
    return QImage(QStringLiteral(":/application-icon/%1.png").arg(side));
}

} // namespace

class IconTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasTheSizesThatDesktopsAskFor() {
        QList<QSize> sizes = applicationIcon().availableSizes();
        std::sort(sizes.begin(), sizes.end(), [](QSize a, QSize b) { return a.width() < b.width(); });
        const QList<QSize> expected{{16, 16}, {32, 32}, {48, 48}, {64, 64}, {128, 128}, {256, 256}};
        QCOMPARE(sizes, expected);
    }

    void isCrispInEverySize_data() {
        QTest::addColumn<int>("side");
        for (const int side : {16, 32, 48, 64, 128, 256}) {
            QTest::addRow("%d", side) << side;
        }
    }

    // Both axes are a sixteenth thick and have no half-coloured edge: they lie on whole pixels.
    void isCrispInEverySize() {
        QFETCH(int, side);
        const QImage picture = pictureOf(side);
        QCOMPARE(picture.size(), QSize(side, side));
        const int step = side / 16;
        for (int x = 0; x < side; ++x) {
            const bool isAxis = x >= 3 * step && x < 4 * step;
            if (x < 4 * step) {
                QCOMPARE(picture.pixel(x, 7 * step / 2), isAxis ? axisColour : tileColour);
            }
        }
        for (int y = 12 * step; y < 15 * step; ++y) {
            const bool isAxis = y >= 13 * step && y < 14 * step;
            QCOMPARE(picture.pixel(12 * step, y), isAxis ? axisColour : tileColour);
        }
    }

    void itsCornersAreTransparentOnEveryBackground() {
        for (const int side : {16, 256}) {
            QCOMPARE(qAlpha(pictureOf(side).pixel(0, 0)) < 255, true);
            QCOMPARE(qAlpha(pictureOf(side).pixel(side / 2, side / 16)), 255);
        }
    }
};

QTEST_MAIN(IconTest)
#include "IconTest.moc"

// Pictures of a plot: their formats, looks and failures.

#include "plot/PlotPicture.h"

#include "loading/QDataSet.h"
#include "plot/CurveColours.h"
#include "plot/QwtCurve.h"
#include "plot/TimeSeriesPlot.h"
#include "time/Timezone.h"
#include "ui/DataFiles.h"

#include <QPrinter>
#include <QSignalSpy>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

struct Scene {
    Scene() {
        QSignalSpy loaded(&dataSet, SIGNAL(FileLoaded(QString)));
        // Constant values: the curves are level lines.
        dataSet.AddFile(files.writeData("1.data", "QA330", "CH4\tTEMP", 100));
        loaded.wait();
        plot = std::make_unique<TimeSeriesPlot>(dataSet, "QA330:DATA:CH4");
        plot->addVariable("QA330:DATA:TEMP", TimeSeriesPlot::Side::left);
        plot->setAxisScale(QwtPlot::xBottom, 1600000000, 1600000099);
        plot->setAxisScale(QwtPlot::yLeft, 0, 2);
        plot->resize(700, 350);
        plot->replot();
    }

    DataFiles files;
    QDataSet dataSet;
    std::unique_ptr<TimeSeriesPlot> plot;
};

// Rows of the picture in which most pixels of the middle have the colour.
QVector<int> levelLines(const QImage &image, const QColor &colour) {
    QVector<int> rows;
    for (int y = 0; y < image.height(); ++y) {
        int count = 0;
        for (int x = image.width() / 4; x < image.width() * 3 / 4; ++x) {
            count += image.pixelColor(x, y) == colour ? 1 : 0;
        }
        if (count > image.width() / 4) {
            rows += y;
        }
    }
    return rows;
}

// The darkest pixel below the canvas, where the time axis has its texts.
int darkestInBottomStrip(const QImage &image) {
    int darkest = 255;
    for (int y = image.height() - 30; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            darkest = std::min(darkest, qGray(image.pixel(x, y)));
        }
    }
    return darkest;
}

QByteArray contentOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class PlotPictureTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    void aPngHasTheSizeThatWasAskedForAndShowsEveryCurve() {
        const Scene scene;
        const QString path = scene.files.path("plot.PNG");
        QCOMPARE(writePicture(*scene.plot, path, QSize(900, 400)), QString());
        const QImage image(path, "PNG");
        QCOMPARE(image.size(), QSize(900, 400));
        // CH4 is 0.25 and TEMP 1.25 all the time, of 0 to 2.
        const QVector<int> red = levelLines(image, curveColour(0));
        const QVector<int> blue = levelLines(image, curveColour(1));
        QVERIFY(!red.isEmpty());
        QVERIFY(!blue.isEmpty());
        QVERIFY2(blue.front() < red.front(), "the larger values must be drawn above");
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white));
    }

    void aPictureForAFineScreenHasMorePixels() {
        const Scene scene;
        const QImage plain = pictureOf(*scene.plot, QSize(600, 300));
        const QImage fine = pictureOf(*scene.plot, QSize(600, 300), 2);
        QCOMPARE(fine.size(), QSize(1200, 600));
        const QVector<int> plainRed = levelLines(plain, curveColour(0));
        const QVector<int> fineRed = levelLines(fine, curveColour(0));
        QVERIFY(!plainRed.isEmpty());
        QVERIFY2(fineRed.size() > plainRed.size(), "lines must grow with the picture");
        QVERIFY(std::abs(fineRed.front() - 2 * plainRed.front()) <= 6);
    }

    void anSvgIsWholeAndHasItsTextsAsTexts() {
        const Scene scene;
        const QString path = scene.files.path("plot.svg");
        QCOMPARE(writePicture(*scene.plot, path, QSize(900, 400)), QString());
        QXmlStreamReader reader(contentOf(path));
        QStringList texts;
        QString viewBox;
        while (!reader.atEnd()) {
            reader.readNext();
            if (reader.isStartElement() && reader.name() == QLatin1String("svg")) {
                viewBox = reader.attributes().value("viewBox").toString();
            } else if (reader.isStartElement() && reader.name() == QLatin1String("text")) {
                texts += reader.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
            }
        }
        QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
        QCOMPARE(viewBox, "0 0 900 400");
        QVERIFY(texts.contains("QA330:DATA:CH4"));
        QVERIFY(texts.contains("Time (UTC)"));
    }

    void aPdfIsOnePageOfTheSizeThatWasAskedFor() {
        const Scene scene;
        const QString path = scene.files.path("plot.pdf");
        QCOMPARE(writePicture(*scene.plot, path, QSize(960, 480)), QString());
        const QByteArray content = contentOf(path);
        QVERIFY(content.startsWith("%PDF-"));
        QVERIFY(content.contains("/MediaBox [0 0 720.000000 360.000000]")); // points, 72 to the inch
        QCOMPARE(content.count("/Type /Page\n"), 1);
    }

    void otherEndingsAreRefusedAndNothingIsWritten() {
        const Scene scene;
        for (const char *name : {"plot.gif", "plot", "plot.data", "png"}) {
            const QString path = scene.files.path(name);
            QVERIFY(!isPictureName(path));
            QVERIFY(!writePicture(*scene.plot, path, QSize(300, 200)).isEmpty());
            QVERIFY(!QFile::exists(path));
        }
    }

    void whatCannotBeWrittenIsSaid() {
        const Scene scene;
        const QString path = scene.files.path("missing/plot.png");
        QVERIFY(!writePicture(*scene.plot, path, QSize(300, 200)).isEmpty());
    }

    void anEarlierPictureIsReplaced() {
        const Scene scene;
        const QString path = scene.files.write("plot.svg", QByteArray(1000000, 'x'));
        QCOMPARE(writePicture(*scene.plot, path, QSize(300, 200)), QString());
        QVERIFY(contentOf(path).startsWith("<?xml"));
    }

    void whiteTextsOfADarkDesktopAreBlackOnPaper() {
        const Scene scene;
        QPalette dark(Qt::black);
        dark.setColor(QPalette::WindowText, Qt::white);
        dark.setColor(QPalette::Text, Qt::white);
        scene.plot->setPalette(dark);
        const QImage image = pictureOf(*scene.plot, QSize(600, 300));
        QCOMPARE(image.pixelColor(1, 1), QColor(Qt::white));
        QVERIFY(darkestInBottomStrip(image) < 50);
        QCOMPARE(scene.plot->palette().color(QPalette::WindowText), QColor(Qt::white));
    }

    void thePlotIsAsItWasAfterwards() {
        const Scene scene;
        const QRect canvas = scene.plot->canvas()->geometry();
        writePicture(*scene.plot, scene.files.path("plot.pdf"), QSize(2000, 1500));
        QCOMPARE(scene.plot->size(), QSize(700, 350));
        QCOMPARE(scene.plot->canvas()->geometry(), canvas);
        const auto *curve =
            static_cast<const QwtPlotCurve *>(scene.plot->itemList(QwtPlotItem::Rtti_PlotCurve).front());
        QCOMPARE(curve->pen().width(), 0);
    }

    void aPageIsPrintedWithoutAPrinter() {
        const Scene scene;
        QPrinter printer(QPrinter::ScreenResolution);
        const QString path = scene.files.path("page.pdf");
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(path);
        printer.setPageSize(QPageSize(QPageSize::Letter));
        printer.setPageOrientation(QPageLayout::Landscape);
        QCOMPARE(printPicture(*scene.plot, printer), QString());
        const QByteArray content = contentOf(path);
        QVERIFY(content.startsWith("%PDF-"));
        QVERIFY(content.contains("/MediaBox [0 0 792.000000 612.000000]"));
        QCOMPARE(content.count("/Type /Page\n"), 1);
    }

    void aPageThatCannotBePrintedIsSaid() {
        const Scene scene;
        QPrinter printer(QPrinter::ScreenResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(scene.files.path("missing/page.pdf"));
        QVERIFY(!printPicture(*scene.plot, printer).isEmpty());
    }
};

QTEST_MAIN(PlotPictureTest)
#include "PlotPictureTest.moc"

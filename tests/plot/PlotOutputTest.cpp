// What leaves a plot window: the print, the clipboard's picture and the saved one, through the real dialogs.

#include "loading/QDataSet.h"
#include "plot/PlotDialog.h"
#include "time/Timezone.h"
#include "ui/DataFiles.h"
#include "ui/ModalDialogs.h"

#include <QClipboard>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>
#include <qwt_plot.h>

namespace {

struct Scene {
    Scene() {
        QSignalSpy loaded(&dataSet, SIGNAL(FileLoaded(QString)));
        dataSet.AddFile(files.writeData("1.data", "QA330", "CH4", 100));
        loaded.wait();
        dialog = std::make_unique<PlotDialog>(nullptr, &dataSet, "QA330:DATA:CH4");
        dialog->setAttribute(Qt::WA_DeleteOnClose, false);
        dialog->show();
    }

    QPushButton *printButton() const {
        for (auto *button : dialog->findChildren<QPushButton *>()) {
            if (button->text() == "Print...") {
                return button;
            }
        }
        return nullptr;
    }
    // Presses "Print..." and works the print dialog.
    void print(const std::function<void(QDialog *)> &work) const {
        QObject context;
        onNextDialog(&context, work);
        printButton()->click();
    }
    // Saves under the path, which is typed into the file dialog.
    void save(const QString &path, const QString &filter = {}) const {
        QObject context;
        onNextDialog(&context, [&](QDialog *shown) {
            auto *chooser = qobject_cast<QFileDialog *>(shown);
            if (!filter.isEmpty()) {
                chooser->selectNameFilter(filter);
            }
            chooser->findChild<QLineEdit *>("fileNameEdit")->setText(path);
            QMetaObject::invokeMethod(chooser, "accept");
        });
        QMetaObject::invokeMethod(dialog.get(), "savePicture");
    }

    DataFiles files;
    QDataSet dataSet;
    std::unique_ptr<PlotDialog> dialog;
};

void printTo(QDialog *shown, const QString &path) {
    shown->findChild<QLineEdit *>("filename")->setText(path);
    QMetaObject::invokeMethod(shown, "accept");
}

} // namespace

class PlotOutputTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    void printingBeginsWithALandscapeLetterInColour() {
        const Scene scene;
        bool wasShown = false;
        scene.print([&wasShown](QDialog *shown) {
            wasShown = true;
            const QPrinter *printer = qobject_cast<QPrintDialog *>(shown)->printer();
            QCOMPARE(printer->pageLayout().orientation(), QPageLayout::Landscape);
            QCOMPARE(printer->pageLayout().pageSize().id(), QPageSize::Letter);
            QCOMPARE(printer->colorMode(), QPrinter::Color);
            QCOMPARE(printer->resolution(), QPrinter(QPrinter::ScreenResolution).resolution());
            shown->reject();
        });
        QVERIFY(wasShown);
    }

    void theAcceptedDialogPrintsThePlot() {
        const Scene scene;
        const QString path = scene.files.path("page.pdf");
        scene.print([&path](QDialog *shown) { printTo(shown, path); });
        QFile page(path);
        QVERIFY(page.open(QIODevice::ReadOnly));
        const QByteArray content = page.readAll();
        QVERIFY(content.startsWith("%PDF-"));
        QVERIFY(content.contains("/MediaBox [0 0 792.000000 612.000000]"));
    }

    void theRejectedDialogPrintsNothing() {
        const Scene scene;
        const QString path = scene.files.path("page.pdf");
        scene.print([&path](QDialog *shown) {
            shown->findChild<QLineEdit *>("filename")->setText(path);
            shown->reject();
        });
        QVERIFY(!QFile::exists(path));
    }

    void thePrinterKeepsItsChoicesBetweenPrints() {
        const Scene scene;
        const QPrinter *first = nullptr;
        scene.print([&first](QDialog *shown) {
            QPrinter *printer = qobject_cast<QPrintDialog *>(shown)->printer();
            printer->setPageOrientation(QPageLayout::Portrait);
            first = printer;
            shown->reject();
        });
        scene.print([&first](QDialog *shown) {
            const QPrinter *printer = qobject_cast<QPrintDialog *>(shown)->printer();
            QCOMPARE(printer, first);
            QCOMPARE(printer->pageLayout().orientation(), QPageLayout::Portrait);
            shown->reject();
        });
    }

    void theClipboardGetsThePictureAtTwiceItsSize() {
        const Scene scene;
        QMetaObject::invokeMethod(scene.dialog.get(), "copyPicture");
        const QImage image = QApplication::clipboard()->image();
        QCOMPARE(image.size(), scene.dialog->findChild<QwtPlot *>()->size() * 2);
    }

    void controlCCopiesAndLeavesASelectionInAnEditToTheEdit() {
        const Scene scene;
        QApplication::setActiveWindow(scene.dialog.get());
        QApplication::clipboard()->setText("before");
        QTest::keyClick(scene.dialog.get(), Qt::Key_C, Qt::ControlModifier);
        QVERIFY(!QApplication::clipboard()->image().isNull());

        auto *edit = scene.dialog->findChildren<QLineEdit *>().front();
        edit->setFocus();
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), edit->text());
    }

    void aPictureIsSavedInTheFormatOfItsName() {
        const Scene scene;
        for (const char *name : {"plot.png", "plot.svg", "plot.pdf"}) {
            scene.save(scene.files.path(name));
            QVERIFY2(QFileInfo(scene.files.path(name)).size() > 1000, name);
        }
        QCOMPARE(QImage(scene.files.path("plot.png")).size(), scene.dialog->findChild<QwtPlot *>()->size());
    }

    void aNameWithoutAnEndingGetsThatOfTheChosenFormat() {
        const Scene scene;
        scene.save(scene.files.path("day.1"), "PDF (*.pdf)");
        QVERIFY(QFile::exists(scene.files.path("day.1.pdf")));
    }

    void anEndingThatIsAddedReplacesNothingUnasked() {
        const Scene scene;
        const QString path = scene.files.write("day.png", "before");
        for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
            QObject context;
            onNextDialog(&context, [&](QDialog *shown) {
                shown->findChild<QLineEdit *>("fileNameEdit")->setText(scene.files.path("day"));
                onNextDialog(&context, [answer](QDialog *box) {
                    qobject_cast<QMessageBox *>(box)->button(answer)->click();
                });
                QMetaObject::invokeMethod(shown, "accept");
            });
            QMetaObject::invokeMethod(scene.dialog.get(), "savePicture");
            QCOMPARE(QFileInfo(path).size() > 1000, answer == QMessageBox::Yes);
        }
    }

    void aLoadedFileIsNoPicture() {
        Scene scene;
        const QString path = scene.files.writeData("loaded.png", "QA330", "CH4");
        QSignalSpy loaded(&scene.dataSet, SIGNAL(FileLoaded(QString)));
        scene.dataSet.AddFile(path);
        QVERIFY(loaded.wait());
        const qint64 size = QFileInfo(path).size();
        QString told;
        QObject context;
        onNextDialog(&context, [&](QDialog *shown) {
            // Both the question whether to replace it and the refusal follow.
            onNextDialog(&context, [&](QDialog *question) {
                onNextDialog(&context, [&told](QDialog *box) {
                    told = qobject_cast<QMessageBox *>(box)->text();
                    box->accept();
                });
                qobject_cast<QMessageBox *>(question)->button(QMessageBox::Yes)->click();
            });
            shown->findChild<QLineEdit *>("fileNameEdit")->setText(path);
            QMetaObject::invokeMethod(shown, "accept");
        });
        QMetaObject::invokeMethod(scene.dialog.get(), "savePicture");
        QVERIFY2(told.contains("is loaded"), qPrintable(told));
        QCOMPARE(QFileInfo(path).size(), size);
    }

    void whatCannotBeSavedIsSaid() {
        const Scene scene;
        const QString path = scene.files.path("folder.png");
        QString told;
        QObject context;
        // The file dialog takes no folder for a name, so that one comes to stand there only after it has
        // closed.
        onNextDialog(&context, [&](QDialog *shown) {
            shown->findChild<QLineEdit *>("fileNameEdit")->setText(path);
            onNextDialog(&context, [&told](QDialog *box) {
                told = qobject_cast<QMessageBox *>(box)->text();
                box->accept();
            });
            QMetaObject::invokeMethod(shown, "accept");
            QDir().mkdir(path);
        });
        QMetaObject::invokeMethod(scene.dialog.get(), "savePicture");
        QVERIFY2(told.startsWith(path + ": "), qPrintable(told));
    }
};

QTEST_MAIN(PlotOutputTest)
#include "PlotOutputTest.moc"

#include "ui/ExportProgressDialog.h"

#include "loading/QDataSet.h"
#include "time/Timezone.h"
#include "ui/DataFiles.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

struct Scene {
    explicit Scene(int records) {
        QSignalSpy loaded(&dataSet, SIGNAL(FileLoaded(QString)));
        dataSet.AddFile(files.writeData("1.data", "QA330", "CH4", records));
        loaded.wait();
        dialog = std::make_unique<ExportProgressDialog>(nullptr, dataSet, "QA330");
    }

    DataFiles files;
    QDataSet dataSet;
    std::unique_ptr<ExportProgressDialog> dialog;
};

} // namespace

class ExportProgressDialogTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    void beginsAtZeroUnderItsTexts() {
        const Scene scene(101);
        QCOMPARE(scene.dialog->labelText(), "Exporting file");
        QCOMPARE(scene.dialog->findChild<QPushButton *>()->text(), "Cancel");
        QCOMPARE(scene.dialog->minimum(), 0);
        QCOMPARE(scene.dialog->maximum(), 100);
        QCOMPARE(scene.dialog->value(), 0);
        QCOMPARE(scene.dialog->windowModality(), Qt::WindowModal);
    }

    void theValueIsZeroAtTheEarliestAndAHundredAtTheLatestTime() {
        const Scene scene(101);
        scene.dialog->showTime(1600000000);
        QCOMPARE(scene.dialog->value(), 0);
        scene.dialog->showTime(1600000050.9);
        QCOMPARE(scene.dialog->value(), 50);
        scene.dialog->showTime(1600000100);
        QCOMPARE(scene.dialog->value(), 100);
    }

    // A clock that ran ahead within the file was set back.
    void timesBeyondTheLatestAreAHundredAndCancellingGoesOn() {
        const Scene scene(101);
        scene.dialog->showTime(1600000500);
        QCOMPARE(scene.dialog->value(), 100);
        scene.dialog->cancel();
        scene.dialog->showTime(1600000501);
        QVERIFY(scene.dialog->isCancelled());
    }

    void dataOfNoTimeShowZeroUntilTheEnd() {
        const Scene scene(1);
        scene.dialog->showTime(1600000000);
        QCOMPARE(scene.dialog->value(), 0);
        scene.dialog->showEnd();
        QCOMPARE(scene.dialog->value(), 100);
    }

    void namesTheFileThatIsWritten() {
        const Scene scene(1);
        scene.dialog->showFile("/tmp/a\xc3\xa4.txt");
        QCOMPARE(scene.dialog->labelText(), QString::fromUtf8("Exporting file: /tmp/a\xc3\xa4.txt"));
    }

    void cancelIsTold() {
        const Scene scene(1);
        QVERIFY(!scene.dialog->isCancelled());
        scene.dialog->findChild<QPushButton *>()->click();
        QVERIFY(scene.dialog->isCancelled());
    }

    void theCursorIsBusyWhileItLives() {
        Scene scene(1);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::BusyCursor);
        scene.dialog.reset();
        QVERIFY(QApplication::overrideCursor() == nullptr);
    }
};

QTEST_MAIN(ExportProgressDialogTest)
#include "ExportProgressDialogTest.moc"

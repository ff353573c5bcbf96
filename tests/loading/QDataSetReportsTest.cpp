// What is told about a file that was loaded.

#include "loading/QDataSet.h"
#include "loading/support/QDataSetScene.h"
#include "loading/support/WorkerGate.h"
#include "loading/support/ZipWriting.h"

#include <QtTest>

#include <set>
#include <string>

class QDataSetReportsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    void aFileWithFewerThan1000LinesEmitsTheProgressValues0And100FromItsWorker();
    void anArchiveNameWhoseExtensionIsInCapitalsIsReadAsAnArchive();
    void anArchiveThatCannotBeOpenedIsReportedAsLoadedWithAMessage();
    void aFileThatIsNoDataFileIsReportedAsLoadedWithAMessage();
    void aFileWithoutRecordsIsReportedAsLoadedWithAMessageAndIsNotMerged();
    void checksumErrorsComeOnceAndBeforeTheErrorText();
    void anUnreadableZoneIsAnErrorMessageAndTheRestIsLoaded();
    void aFileThatVanishesBeforeItsWorkerStartsIsReportedAsLoadedWithTheReason();
};

void QDataSetReportsTest::aFileWithFewerThan1000LinesEmitsTheProgressValues0And100FromItsWorker() {
    Scene scene;
    scene.add("a.data", dataText("QA330", start, 996));
    scene.recorder.clear();
    QVERIFY(scene.waitForLoaded("a.data"));
    QCOMPARE(scene.recorder.events(),
             (QStringList{scene.progress("a.data", 0), scene.progress("a.data", 100), "FileLoaded a.data"}));
}

void QDataSetReportsTest::anArchiveNameWhoseExtensionIsInCapitalsIsReadAsAnArchive() {
    Scene scene;
    const QString path = scene.folder.path("A.GHG");
    writeZip(path, {{"a.data", dataText("QA330", start, 5)}, {"a.metadata", "x"}});
    scene.set.AddFile(path);
    QVERIFY(scene.waitForLoaded("A.GHG"));
    QCOMPARE(recordsOf(scene.set, "QA330"), 5U);
    QCOMPARE(scene.recorder.countStartingWith("Message"), 0);
    QCOMPARE(scene.recorder.count(scene.progress("A.GHG", 100)), 1);
}

void QDataSetReportsTest::anArchiveThatCannotBeOpenedIsReportedAsLoadedWithAMessage() {
    Scene scene;
    scene.add("a.ghg", dataText("QA330", start, 5));
    QVERIFY(scene.waitForLoaded("a.ghg"));
    const QString begin = scene.progress("a.ghg", 0);
    QCOMPARE(
        scene.recorder.events(),
        (QStringList{"FileRemoved a.ghg", begin, begin, scene.progress("a.ghg", 100),
                     "Message a.ghg This is no archive, or it is empty or cut off", "FileLoaded a.ghg"}));
    QVERIFY(scene.set.fileNames().empty());
}

void QDataSetReportsTest::aFileThatIsNoDataFileIsReportedAsLoadedWithAMessage() {
    Scene scene;
    scene.add("a.data", "Dear reader,\n");
    QVERIFY(scene.waitForLoaded("a.data"));
    QCOMPARE(scene.recorder.events().mid(3),
             (QStringList{scene.progress("a.data", 100),
                          "Message a.data No data header line was found: this is no data file",
                          "FileLoaded a.data"}));
}

void QDataSetReportsTest::aFileWithoutRecordsIsReportedAsLoadedWithAMessageAndIsNotMerged() {
    Scene scene;
    scene.add("a.data", keyLines("QA330") + headerLine());
    QVERIFY(scene.waitForLoaded("a.data"));
    QCOMPARE(scene.recorder.events().mid(3),
             (QStringList{scene.progress("a.data", 100), "Message a.data The file holds no records",
                          "FileLoaded a.data"}));
    QVERIFY(scene.set.fileNames().empty());
    QVERIFY(!scene.set.hasVariableKeys());
}

void QDataSetReportsTest::checksumErrorsComeOnceAndBeforeTheErrorText() {
    Scene scene;
    const std::string fields = "1600000000\t0\t1.5\t";
    int sum = 0;
    for (const char byte : "DATA\t" + fields) {
        sum += static_cast<unsigned char>(byte);
    }
    const std::string good = "DATA\t" + fields + std::to_string(sum % 256) + '\n';
    const std::string bad = "DATA\t" + fields + std::to_string((sum + 100) % 256) + '\n';
    scene.add("a.data", keyLines("QA330", "No/Such_Zone") + headerLine() + keyLines("QA330") +
                            "DATAH\tSECONDS\tNANOSECONDS\tCH4\tCHK\n" + good + bad + good + bad + bad);
    QVERIFY(scene.waitForLoaded("a.data"));
    const QString zonePath = QString::fromStdString(zoneDirectory) + "/No/Such_Zone";
    QCOMPARE(scene.recorder.events().mid(3),
             (QStringList{scene.progress("a.data", 100), "Message a.data Checksum errors: 3",
                          "Message a.data ERROR: Unable to open file: " + zonePath, "FileLoaded a.data"}));
    QCOMPARE(recordsOf(scene.set, "QA330"), 2U);
}

void QDataSetReportsTest::anUnreadableZoneIsAnErrorMessageAndTheRestIsLoaded() {
    Scene scene;
    scene.add("a.data", keyLines("QA340", "No/Such_Zone") + headerLine() + recordLines(start, 3) +
                            dataText("QA330", start, 5));
    QVERIFY(scene.waitForLoaded("a.data"));
    QCOMPARE(scene.recorder.countStartingWith("Message a.data ERROR: Unable to open file: "), 1);
    QCOMPARE(scene.recorder.countStartingWith("Message"), 1);
    QCOMPARE(scene.set.instruments(), std::set<std::string>{"QA330"});
    QCOMPARE(recordsOf(scene.set, "QA330"), 5U);
}

void QDataSetReportsTest::aFileThatVanishesBeforeItsWorkerStartsIsReportedAsLoadedWithTheReason() {
    Scene scene;
    WorkerGate gate(scene.set);
    for (int i = 0; i < workerCap; ++i) {
        scene.add(numbered(i), dataText(instrumentOf(i), start, 5));
    }
    const QString path = scene.add("last.data", dataText("QA330", start, 5));
    const QString begin = scene.progress("last.data", 0);
    QVERIFY(gate.waitForHeld(workerCap));
    QVERIFY(QFile::remove(path));
    gate.open();
    QVERIFY(scene.waitForLoaded("last.data"));
    QCOMPARE(
        scene.recorder.eventsOf("last.data"),
        (QStringList{"FileRemoved last.data", begin, "Progress last.data 0 0", "Progress last.data 100 0",
                     "Message last.data The file does not exist", "FileLoaded last.data"}));
    QVERIFY(scene.waitForRest());
    QCOMPARE(scene.loadedCount(), workerCap + 1);
    QCOMPARE(static_cast<int>(scene.set.fileNames().size()), workerCap);
}

QTEST_GUILESS_MAIN(QDataSetReportsTest)
#include "QDataSetReportsTest.moc"

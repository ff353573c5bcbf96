// Adding and removing files: which signals come in which order, and what is loaded in the end.

#include "loading/QDataSet.h"

#include "loading/FileLoading.h"
#include "loading/support/QDataSetScene.h"
#include "loading/support/WorkerGate.h"

#include <QDir>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QtTest>

#include <set>
#include <string>
#include <vector>

namespace {

int countOfMethods(const QMetaObject &object, QMetaMethod::MethodType type) {
    int count = 0;
    for (int i = object.methodOffset(); i < object.methodCount(); ++i) {
        count += object.method(i).methodType() == type ? 1 : 0;
    }
    return count;
}

} // namespace

class QDataSetTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    void signalsAndSlotsHaveTheirSignatures();
    void addingAFileEmitsFileRemovedThenProgressThenFileLoaded();
    void addingAFileThatWasNeverLoadedStillEmitsFileRemovedFirst();
    void addingTheSameFileTwiceRemovesTheFirstCopyAndLoadsItAgain();
    void addingAFileAgainWhileItsWorkerRunsLoadsItOnce();
    void aFileThatWasReplacedBetweenLoadsIsReadAnew();
    void aFileThatWasEmptiedBetweenLoadsLosesItsData();
    void aNameThatCannotBeLoadedStartsNoWorker();
    void addingALoadedFileThatIsGoneDropsItsData();
    void removingAFileWhileItsWorkerRunsEmitsFileRemovedAtOnceAndFileLoadedNeverComes();
    void removingAFileInTheMiddleOfItsReadingDropsIt();
    void removingAFileThatWasAddedAgainStopsAllItsWorkers();
    void removingAFileBetweenTheEndOfItsWorkerAndItsMergeDropsIt();
    void aRemovedFileThatIsNotLoadedAgainEndsWithProgress100();
    void aRemovedFileThatIsBeingLoadedAgainHasNoProgress100OfItsFirstWorker();
    void removingAFileLeavesTheOthers();
    void removingAFileThatStillWaitsLeavesItToBeLoaded();
    void removingANameThatWasNeverAddedEmitsFileRemoved();
};

void QDataSetTest::signalsAndSlotsHaveTheirSignatures() {
    const QMetaObject &set = QDataSet::staticMetaObject;
    const std::vector<const char *> signalTexts{
        "Progress(const QString &,int,qint64)", "Message(const QString &,const QString &)",
        "FileLoaded(const QString &)", "FileRemoved(const QString &)"};
    for (const char *text : signalTexts) {
        QVERIFY2(set.indexOfSignal(QMetaObject::normalizedSignature(text)) >= 0, text);
    }
    QCOMPARE(countOfMethods(set, QMetaMethod::Signal), static_cast<int>(signalTexts.size()));
    QVERIFY(set.indexOfSlot("OnThreadFinished(QDataSetThread*)") >= 0);
    const QMetaObject &thread = QDataSetThread::staticMetaObject;
    QVERIFY(thread.indexOfSignal("ThreadFinished(QDataSetThread*)") >= 0);
    QCOMPARE(countOfMethods(thread, QMetaMethod::Signal), 1);
    QCOMPARE(set.superClass(), &QObject::staticMetaObject);
    QCOMPARE(thread.superClass(), &QThread::staticMetaObject);
}

void QDataSetTest::addingAFileEmitsFileRemovedThenProgressThenFileLoaded() {
    Scene scene;
    const QString path = scene.folder.write("a.data", dataText("QA330", start, 5));
    QSignalSpy removed(&scene.set, SIGNAL(FileRemoved(const QString &)));
    QSignalSpy loaded(&scene.set, SIGNAL(FileLoaded(const QString &)));
    scene.set.AddFile(path);
    const QString begin = scene.progress("a.data", 0);
    QCOMPARE(scene.recorder.events(), (QStringList{"FileRemoved a.data", begin}));
    QVERIFY(scene.waitForLoaded("a.data"));
    QCOMPARE(scene.recorder.events(), (QStringList{"FileRemoved a.data", begin, begin,
                                                   scene.progress("a.data", 100), "FileLoaded a.data"}));
    // The names are those that were given.
    QCOMPARE(removed, (QList<QVariantList>{{path}}));
    QCOMPARE(loaded, (QList<QVariantList>{{path}}));
    QCOMPARE(recordsOf(scene.set, "QA330"), 5U);
    QCOMPARE(scene.set.fileNames(), std::set<std::string>{path.toStdString()});
    QVERIFY(workersOf(scene.set).isEmpty());
}

void QDataSetTest::addingAFileThatWasNeverLoadedStillEmitsFileRemovedFirst() {
    Scene scene;
    scene.add("a.data", dataText("QA330", start, 5));
    QCOMPARE(scene.recorder.events().first(), "FileRemoved a.data");
    QVERIFY(scene.waitForRest());
}

void QDataSetTest::addingTheSameFileTwiceRemovesTheFirstCopyAndLoadsItAgain() {
    Scene scene;
    const QString path = scene.add("a.data", dataText("QA330", start, 5));
    QVERIFY(scene.waitForLoaded("a.data"));
    const QStringList once = scene.recorder.events();
    scene.recorder.clear();
    scene.set.AddFile(path);
    QCOMPARE(recordsOf(scene.set, "QA330"), 0U);
    QVERIFY(scene.set.fileNames().empty());
    QVERIFY(scene.waitForLoaded("a.data"));
    QCOMPARE(scene.recorder.events(), once);
    QCOMPARE(recordsOf(scene.set, "QA330"), 5U);
}

void QDataSetTest::addingAFileAgainWhileItsWorkerRunsLoadsItOnce() {
    Scene scene;
    WorkerGate gate(scene.set);
    const QString path = scene.add("a.data", dataText("QA330", start, 5));
    QVERIFY(gate.waitForHeld(1));
    scene.set.AddFile(path);
    QVERIFY(gate.waitForHeld(2));
    gate.open();
    QVERIFY(scene.waitForRest());
    QCOMPARE(scene.recorder.count("FileRemoved a.data"), 2);
    QCOMPARE(scene.recorder.count("FileLoaded a.data"), 1);
    QCOMPARE(recordsOf(scene.set, "QA330"), 5U);
}

void QDataSetTest::aFileThatWasReplacedBetweenLoadsIsReadAnew() {
    Scene scene;
    scene.add("a.data", dataText("QA330", start, 5));
    QVERIFY(scene.waitForLoaded("a.data"));
    scene.add("a.data", dataText("QA340", start + 100, 7));
    QVERIFY(scene.waitForLoaded("a.data", 2));
    QCOMPARE(scene.set.instruments(), std::set<std::string>{"QA340"});
    QCOMPARE(recordsOf(scene.set, "QA340"), 7U);
    QCOMPARE(scene.set.variableKeys(), std::set<std::string>{"QA340:DATA:CH4"});
}

void QDataSetTest::aFileThatWasEmptiedBetweenLoadsLosesItsData() {
    Scene scene;
    scene.add("a.data", dataText("QA330", start, 5));
    QVERIFY(scene.waitForLoaded("a.data"));
    scene.add("a.data", "");
    QVERIFY(scene.waitForLoaded("a.data", 2));
    QVERIFY(scene.set.fileNames().empty());
    QVERIFY(!scene.set.hasVariableKeys());
}

void QDataSetTest::aNameThatCannotBeLoadedStartsNoWorker() {
    Scene scene;
    QVERIFY(QDir(scene.folder.path(".")).mkdir("folder"));
    scene.folder.makePipe("pipe.data");
    for (const QString name : {"missing.data", "folder", "pipe.data"}) {
        scene.recorder.clear();
        scene.set.AddFile(scene.folder.path(name));
        QVERIFY(workersOf(scene.set).isEmpty());
        // Otherwise nothing would tell why a file that is shown in the list has no data.
        QCOMPARE(scene.recorder.events(),
                 (QStringList{"FileRemoved " + name,
                              "Message " + name + ' ' + whyNotLoadable(scene.folder.path(name))}));
    }
}

void QDataSetTest::addingALoadedFileThatIsGoneDropsItsData() {
    Scene scene;
    const QString path = scene.add("a.data", dataText("QA330", start, 5));
    QVERIFY(scene.waitForLoaded("a.data"));
    QVERIFY(QFile::remove(path));
    scene.set.AddFile(path);
    QVERIFY(scene.set.fileNames().empty());
    QVERIFY(workersOf(scene.set).isEmpty());
}

void QDataSetTest::removingAFileWhileItsWorkerRunsEmitsFileRemovedAtOnceAndFileLoadedNeverComes() {
    Scene scene;
    WorkerGate gate(scene.set);
    const QString path = scene.add("a.data", dataText("QA330", start, 5));
    QVERIFY(gate.waitForHeld(1));
    scene.recorder.clear();
    scene.set.RemoveFile(path);
    QCOMPARE(scene.recorder.events(), QStringList{"FileRemoved a.data"});
    gate.open();
    QVERIFY(scene.waitForRest());
    QCOMPARE(scene.loadedCount(), 0);
    QVERIFY(scene.set.fileNames().empty());
}

void QDataSetTest::removingAFileInTheMiddleOfItsReadingDropsIt() {
    Scene scene;
    WorkerGate gate(scene.set, [](const QString &, int percent) { return percent > 0 && percent < 100; });
    const QString path = scene.add("a.data", dataText("QA330", start, 20'000));
    QVERIFY(gate.waitForHeld(1));
    scene.set.RemoveFile(path);
    gate.open();
    QVERIFY(scene.waitForRest());
    QCOMPARE(scene.loadedCount(), 0);
    QCOMPARE(recordsOf(scene.set, "QA330"), 0U);
    QCOMPARE(scene.recorder.countStartingWith("Message"), 0);
    QCOMPARE(scene.recorder.events().last(), scene.progress("a.data", 100));
}

void QDataSetTest::removingAFileThatWasAddedAgainStopsAllItsWorkers() {
    Scene scene;
    WorkerGate gate(scene.set);
    const QString path = scene.add("a.data", dataText("QA330", start, 5));
    QVERIFY(gate.waitForHeld(1));
    scene.set.AddFile(path);
    QVERIFY(gate.waitForHeld(2));
    scene.set.RemoveFile(path);
    gate.open();
    QVERIFY(scene.waitForRest());
    QCOMPARE(scene.loadedCount(), 0);
    QVERIFY(scene.set.fileNames().empty());
}

void QDataSetTest::removingAFileBetweenTheEndOfItsWorkerAndItsMergeDropsIt() {
    Scene scene;
    const QString path = scene.add("a.data", dataText("QA330", start, 5));
    QVERIFY(workersOf(scene.set).constFirst()->wait());
    scene.set.RemoveFile(path);
    QVERIFY(scene.waitForRest());
    QCOMPARE(scene.loadedCount(), 0);
    QVERIFY(scene.set.fileNames().empty());
}

void QDataSetTest::aRemovedFileThatIsNotLoadedAgainEndsWithProgress100() {
    Scene scene;
    WorkerGate gate(scene.set);
    const QString path = scene.add("a.data", dataText("QA330", start, 5));
    QVERIFY(gate.waitForHeld(1));
    scene.set.RemoveFile(path);
    gate.open();
    QVERIFY(scene.waitForRest());
    // Whoever counts unfinished files would wait for ever without it.
    const QString begin = scene.progress("a.data", 0);
    QCOMPARE(scene.recorder.events(), (QStringList{"FileRemoved a.data", begin, "FileRemoved a.data", begin,
                                                   scene.progress("a.data", 100)}));
}

void QDataSetTest::aRemovedFileThatIsBeingLoadedAgainHasNoProgress100OfItsFirstWorker() {
    Scene scene;
    WorkerGate gate(scene.set);
    const QString path = scene.add("a.data", dataText("QA330", start, 5));
    QVERIFY(gate.waitForHeld(1));
    scene.set.AddFile(path);
    QVERIFY(gate.waitForHeld(2));
    gate.letGo(path); // whichever it is, one of the two still loads or has loaded
    QVERIFY(SignalRecorder::waitUntil([&] { return workersOf(scene.set).size() == 1; }));
    const bool wasTheSecond = scene.recorder.count("FileLoaded a.data") == 1;
    QCOMPARE(scene.recorder.count(scene.progress("a.data", 100)), wasTheSecond ? 1 : 0);
    gate.open();
    QVERIFY(scene.waitForRest());
    QCOMPARE(scene.recorder.count("FileLoaded a.data"), 1);
}

void QDataSetTest::removingAFileLeavesTheOthers() {
    Scene scene;
    const QString a = scene.add("a.data", dataText("QA330", start, 5));
    const QString b = scene.add("b.data", dataText("QA330", start + 10, 7));
    QVERIFY(scene.waitForRest());
    scene.set.RemoveFile(a);
    QCOMPARE(scene.set.fileNames(), std::set<std::string>{b.toStdString()});
    QCOMPARE(recordsOf(scene.set, "QA330"), 7U);
}

void QDataSetTest::removingAFileThatStillWaitsLeavesItToBeLoaded() {
    Scene scene;
    WorkerGate gate(scene.set);
    for (int i = 0; i <= workerCap; ++i) {
        scene.add(numbered(i), dataText(instrumentOf(i), start, 5));
    }
    scene.set.RemoveFile(scene.folder.path(numbered(workerCap)));
    QCOMPARE(scene.recorder.events().last(), "FileRemoved " + numbered(workerCap));
    gate.open();
    QVERIFY(scene.waitForRest());
    QCOMPARE(scene.recorder.count("FileLoaded " + numbered(workerCap)), 1);
    QCOMPARE(recordsOf(scene.set, instrumentOf(workerCap)), 5U);
}

void QDataSetTest::removingANameThatWasNeverAddedEmitsFileRemoved() {
    Scene scene;
    scene.set.RemoveFile("never.data");
    QCOMPARE(scene.recorder.events(), QStringList{"FileRemoved never.data"});
}

QTEST_GUILESS_MAIN(QDataSetTest)
#include "QDataSetTest.moc"

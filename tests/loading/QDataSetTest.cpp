// The files of the interface: which signals come in which order, and what is loaded in the end.

#include "loading/QDataSet.h"

#include "loading/FileLoading.h"
#include "loading/QDataSetThread.h"
#include "loading/support/DataText.h"
#include "loading/support/SignalRecorder.h"
#include "loading/support/TempFolder.h"
#include "loading/support/WorkerGate.h"
#include "loading/support/ZipWriting.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr std::uint32_t start = 1'600'000'000;
constexpr int cap = 10; // of workers

QList<QDataSetThread *> workersOf(const QDataSet &set) {
    return set.findChildren<QDataSetThread *>(QString(), Qt::FindDirectChildrenOnly);
}

std::uint32_t recordsOf(const QDataSet &set, const std::string &instrument) {
    std::uint32_t records = 0;
    for (const auto &fragment : set.fragmentsOf(instrument, "DATA")) {
        records += fragment->recordCount();
    }
    return records;
}

QString numbered(int i) {
    return QStringLiteral("file%1.data").arg(i, 4, 10, QLatin1Char('0'));
}

std::string instrumentOf(int i) {
    return "QA" + std::to_string(i);
}

// A data set that is listened to, and a folder for its files.
struct Scene {
    TempFolder folder;
    QDataSet set;
    SignalRecorder recorder{set};

    // Writes a file and adds it.
    QString add(const QString &name, std::string_view text) {
        QString path = folder.write(name, text);
        set.AddFile(path);
        return path;
    }
    bool waitForLoaded(const QString &name, int times = 1) const {
        return recorder.waitForEvents("FileLoaded " + name, times);
    }
    // Until no worker is left, so that no file waits either.
    bool waitForRest() const {
        return SignalRecorder::waitUntil([this] { return workersOf(set).isEmpty(); });
    }
    int loadedCount() const { return recorder.countStartingWith("FileLoaded"); }
    // "Progress NAME PERCENT SIZE" of a file of the folder.
    QString progress(const QString &name, int percent) const {
        return QStringLiteral("Progress %1 %2 %3")
            .arg(name)
            .arg(percent)
            .arg(QFileInfo(folder.path(name)).size());
    }
};

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

    void addingElevenFilesStartsTenWorkersAndTheEleventhWhenTheFirstFinishes();
    void filesAreStartedInTheOrderInWhichTheyWereAdded();
    void atMostTenWorkersRunAtAnyTime();

    void aFileWithFewerThan1000LinesEmitsTheProgressValues0And100FromItsWorker();
    void anArchiveNameWhoseExtensionIsInCapitalsIsReadAsAnArchive();
    void anArchiveThatCannotBeOpenedIsReportedAsLoadedWithAMessage();
    void aFileThatIsNoDataFileIsReportedAsLoadedWithAMessage();
    void aFileWithoutRecordsIsReportedAsLoadedWithAMessageAndIsNotMerged();
    void checksumErrorsComeOnceAndBeforeTheErrorText();
    void anUnreadableZoneIsAnErrorMessageAndTheRestIsLoaded();
    void aFileThatVanishesBeforeItsWorkerStartsIsReportedAsLoadedWithTheReason();

    void fragmentsOfAllFilesAreOrderedByTheirFirstRecordTime();
    void queriesGiveWhatTheDataSetGives();
    void queriesWhileFilesLoadSeeTheFilesLoadedSoFar();
    void queriesOfAnotherThreadSeeWholeFilesOnly();
    void receiversMayQueryAddAndRemoveFiles();
    void fileNamesAreUtf8InTheDataSet();

    void destructionWhileTenWorkersRunStopsThemTogether();
    void addingAndRemovingOneFileQuicklyLeavesItsDataOnceOrNotAtAll();
    void addingOneFileQuicklyAndOftenLeavesItsDataOnce();
    void twoThousandFilesAreAddedMergedAndRemoved();
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
    for (int i = 0; i <= cap; ++i) {
        scene.add(numbered(i), dataText(instrumentOf(i), start, 5));
    }
    scene.set.RemoveFile(scene.folder.path(numbered(cap)));
    QCOMPARE(scene.recorder.events().last(), "FileRemoved " + numbered(cap));
    gate.open();
    QVERIFY(scene.waitForRest());
    QCOMPARE(scene.recorder.count("FileLoaded " + numbered(cap)), 1);
    QCOMPARE(recordsOf(scene.set, instrumentOf(cap)), 5U);
}

void QDataSetTest::removingANameThatWasNeverAddedEmitsFileRemoved() {
    Scene scene;
    scene.set.RemoveFile("never.data");
    QCOMPARE(scene.recorder.events(), QStringList{"FileRemoved never.data"});
}

void QDataSetTest::addingElevenFilesStartsTenWorkersAndTheEleventhWhenTheFirstFinishes() {
    Scene scene;
    WorkerGate gate(scene.set);
    for (int i = 0; i <= cap; ++i) {
        scene.add(numbered(i), dataText(instrumentOf(i), start, 5));
    }
    QVERIFY(gate.waitForHeld(cap));
    QCOMPARE(workersOf(scene.set).size(), cap);
    for (const QDataSetThread *worker : workersOf(scene.set)) {
        QVERIFY(worker->fileName() != scene.folder.path(numbered(cap)));
    }

    gate.letGo(scene.folder.path(numbered(3)));
    // The place is free only when the finish has been handled.
    QVERIFY(gate.waitForHeld(cap - 1));
    QCOMPARE(workersOf(scene.set).size(), cap);
    scene.recorder.onEvent = [&](const QString &event) {
        if (event == "FileLoaded " + numbered(3)) {
            QCOMPARE(workersOf(scene.set).size(), cap);
            QCOMPARE(gate.held(), cap - 1);
        }
    };
    QVERIFY(scene.waitForLoaded(numbered(3)));
    QVERIFY(gate.waitForHeld(cap));
    QCOMPARE(workersOf(scene.set).size(), cap);
    QCOMPARE(workersOf(scene.set).constLast()->fileName(), scene.folder.path(numbered(cap)));
    QCOMPARE(scene.loadedCount(), 1);
    gate.open();
    QVERIFY(scene.waitForRest());
    QCOMPARE(scene.loadedCount(), cap + 1);
}

void QDataSetTest::filesAreStartedInTheOrderInWhichTheyWereAdded() {
    Scene scene;
    WorkerGate gate(scene.set);
    constexpr int files = cap + 5;
    for (int i = 0; i < files; ++i) {
        scene.add(numbered(files - i), dataText("QA330", start, 5));
    }
    QVERIFY(gate.waitForHeld(cap));
    for (int i = 0; i < files; ++i) {
        gate.letGo(scene.folder.path(numbered(files - i)));
        QVERIFY(scene.waitForLoaded(numbered(files - i)));
        const int started = std::min(files, i + 1 + cap);
        QVERIFY(gate.waitForHeld(started - (i + 1)));
        for (const QDataSetThread *worker : workersOf(scene.set)) {
            QVERIFY(worker->fileName() >= scene.folder.path(numbered(files - started + 1)));
        }
    }
    QVERIFY(scene.waitForRest());
}

void QDataSetTest::atMostTenWorkersRunAtAnyTime() {
    std::atomic<int> running = 0;
    std::atomic<int> most = 0;
    Scene scene;
    // Both are counted on the workers' threads.
    const QThread *const interfaceThread = QThread::currentThread();
    connect(&scene.set, &QDataSet::Progress, [&](const QString &, int percent) {
        if (QThread::currentThread() != interfaceThread && percent == 0) {
            const int now = ++running;
            for (int before = most; now > before && !most.compare_exchange_weak(before, now);) {
            }
        } else if (percent == 100) {
            --running;
        }
    });
    int mostWorkers = 0;
    scene.recorder.onEvent = [&](const QString &) {
        mostWorkers = std::max(mostWorkers, static_cast<int>(workersOf(scene.set).size()));
    };
    constexpr int files = 60;
    for (int i = 0; i < files; ++i) {
        scene.add(numbered(i), dataText(instrumentOf(i), start, 1500));
    }
    QVERIFY(scene.waitForRest());
    QCOMPARE(scene.loadedCount(), files);
    QCOMPARE(mostWorkers, cap);
    QVERIFY(most >= 1);
    QVERIFY(most <= cap);
}

void QDataSetTest::aFileWithFewerThan1000LinesEmitsTheProgressValues0And100FromItsWorker() {
    Scene scene;
    scene.add("a.data", dataText("QA330", start, 996));
    scene.recorder.clear();
    QVERIFY(scene.waitForLoaded("a.data"));
    QCOMPARE(scene.recorder.events(),
             (QStringList{scene.progress("a.data", 0), scene.progress("a.data", 100), "FileLoaded a.data"}));
}

void QDataSetTest::anArchiveNameWhoseExtensionIsInCapitalsIsReadAsAnArchive() {
    Scene scene;
    const QString path = scene.folder.path("A.GHG");
    writeZip(path, {{"a.data", dataText("QA330", start, 5)}, {"a.metadata", "x"}});
    scene.set.AddFile(path);
    QVERIFY(scene.waitForLoaded("A.GHG"));
    QCOMPARE(recordsOf(scene.set, "QA330"), 5U);
    QCOMPARE(scene.recorder.countStartingWith("Message"), 0);
    QCOMPARE(scene.recorder.count(scene.progress("A.GHG", 100)), 1);
}

void QDataSetTest::anArchiveThatCannotBeOpenedIsReportedAsLoadedWithAMessage() {
    Scene scene;
    scene.add("a.ghg", dataText("QA330", start, 5));
    QVERIFY(scene.waitForLoaded("a.ghg"));
    const QString begin = scene.progress("a.ghg", 0);
    QCOMPARE(scene.recorder.events(),
             (QStringList{"FileRemoved a.ghg", begin, begin, scene.progress("a.ghg", 100),
                          "Message a.ghg The archive cannot be opened", "FileLoaded a.ghg"}));
    QVERIFY(scene.set.fileNames().empty());
}

void QDataSetTest::aFileThatIsNoDataFileIsReportedAsLoadedWithAMessage() {
    Scene scene;
    scene.add("a.data", "Dear reader,\n");
    QVERIFY(scene.waitForLoaded("a.data"));
    QCOMPARE(scene.recorder.events().mid(3),
             (QStringList{scene.progress("a.data", 100),
                          "Message a.data No data header line was found: this is no data file",
                          "FileLoaded a.data"}));
}

void QDataSetTest::aFileWithoutRecordsIsReportedAsLoadedWithAMessageAndIsNotMerged() {
    Scene scene;
    scene.add("a.data", keyLines("QA330") + headerLine());
    QVERIFY(scene.waitForLoaded("a.data"));
    QCOMPARE(scene.recorder.events().mid(3),
             (QStringList{scene.progress("a.data", 100), "Message a.data The file holds no records",
                          "FileLoaded a.data"}));
    QVERIFY(scene.set.fileNames().empty());
    QVERIFY(!scene.set.hasVariableKeys());
}

void QDataSetTest::checksumErrorsComeOnceAndBeforeTheErrorText() {
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

void QDataSetTest::anUnreadableZoneIsAnErrorMessageAndTheRestIsLoaded() {
    Scene scene;
    scene.add("a.data", keyLines("QA340", "No/Such_Zone") + headerLine() + recordLines(start, 3) +
                            dataText("QA330", start, 5));
    QVERIFY(scene.waitForLoaded("a.data"));
    QCOMPARE(scene.recorder.countStartingWith("Message a.data ERROR: Unable to open file: "), 1);
    QCOMPARE(scene.recorder.countStartingWith("Message"), 1);
    QCOMPARE(scene.set.instruments(), std::set<std::string>{"QA330"});
    QCOMPARE(recordsOf(scene.set, "QA330"), 5U);
}

void QDataSetTest::aFileThatVanishesBeforeItsWorkerStartsIsReportedAsLoadedWithTheReason() {
    Scene scene;
    WorkerGate gate(scene.set);
    for (int i = 0; i < cap; ++i) {
        scene.add(numbered(i), dataText(instrumentOf(i), start, 5));
    }
    const QString path = scene.add("last.data", dataText("QA330", start, 5));
    const QString begin = scene.progress("last.data", 0);
    QVERIFY(gate.waitForHeld(cap));
    QVERIFY(QFile::remove(path));
    gate.open();
    QVERIFY(scene.waitForLoaded("last.data"));
    QCOMPARE(
        scene.recorder.eventsOf("last.data"),
        (QStringList{"FileRemoved last.data", begin, "Progress last.data 0 0", "Progress last.data 100 0",
                     "Message last.data The file does not exist", "FileLoaded last.data"}));
    QVERIFY(scene.waitForRest());
    QCOMPARE(scene.loadedCount(), cap + 1);
    QCOMPARE(static_cast<int>(scene.set.fileNames().size()), cap);
}

void QDataSetTest::fragmentsOfAllFilesAreOrderedByTheirFirstRecordTime() {
    Scene scene;
    WorkerGate gate(scene.set);
    scene.add("late.data", dataText("QA330", start + 1000, 5));
    scene.add("early.data", dataText("QA330", start, 5));
    scene.add("middle.data", dataText("QA330", start + 500, 5) + dataText("QA330", start + 2000, 5));
    QVERIFY(gate.waitForHeld(3));
    gate.open();
    QVERIFY(scene.waitForRest());
    std::vector<double> times;
    for (const auto &fragment : scene.set.fragmentsOf("QA330", "DATA")) {
        times.push_back(fragment->firstTime() - start);
    }
    QCOMPARE(times, (std::vector<double>{0, 500, 1000, 2000}));
}

void QDataSetTest::queriesGiveWhatTheDataSetGives() {
    Scene scene;
    const std::string text = keyLines("QA330", "Europe/London") +
                             "Software Version:\t1.2\nDATADIAGH\tONE\tTWO\n"
                             "DATAH\tSECONDS\tNANOSECONDS\tDIAG\tCH4 (umol/mol)\n"
                             "DATA\t1600000000\t0\t3\t1.5\nDATA\t1600007000\t0\t1\t2.5\n"
                             "DATASTATH\tSECONDS\tNANOSECONDS\tTEMP (C)\nDATASTAT\t1600000001\t0\t20\n";
    const QString path = scene.add("a.data", text);
    QVERIFY(scene.waitForLoaded("a.data"));
    DataSet source(path.toStdString());
    loadFile(path, source, std::atomic<bool>(false), [](int, qint64) {});
    DataSet expected;
    expected.merge(source);

    const QDataSet &set = scene.set;
    const std::string key = "QA330:DATA:CH4 (umol/mol)";
    QVERIFY(expected.variableKeys().contains(key));
    QCOMPARE(set.variableKeys(), expected.variableKeys());
    QCOMPARE(set.hasVariableKeys(), true);
    QCOMPARE(set.fileNames(), expected.fileNames());
    QCOMPARE(set.instruments(), expected.instruments());
    QCOMPARE(set.variableKeysOfInstrument("QA330"), expected.variableKeysOfInstrument("QA330"));
    QCOMPARE(set.variableKeysOfInstrumentAndTag("QA330", "DATASTAT"),
             std::set<std::string>{"QA330:DATASTAT:TEMP (C)"});
    QCOMPARE(set.tagsOfInstrument("QA330"), (std::set<std::string>{"DATA", "DATASTAT"}));
    QCOMPARE(set.versionOfInstrument("QA330"), std::string("1.2"));
    QCOMPARE(set.timeZoneNameOfKey(key), std::string("Europe/London"));
    QCOMPARE(set.valueNamesOfInstrumentAndTag("QA330", "DATA"),
             expected.valueNamesOfInstrumentAndTag("QA330", "DATA"));
    QCOMPARE(set.unitsOfInstrumentAndTag("QA330", "DATASTAT"), std::vector<std::string>{"C"});
    QCOMPARE(set.diagnosticNamesOfInstrumentAndTag("QA330", "DATA"),
             (std::vector<std::string>{"ONE", "TWO"}));
    QCOMPARE(set.fragmentsOf("QA330", "DATA").size(), std::size_t{1});

    double low = std::numeric_limits<double>::max();
    double high = -low;
    set.valueRange(key, low, high);
    QCOMPARE(low, 1.5);
    QCOMPARE(high, 2.5);
    double first = std::numeric_limits<double>::max();
    double last = 0;
    set.timeRangeOfInstrument("QA330", first, last);
    QCOMPARE(first, 1600000000.0);
    QCOMPARE(last, 1600007000.0);

    // The records of the file, read again.
    std::vector<double> times;
    std::vector<double> values;
    set.series(key, "", 1600000000, 1600000100, times, values);
    QCOMPARE(times, std::vector<double>{1600000000});
    QCOMPARE(values, std::vector<double>{1.5});

    const std::uint64_t revision = set.variableKeysRevision();
    scene.set.RemoveFile(path);
    QVERIFY(set.variableKeysRevision() != revision);
    QCOMPARE(set.versionOfInstrument("QA330"), std::string("Unknown"));
    QVERIFY(!set.hasVariableKeys());
}

void QDataSetTest::queriesWhileFilesLoadSeeTheFilesLoadedSoFar() {
    Scene scene;
    constexpr int files = 12;
    int checked = 0;
    scene.recorder.onEvent = [&](const QString &event) {
        const int loaded = scene.loadedCount();
        QCOMPARE(static_cast<int>(scene.set.fileNames().size()), loaded);
        QCOMPARE(static_cast<int>(scene.set.instruments().size()), loaded);
        QCOMPARE(static_cast<int>(scene.set.variableKeys().size()), loaded);
        if (event.startsWith("FileLoaded")) {
            const int i = event.mid(15, 4).toInt();
            std::vector<double> times;
            std::vector<double> values;
            scene.set.series(instrumentOf(i) + ":DATA:CH4", "", start, start + 4000, times, values);
            QCOMPARE(static_cast<int>(values.size()), 3000);
            QCOMPARE(values.back(), 2999.0);
            ++checked;
        }
    };
    for (int i = 0; i < files; ++i) {
        scene.add(numbered(i), dataText(instrumentOf(i), start, 3000));
    }
    QVERIFY(scene.waitForRest());
    QCOMPARE(checked, files);
}

void QDataSetTest::queriesOfAnotherThreadSeeWholeFilesOnly() {
    Scene scene;
    constexpr int files = 6;
    constexpr std::uint32_t records = 400;
    std::atomic<bool> isDone = false;
    std::atomic<int> partial = 0;
    std::thread reader([&] {
        while (!isDone) {
            for (int i = 0; i < files; ++i) {
                const std::uint32_t seen = recordsOf(scene.set, instrumentOf(i));
                partial += seen == 0 || seen == records ? 0 : 1;
                scene.set.variableKeysOfInstrument(instrumentOf(i));
                double low = 0;
                double high = 0;
                scene.set.valueRange(instrumentOf(i) + ":DATA:CH4", low, high);
            }
            std::this_thread::yield();
        }
    });
    bool good = true;
    for (int round = 1; round <= 5; ++round) {
        for (int i = 0; i < files; ++i) {
            scene.add(numbered(i), dataText(instrumentOf(i), start, records));
        }
        good = good && scene.waitForRest();
        scene.set.RemoveFile(scene.folder.path(numbered(round % files)));
    }
    isDone = true;
    reader.join();
    QVERIFY(good);
    QCOMPARE(partial.load(), 0);
    QCOMPARE(static_cast<int>(scene.set.fileNames().size()), files - 1);
}

void QDataSetTest::receiversMayQueryAddAndRemoveFiles() {
    Scene scene;
    const QString a = scene.folder.write("a.data", dataText("QA330", start, 5));
    const QString b = scene.folder.write("b.data", dataText("QA340", start, 7));
    // A lock that was held while signals go out would not come free.
    scene.recorder.onEvent = [&](const QString &event) {
        scene.set.variableKeys();
        if (event == "FileLoaded a.data") {
            scene.set.RemoveFile(a);
            scene.set.AddFile(b);
        }
    };
    scene.set.AddFile(a);
    QVERIFY(scene.waitForLoaded("b.data"));
    QCOMPARE(scene.set.fileNames(), std::set<std::string>{b.toStdString()});
    QVERIFY(workersOf(scene.set).isEmpty());
}

void QDataSetTest::fileNamesAreUtf8InTheDataSet() {
    const QString name = QString::fromUtf8("S\xc3\xbc"
                                           "d.data");
    if (QFile::decodeName(QFile::encodeName(name)) != name) {
        QSKIP("this locale has no such file name");
    }
    Scene scene;
    const QString path = scene.add(name, dataText("QA330", start, 5));
    QVERIFY(scene.waitForLoaded(name));
    QCOMPARE(scene.set.fileNames(), std::set<std::string>{path.toUtf8().toStdString()});
    scene.set.RemoveFile(path);
    QVERIFY(scene.set.fileNames().empty());
}

void QDataSetTest::destructionWhileTenWorkersRunStopsThemTogether() {
    const TempFolder folder;
    QList<QDataSetThread *> workers;
    std::atomic<int> stopped = 0;
    auto set = std::make_unique<QDataSet>();
    SignalRecorder recorder(*set);
    WorkerGate gate(*set);
    const QThread *const interfaceThread = QThread::currentThread();
    // Behind the gate each worker goes on only when all ten have been told to stop.
    connect(set.get(), &QDataSet::Progress, [&](const QString &, int percent) {
        if (QThread::currentThread() == interfaceThread || percent != 0) {
            return;
        }
        for (const QDataSetThread *worker : qAsConst(workers)) {
            while (!worker->isCancelled()) {
                std::this_thread::yield();
            }
        }
        ++stopped;
    });
    for (int i = 0; i < cap + 2; ++i) {
        set->AddFile(folder.write(numbered(i), dataText(instrumentOf(i), start, 5)));
    }
    QVERIFY(gate.waitForHeld(cap));
    workers = workersOf(*set);
    QCOMPARE(workers.size(), cap);
    gate.open();
    set.reset();
    QCOMPARE(stopped.load(), cap);
    QCoreApplication::processEvents();
    QCOMPARE(recorder.countStartingWith("FileLoaded"), 0);
    // Those that waited were never started: their one Progress is that of AddFile.
    QCOMPARE(recorder.countStartingWith("Progress " + numbered(cap)), 1);
    QCOMPARE(recorder.countStartingWith("Progress " + numbered(cap + 1)), 1);
}

void QDataSetTest::addingAndRemovingOneFileQuicklyLeavesItsDataOnceOrNotAtAll() {
    Scene scene;
    const QString path = scene.folder.write("a.data", dataText("QA330", start, 50));
    for (int i = 0; i < 200; ++i) {
        scene.set.AddFile(path);
        if (i % 7 == 0) {
            QCoreApplication::processEvents();
        }
        scene.set.RemoveFile(path);
    }
    QVERIFY(scene.waitForRest());
    const std::uint32_t records = recordsOf(scene.set, "QA330");
    QVERIFY2(records == 0 || records == 50, qPrintable(QString::number(records)));
    QCOMPARE(scene.set.fileNames().empty(), records == 0);
    QCOMPARE(scene.set.hasVariableKeys(), records != 0);
    // Each worker that finished has said so, and the bar waits for none.
    QCOMPARE(scene.recorder.events().filter("Progress").last(), scene.progress("a.data", 100));

    scene.set.RemoveFile(path);
    QVERIFY(scene.set.fileNames().empty());
    QVERIFY(!scene.set.hasVariableKeys());
}

void QDataSetTest::addingOneFileQuicklyAndOftenLeavesItsDataOnce() {
    Scene scene;
    const QString path = scene.folder.write("a.data", dataText("QA330", start, 50));
    for (int i = 0; i < 200; ++i) {
        scene.set.AddFile(path);
    }
    QVERIFY(scene.waitForRest());
    QCOMPARE(recordsOf(scene.set, "QA330"), 50U);
    scene.set.RemoveFile(path);
    QVERIFY(!scene.set.hasVariableKeys());
}

void QDataSetTest::twoThousandFilesAreAddedMergedAndRemoved() {
    Scene scene;
    constexpr int files = 2000;
    for (int i = 0; i < files; ++i) {
        // The last is the earliest.
        const auto first = start + static_cast<std::uint32_t>(files - i) * 10;
        scene.add(numbered(i), dataText(instrumentOf(i % 3), first, 4));
    }
    QVERIFY(scene.waitForRest());
    QCOMPARE(scene.loadedCount(), files);
    QCOMPARE(static_cast<int>(scene.set.fileNames().size()), files);
    QCOMPARE(scene.set.instruments(), (std::set<std::string>{"QA0", "QA1", "QA2"}));
    std::uint32_t records = 0;
    for (const char *instrument : {"QA0", "QA1", "QA2"}) {
        records += recordsOf(scene.set, instrument);
        const auto fragments = scene.set.fragmentsOf(instrument, "DATA");
        QVERIFY(std::is_sorted(fragments.begin(), fragments.end(),
                               [](const auto &a, const auto &b) { return a->firstTime() < b->firstTime(); }));
    }
    QCOMPARE(records, std::uint32_t{files} * 4);

    for (int i = 0; i < files; i += 2) {
        scene.set.RemoveFile(scene.folder.path(numbered(i)));
    }
    QCOMPARE(static_cast<int>(scene.set.fileNames().size()), files / 2);
    QVERIFY(!scene.set.fileNames().contains(scene.folder.path(numbered(0)).toStdString()));
    QVERIFY(scene.set.fileNames().contains(scene.folder.path(numbered(1)).toStdString()));
    for (int i = 1; i < files; i += 2) {
        scene.set.RemoveFile(scene.folder.path(numbered(i)));
    }
    QVERIFY(scene.set.fileNames().empty());
    QVERIFY(scene.set.variableKeys().empty());
    QCOMPARE(recordsOf(scene.set, "QA0"), 0U);
}

QTEST_GUILESS_MAIN(QDataSetTest)
#include "QDataSetTest.moc"

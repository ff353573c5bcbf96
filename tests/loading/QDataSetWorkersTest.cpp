// How many workers run, how they end, and what many of them leave.

#include "loading/QDataSet.h"
#include "loading/support/QDataSetScene.h"
#include "loading/support/WorkerGate.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <memory>
#include <set>
#include <string>
#include <thread>

class QDataSetWorkersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    void addingElevenFilesStartsTenWorkersAndTheEleventhWhenTheFirstFinishes();
    void filesAreStartedInTheOrderInWhichTheyWereAdded();
    void atMostTenWorkersRunAtAnyTime();
    void destructionWhileTenWorkersRunStopsThemTogether();
    void addingAndRemovingOneFileQuicklyLeavesItsDataOnceOrNotAtAll();
    void addingOneFileQuicklyAndOftenLeavesItsDataOnce();
    void whatAnOutdatedWorkerReportsLastIsNotTheLastReport();
    void aLargeFileThatIsRemovedWhileItLoadsAndAddedAgainIsLoadedWhole();
    void twoThousandFilesAreAddedMergedAndRemoved();
};

void QDataSetWorkersTest::addingElevenFilesStartsTenWorkersAndTheEleventhWhenTheFirstFinishes() {
    Scene scene;
    WorkerGate gate(scene.set);
    for (int i = 0; i <= workerCap; ++i) {
        scene.add(numbered(i), dataText(instrumentOf(i), start, 5));
    }
    QVERIFY(gate.waitForHeld(workerCap));
    QCOMPARE(workersOf(scene.set).size(), workerCap);
    for (const QDataSetThread *worker : workersOf(scene.set)) {
        QVERIFY(worker->fileName() != scene.folder.path(numbered(workerCap)));
    }

    gate.letGo(scene.folder.path(numbered(3)));
    // The place is free only when the finish has been handled.
    QVERIFY(gate.waitForHeld(workerCap - 1));
    QCOMPARE(workersOf(scene.set).size(), workerCap);
    scene.recorder.onEvent = [&](const QString &event) {
        if (event == "FileLoaded " + numbered(3)) {
            QCOMPARE(workersOf(scene.set).size(), workerCap);
            QCOMPARE(gate.held(), workerCap - 1);
        }
    };
    QVERIFY(scene.waitForLoaded(numbered(3)));
    QVERIFY(gate.waitForHeld(workerCap));
    QCOMPARE(workersOf(scene.set).size(), workerCap);
    QCOMPARE(workersOf(scene.set).constLast()->fileName(), scene.folder.path(numbered(workerCap)));
    QCOMPARE(scene.loadedCount(), 1);
    gate.open();
    QVERIFY(scene.waitForRest());
    QCOMPARE(scene.loadedCount(), workerCap + 1);
}

void QDataSetWorkersTest::filesAreStartedInTheOrderInWhichTheyWereAdded() {
    Scene scene;
    WorkerGate gate(scene.set);
    constexpr int files = workerCap + 5;
    for (int i = 0; i < files; ++i) {
        scene.add(numbered(files - i), dataText("QA330", start, 5));
    }
    QVERIFY(gate.waitForHeld(workerCap));
    for (int i = 0; i < files; ++i) {
        gate.letGo(scene.folder.path(numbered(files - i)));
        QVERIFY(scene.waitForLoaded(numbered(files - i)));
        const int started = std::min(files, i + 1 + workerCap);
        QVERIFY(gate.waitForHeld(started - (i + 1)));
        for (const QDataSetThread *worker : workersOf(scene.set)) {
            QVERIFY(worker->fileName() >= scene.folder.path(numbered(files - started + 1)));
        }
    }
    QVERIFY(scene.waitForRest());
}

void QDataSetWorkersTest::atMostTenWorkersRunAtAnyTime() {
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
    QCOMPARE(mostWorkers, workerCap);
    QVERIFY(most >= 1);
    QVERIFY(most <= workerCap);
}

void QDataSetWorkersTest::destructionWhileTenWorkersRunStopsThemTogether() {
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
    for (int i = 0; i < workerCap + 2; ++i) {
        set->AddFile(folder.write(numbered(i), dataText(instrumentOf(i), start, 5)));
    }
    QVERIFY(gate.waitForHeld(workerCap));
    workers = workersOf(*set);
    QCOMPARE(workers.size(), workerCap);
    gate.open();
    set.reset();
    QCOMPARE(stopped.load(), workerCap);
    QCoreApplication::processEvents();
    QCOMPARE(recorder.countStartingWith("FileLoaded"), 0);
    // Those that waited were never started: their one Progress is that of AddFile.
    QCOMPARE(recorder.countStartingWith("Progress " + numbered(workerCap)), 1);
    QCOMPARE(recorder.countStartingWith("Progress " + numbered(workerCap + 1)), 1);
}

void QDataSetWorkersTest::addingAndRemovingOneFileQuicklyLeavesItsDataOnceOrNotAtAll() {
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

void QDataSetWorkersTest::addingOneFileQuicklyAndOftenLeavesItsDataOnce() {
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

// The first of two workers begins when the second is done, and its end is heard of first.
void QDataSetWorkersTest::whatAnOutdatedWorkerReportsLastIsNotTheLastReport() {
    TempFolder folder;
    QDataSet set;
    // Connected before and behind the recorder: holds the first worker before its report is written down, and
    // the second one behind it.
    std::atomic<bool> isFirst = true;
    WorkerGate before(set, [&](const QString &, int) { return isFirst.exchange(false); });
    SignalRecorder recorder(set);
    WorkerGate behind(set, [](const QString &, int percent) { return percent == 100; });
    const QString path = folder.write("a.data", dataText("QA330", start, 50));
    set.AddFile(path);
    QVERIFY(before.waitForHeld(1));
    QDataSetThread *const first = workersOf(set).front();
    set.AddFile(path);
    QVERIFY(behind.waitForHeld(1));
    before.open();
    QVERIFY(first->wait(QDeadlineTimer(120'000)));
    behind.open();
    QVERIFY(SignalRecorder::waitUntil([&set] { return workersOf(set).isEmpty(); }));
    const QStringList reports = recorder.eventsOf("a.data").filter("Progress");
    QVERIFY2(reports.contains("Progress a.data 0 " + QString::number(QFileInfo(path).size())),
             qPrintable(reports.join('\n')));
    QCOMPARE(reports.back(), "Progress a.data 100 " + QString::number(QFileInfo(path).size()));
    QCOMPARE(recordsOf(set, "QA330"), 50U);
}

// Other cores help with a file of this size.
void QDataSetWorkersTest::aLargeFileThatIsRemovedWhileItLoadsAndAddedAgainIsLoadedWhole() {
    Scene scene;
    {
        WorkerGate gate(scene.set, [](const QString &, int percent) { return percent >= 30; });
        const QString path = scene.add("large.data", largeDataText("QA330", start, 70'000));
        QVERIFY(QFileInfo(path).size() > ParsingThreads::smallSource);
        QVERIFY(gate.waitForHeld(1));
        scene.set.RemoveFile(path);
        gate.open();
        QVERIFY(scene.waitForRest());
        QCOMPARE(scene.loadedCount(), 0);
        scene.set.AddFile(path);
        scene.add("small.data", dataText("QA340", start, 5));
        QVERIFY(scene.waitForRest());
    }
    QCOMPARE(scene.loadedCount(), 2);
    QCOMPARE(recordsOf(scene.set, "QA330"), 70'000U);
    QCOMPARE(recordsOf(scene.set, "QA340"), 5U);
    double low = 0;
    double high = 0;
    scene.set.valueRange("QA330:DATA:CH4", low, high);
    QCOMPARE(high, 69'999.0);
}

void QDataSetWorkersTest::twoThousandFilesAreAddedMergedAndRemoved() {
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

QTEST_GUILESS_MAIN(QDataSetWorkersTest)
#include "QDataSetWorkersTest.moc"

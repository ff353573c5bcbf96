// Questions about the loaded files, asked at any time.

#include "loading/FileLoading.h"
#include "loading/QDataSet.h"
#include "loading/support/QDataSetScene.h"
#include "loading/support/WorkerGate.h"

#include <QtTest>

#include <atomic>
#include <limits>
#include <set>
#include <string>
#include <thread>
#include <vector>

class QDataSetQueriesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    void fragmentsOfAllFilesAreOrderedByTheirFirstRecordTime();
    void queriesGiveWhatTheDataSetGives();
    void queriesWhileFilesLoadSeeTheFilesLoadedSoFar();
    void queriesOfAnotherThreadSeeWholeFilesOnly();
    void receiversMayQueryAddAndRemoveFiles();
    void fileNamesAreUtf8InTheDataSet();
    void whatWasLoadedElsewhereIsAnsweredAndRemovedLikeAnyFile();
};

void QDataSetQueriesTest::fragmentsOfAllFilesAreOrderedByTheirFirstRecordTime() {
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

void QDataSetQueriesTest::queriesGiveWhatTheDataSetGives() {
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
    const auto several =
        set.seriesOf({{key, ""}, {"QA330:DATASTAT:TEMP (C)", "max"}}, 1600000000, 1600000100);
    QCOMPARE(several.size(), std::size_t{2});
    QCOMPARE(*several[0].times, times);
    QCOMPARE(*several[0].values, values);
    QCOMPARE(*several[1].times, std::vector<double>{1600000001});
    QCOMPARE(*several[1].values, std::vector<double>{20});

    const std::uint64_t revision = set.variableKeysRevision();
    scene.set.RemoveFile(path);
    QVERIFY(set.variableKeysRevision() != revision);
    QCOMPARE(set.versionOfInstrument("QA330"), std::string("Unknown"));
    QVERIFY(!set.hasVariableKeys());
}

void QDataSetQueriesTest::queriesWhileFilesLoadSeeTheFilesLoadedSoFar() {
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

void QDataSetQueriesTest::queriesOfAnotherThreadSeeWholeFilesOnly() {
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

void QDataSetQueriesTest::receiversMayQueryAddAndRemoveFiles() {
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

void QDataSetQueriesTest::fileNamesAreUtf8InTheDataSet() {
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

void QDataSetQueriesTest::whatWasLoadedElsewhereIsAnsweredAndRemovedLikeAnyFile() {
    Scene scene;
    scene.add("a.data", dataText("QA330", start + 100, 5));
    QVERIFY(scene.waitForLoaded("a.data"));
    const QString path = scene.folder.write("b.data", dataText("QA330", start, 3));
    DataSet source(path.toStdString());
    loadFile(path, source, std::atomic<bool>(false), [](int, qint64) {});
    scene.set.addLoaded(source);
    double first = start + 50;
    double last = start + 50;
    scene.set.timeRangeOfInstrument("QA330", first, last);
    QCOMPARE(first, static_cast<double>(start));
    QCOMPARE(last, static_cast<double>(start) + 104);
    QCOMPARE(recordsOf(scene.set, "QA330"), 8U);
    scene.set.RemoveFile(path);
    QCOMPARE(recordsOf(scene.set, "QA330"), 5U);
}

QTEST_GUILESS_MAIN(QDataSetQueriesTest)
#include "QDataSetQueriesTest.moc"

// A file that is added while the system has no room for a thread.

#include "loading/QDataSet.h"
#include "loading/support/AddressSpaceLimit.h"
#include "loading/support/QDataSetScene.h"
#include "loading/support/WorkerGate.h"
#include "support/SanitizerBuild.h"

#include <QtTest>

namespace {

constexpr rlim_t megabyte = 1 << 20;

} // namespace

class QDataSetShortageTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        zoneDirectory = FVQA_ZONEINFO_DIR;
        if (isSanitizerBuild) {
            QSKIP("A sanitizer needs more address space than any limit leaves");
        }
    }

    // In a program of its own, as the stacks of threads that ended are used again.
    void aFileThatGetsNoThreadIsReportedAndTheNextOneLoads() {
        Scene scene;
        {
            const AddressSpaceLimit limit(2 * megabyte); // less than a stack
            scene.add("a.data", dataText("QA330", start, 5));
        }
        QCOMPARE(
            scene.recorder.countStartingWith("Message a.data Loading failed: no thread could be started"), 1);
        QCOMPARE(scene.recorder.events().last(), scene.progress("a.data", 100));
        QCOMPARE(recordsOf(scene.set, "QA330"), 0U);

        scene.add("b.data", dataText("QA330", start, 5));
        QVERIFY(scene.waitForLoaded("b.data"));
        QCOMPARE(recordsOf(scene.set, "QA330"), 5U);
    }

    void filesThatGetNoThreadBesideRunningOnesWaitForTheirEnd() {
        Scene scene;
        WorkerGate gate(scene.set);
        // Enough to take the stacks that are left of the test before.
        scene.add("a.data", dataText("QA1", start, 5));
        scene.add("b.data", dataText("QA2", start, 5));
        QVERIFY(gate.waitForHeld(2));
        {
            const AddressSpaceLimit limit(2 * megabyte);
            scene.add("c.data", dataText("QA3", start, 5));
            scene.add("d.data", dataText("QA4", start, 5));
        }
        QCOMPARE(workersOf(scene.set).size(), 2);
        QCOMPARE(scene.recorder.countStartingWith("Message"), 0);
        gate.open();
        QVERIFY(scene.waitForLoaded("d.data"));
        QVERIFY(scene.waitForRest());
        QCOMPARE(scene.loadedCount(), 4);
        QCOMPARE(scene.recorder.countStartingWith("Message"), 0);
        for (const char *instrument : {"QA1", "QA2", "QA3", "QA4"}) {
            QCOMPARE(recordsOf(scene.set, instrument), 5U);
        }
    }
};

QTEST_GUILESS_MAIN(QDataSetShortageTest)
#include "QDataSetShortageTest.moc"

// A file that is added while the system has no room for a thread.

#include "loading/QDataSet.h"
#include "loading/support/QDataSetScene.h"
#include "support/SanitizerBuild.h"

#include <QtTest>

#include <fstream>
#include <sys/resource.h>
#include <unistd.h>

namespace {

constexpr rlim_t megabyte = 1 << 20;

// While it lives, the program gets that much more address space at most.
class AddressSpaceLimit {
public:
    explicit AddressSpaceLimit(rlim_t more) {
        getrlimit(RLIMIT_AS, &before_);
        rlim_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        rlimit limit = before_;
        limit.rlim_cur = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + more;
        setrlimit(RLIMIT_AS, &limit);
    }
    ~AddressSpaceLimit() { setrlimit(RLIMIT_AS, &before_); }
    Q_DISABLE_COPY(AddressSpaceLimit)

private:
    rlimit before_{};
};

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
};

QTEST_GUILESS_MAIN(QDataSetShortageTest)
#include "QDataSetShortageTest.moc"

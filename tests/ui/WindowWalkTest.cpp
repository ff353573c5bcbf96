// Random use of the main window with all workers running: the list, the table, plots and exports agree with
// the files that are there, and closing it leaves nothing behind.

#include "ui/WindowWalk.h"

#include "support/LeakCheck.h"
#include "support/RunningCase.h"
#include "time/Timezone.h"

#include <QDir>
#include <QtTest>

#include <optional>
#include <string>

namespace {

int threadsOfProgram() {
    return static_cast<int>(QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
}

bool isAnyPlotLeft() {
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(),
                       [](QWidget *window) { return qobject_cast<PlotDialog *>(window) != nullptr; });
}

} // namespace

class WindowWalkTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        zoneDirectory = FVQA_ZONEINFO_DIR;
        files_.emplace();
        // What the toolkit starts once and keeps.
        walk(0);
        threads_ = threadsOfProgram();
    }

    // FVQA_WALK_COUNT walks, 4 by default; FVQA_WALK_SEED repeats one or tries another.
    void everythingAgreesWithTheFilesThatAreThere() {
        bool isSet = false;
        const quint64 seed = qEnvironmentVariable("FVQA_WALK_SEED").toULongLong(&isSet);
        const quint64 count = qEnvironmentVariable("FVQA_WALK_COUNT", "4").toULongLong();
        for (quint64 i = isSet ? seed : 1; i <= (isSet ? seed : count); ++i) {
            walk(i);
            if (QTest::currentTestFailed()) {
                return;
            }
        }
        qInfo("%llu walks, up to %d workers, %d plots, %d exports", isSet ? 1 : count, mostWorkers_, plots_,
              exports_);
        QVERIFY(isSet || (mostWorkers_ >= 10 && plots_ > 0 && exports_ > 0));
        QVERIFY(!isMemoryLeaked());
    }

private:
    void walk(quint64 seed) {
        const RunningCase running("FVQA_WALK_SEED=" + std::to_string(seed));
        // Ahead of the reports of sanitizers that let the program go on.
        qInfo("%s", running.text().c_str());
        QList<QPointer<PlotDialog>> plots;
        {
            WindowWalk walk(*files_, seed);
            QStringList actions;
            const auto told = [&](const QString &problem) {
                return QString("seed %1: %2 after %3").arg(seed).arg(problem, actions.join(", ")).toUtf8();
            };
            for (int i = 0; i < 20 && !walk.isClosed(); ++i) {
                actions += walk.act();
                QVERIFY2(walk.problem().isEmpty(), told(walk.problem()).constData());
            }
            // Every other walk ends while files load.
            if (seed % 2 == 0) {
                QTRY_VERIFY2_WITH_TIMEOUT(walk.isIdle(), told("workers run").constData(), 60000);
                QTRY_VERIFY2_WITH_TIMEOUT(walk.idleProblem().isEmpty(), told(walk.idleProblem()).constData(),
                                          20000);
                QVERIFY2(walk.problem().isEmpty(), told(walk.problem()).constData());
            }
            plots = walk.plots();
            plots_ += static_cast<int>(plots.size());
            exports_ += walk.exports();
            mostWorkers_ = std::max(mostWorkers_, walk.mostWorkers());
        }
        QCOMPARE(plots.count(nullptr), plots.size());
        QVERIFY(!isAnyPlotLeft());
        QVERIFY(QApplication::overrideCursor() == nullptr);
        if (threads_ != 0) {
            QTRY_COMPARE(threadsOfProgram(), threads_);
        }
    }

    std::optional<WalkFiles> files_;
    int threads_ = 0;
    int mostWorkers_ = 0;
    int plots_ = 0;
    int exports_ = 0;
};

QTEST_MAIN(WindowWalkTest)
#include "WindowWalkTest.moc"

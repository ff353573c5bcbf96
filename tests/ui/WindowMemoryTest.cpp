// Adding and removing files, and opening and closing plots, over and over in one window.

#include "loading/QDataSet.h"
#include "plot/PlotDialog.h"
#include "support/HeldMemory.h"
#include "support/SanitizerBuild.h"
#include "time/Timezone.h"
#include "ui/FileWidget.h"
#include "ui/FrameWindow.h"
#include "ui/SummaryWidget.h"
#include "ui/WalkFiles.h"

#include <QSignalSpy>
#include <QTextEdit>
#include <QThread>
#include <QtTest>

class WindowMemoryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    // FVQA_CYCLES cycles, 200 by default. Under the address sanitizer they are fewer, and its search for
    // leaks is the judge.
    void addingAndRemovingFilesLeavesTheMemoryFlat() {
        const auto cycles = static_cast<int>(scaledDown(qEnvironmentVariable("FVQA_CYCLES", "200").toUInt()));
        const WalkFiles files;
        FrameWindow window;
        // What grows once: the caches of fonts, pictures and threads.
        run(window, files, isSanitizerBuild ? 50 : 500);
        const std::uint64_t before = heldMemory();
        run(window, files, cycles);
        const qint64 grown = static_cast<qint64>(heldMemory() - before);
        qInfo("%lld bytes more after %d cycles", static_cast<long long>(grown), cycles);
        if (!isSanitizerBuild) {
            // Over 10,000 cycles that is less than the smallest object each.
            QVERIFY2(grown < qint64{64} * 1024, qPrintable(QString::number(grown)));
        }
        QCOMPARE(window.model()->rowCount(), 0);
        QVERIFY(window.model()->dataSet()->fileNames().empty());
    }

private:
    // Each cycle adds a file and removes it, an archive, a plain file or one of which there is something to
    // say: some while it loads, some after a plot of it was opened and closed.
    static void run(FrameWindow &window, const WalkFiles &files, int cycles) {
        QStringList paths;
        for (const char *const name : {"archive-0.ghg", "plain-0.data", "broken.ghg", "no-data.data"}) {
            paths += files.paths().filter(name);
        }
        QCOMPARE(paths.size(), 4);
        QDataSet *dataSet = window.model()->dataSet();
        QSignalSpy loaded(dataSet, SIGNAL(FileLoaded(QString)));
        for (int cycle = 0; cycle < cycles; ++cycle) {
            const QString &path = paths[cycle % 4];
            loaded.clear();
            window.frame->AddFiles({path});
            if (cycle % 5 != 4) {
                while (loaded.isEmpty()) {
                    QVERIFY(loaded.wait(60000));
                }
            }
            if (cycle % 20 < 2) {
                openAndClosePlot(window);
            }
            QVERIFY(window.model()->RemoveFile(path));
            while (!dataSet->findChildren<QThread *>().isEmpty()) {
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            }
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        forgetMessages(window);
    }

    // Messages are kept when their file is gone, up to a bound of their own.
    static void forgetMessages(FrameWindow &window) {
        auto *messages = window.frame->findChild<FileWidget *>()->findChild<QTextEdit *>();
        QVERIFY(messages->toPlainText().contains("broken.ghg"));
        QVERIFY(messages->toPlainText().contains("no-data.data"));
        messages->clear();
    }

    static void openAndClosePlot(FrameWindow &window) {
        auto *variables = window.frame->findChild<SummaryWidget *>();
        variables->OnCellDoubleClicked(0, 0);
        QPointer<PlotDialog> plot = variables->findChild<PlotDialog *>();
        QVERIFY(plot != nullptr);
        plot->close();
        QTRY_VERIFY(plot.isNull());
    }
};

QTEST_MAIN(WindowMemoryTest)
#include "WindowMemoryTest.moc"

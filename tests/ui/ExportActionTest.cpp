// An export from the main window: from the button to the file, and what may happen meanwhile.

#include "loading/QDataSet.h"
#include "time/Timezone.h"
#include "ui/DataFiles.h"
#include "ui/ExportProgressDialog.h"
#include "ui/ExportWhatDialog.h"
#include "ui/FrameWindow.h"
#include "ui/ModalDialogs.h"
#include "ui/MyMainWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSettings>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

namespace {

struct Scene {
    explicit Scene(int records = 10) { load(files.writeData("1.data", "QA330", "CH4\tTEMP", records)); }

    void load(const QString &path) {
        QSignalSpy loaded(window.model()->dataSet(), SIGNAL(FileLoaded(QString)));
        window.frame->AddFiles({path});
        while (loaded.isEmpty()) {
            loaded.wait();
        }
    }

    // Presses "Export..." and works the dialog.
    void exportBy(const std::function<void(ExportWhatDialog *)> &work) {
        QObject context;
        onNextDialog(&context, [&work](QDialog *shown) { work(qobject_cast<ExportWhatDialog *>(shown)); });
        window.frame->OnExportFile();
    }
    void exportText(const QString &path) {
        exportBy([&path](ExportWhatDialog *dialog) {
            choose(dialog, 1, path);
            dialog->accept();
        });
    }
    static void choose(ExportWhatDialog *dialog, int type, const QString &path) {
        dialog->findChildren<QComboBox *>()[0]->setCurrentIndex(type);
        dialog->findChild<QLineEdit *>()->setText(path);
    }

    DataFiles files;
    FrameWindow window;
};

QByteArray contentOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// An export writes in large blocks: when the first is in the file, it runs.
bool hasBegun(const QString &path) {
    return QFileInfo(path).size() > 0;
}

// Calls `act` again and again while events are processed, until it returns true.
void whenever(QObject *context, const std::function<bool()> &act) {
    auto *timer = new QTimer(context);
    QObject::connect(timer, &QTimer::timeout, context, [timer, act] {
        if (act()) {
            timer->deleteLater();
        }
    });
    timer->start(0);
}

constexpr int manyRecords = 20000;

} // namespace

class ExportActionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    void anAcceptedDialogWritesTheFile() {
        Scene scene(2);
        const QString path = scene.files.path("out.txt");
        scene.window.frame->setTimeColumns(3);
        scene.exportText(path);
        const QByteArray content = contentOf(path);
        QVERIFY2(content.endsWith("1600000000\t0\t0.25\t1.25\n1600000001\t0\t0.25\t1.25\n"),
                 content.constData());
        QCOMPARE(content.count('\n'), 3);
    }

    void theOtherTypesAreWrittenToo() {
        Scene scene(2);
        for (const int type : {0, 2}) {
            const QString path = scene.files.path(QString("out%1").arg(type));
            scene.exportBy([&](ExportWhatDialog *dialog) {
                Scene::choose(dialog, type, path);
                dialog->accept();
            });
            const QByteArray content = contentOf(path);
            QVERIFY(type == 0 ? content.startsWith("\"TOB1\"") : content.endsWith("\r\n"));
        }
    }

    void withNoFileLoadedTheActionDoesNothing() {
        const FrameWindow window;
        window.frame->OnExportFile();
        QVERIFY(window.frame->findChild<ExportWhatDialog *>() == nullptr);
    }

    void aCancelledDialogWritesNothingAndKeepsTheMask() {
        Scene scene;
        scene.window.frame->setTimeColumns(5);
        const QString path = scene.files.path("out.txt");
        scene.exportBy([&path](ExportWhatDialog *dialog) {
            Scene::choose(dialog, 1, path);
            for (auto *box : dialog->findChildren<QCheckBox *>()) {
                box->setChecked(true);
            }
            dialog->reject();
        });
        QVERIFY(!QFile::exists(path));
        QCOMPARE(scene.window.frame->timeColumns(), 5U);
    }

    void theChosenTimeColumnsBecomeTheFrames() {
        Scene scene;
        scene.exportBy([&scene](ExportWhatDialog *dialog) {
            Scene::choose(dialog, 1, scene.files.path("out.txt"));
            for (auto *box : dialog->findChildren<QCheckBox *>()) {
                box->setChecked(true);
            }
            dialog->accept();
        });
        QCOMPARE(scene.window.frame->timeColumns(), 63U);
    }

    void aSecondExportFindsTheChoicesOfTheFirst() {
        Scene scene;
        const QString path = scene.files.path("mine.txt");
        scene.exportBy([&path](ExportWhatDialog *dialog) {
            Scene::choose(dialog, 1, path);
            dialog->findChildren<QComboBox *>()[1]->setCurrentIndex(2);
            dialog->findChildren<QCheckBox *>().front()->setChecked(true);
            dialog->accept();
        });
        scene.exportBy([&path](ExportWhatDialog *dialog) {
            QCOMPARE(dialog->findChildren<QComboBox *>()[0]->currentIndex(), 1);
            QCOMPARE(dialog->findChildren<QComboBox *>()[1]->currentIndex(), 2);
            QVERIFY(dialog->findChildren<QCheckBox *>().front()->isChecked());
            QCOMPARE(dialog->findChild<QLineEdit *>()->text(), path);
            dialog->reject();
        });
    }

    void anAcceptedDialogWithoutANameWritesNothing() {
        Scene scene;
        const QStringList before = QDir(scene.files.path("")).entryList();
        scene.exportText("");
        QCOMPARE(QDir(scene.files.path("")).entryList(), before);
        QVERIFY(scene.window.frame->endExport());
    }

    // What the companion writes is held against the same files.
    void theBytesAreThoseOfTheGoldenFiles() {
        const QString golden = FVQA_GOLDEN_DIR;
        Scene scene;
        scene.window.model()->RemoveFile(scene.files.path("1.data")); // which is of the same analyser
        scene.load(golden + "/flux.data");
        scene.window.frame->setTimeColumns(3);
        for (const auto &[type, name] : {std::pair(1, "flux.txt"), std::pair(2, "flux-diagnostics.txt")}) {
            const QString path = scene.files.path(name);
            scene.exportBy([&, type = type](ExportWhatDialog *dialog) {
                Scene::choose(dialog, type, path);
                dialog->accept();
            });
            QCOMPARE(contentOf(path), contentOf(golden + "/" + name));
        }
    }

    void aLoadedFileIsNeverWrittenTo() {
        Scene scene;
        const QString path = scene.files.path("1.data");
        const QByteArray before = contentOf(path);
        scene.exportText(path);
        QCOMPARE(contentOf(path), before);
        QTRY_VERIFY(scene.window.messages().contains(path));
    }

    void aTargetThatCannotBeOpenedIsNamedInTheMessages() {
        Scene scene;
        const QString path = scene.files.path("missing/out.txt");
        scene.exportText(path);
        QTRY_VERIFY(scene.window.messages().contains(path + ": "));
    }

    void cancellingKeepsWhatIsWritten() {
        Scene scene(manyRecords);
        const QString path = scene.files.path("out.txt");
        QObject context;
        whenever(&context, [&] {
            if (!hasBegun(path)) {
                return false;
            }
            scene.window.frame->findChild<ExportProgressDialog *>()->cancel();
            return true;
        });
        scene.exportText(path);
        const qint64 lines = contentOf(path).count('\n');
        QVERIFY2(lines > 1 && lines < manyRecords, qPrintable(QString::number(lines)));
        QVERIFY(QApplication::overrideCursor() == nullptr);
        QVERIFY(scene.window.frame->endExport());
    }

    void theCursorIsBusyWhileAnExportRuns() {
        Scene scene(manyRecords);
        QObject context;
        bool wasBusy = false;
        whenever(&context, [&] {
            if (scene.window.frame->findChild<ExportProgressDialog *>() == nullptr) {
                return false;
            }
            wasBusy = QApplication::overrideCursor() != nullptr &&
                      QApplication::overrideCursor()->shape() == Qt::BusyCursor;
            return true;
        });
        scene.exportText(scene.files.path("out.txt"));
        QVERIFY(wasBusy);
        QVERIFY(QApplication::overrideCursor() == nullptr);
    }

    void filesMayComeAndGoWhileAnExportRuns() {
        Scene scene(manyRecords);
        const QString second = scene.files.writeData("2.data", "QA340", "CO2");
        const QString path = scene.files.path("out.txt");
        QObject context;
        whenever(&context, [&] {
            if (!hasBegun(path)) {
                return false;
            }
            scene.window.frame->AddFiles({second});
            scene.window.model()->RemoveFile(scene.files.path("1.data"));
            return true;
        });
        scene.exportText(path);
        // The export goes on with what was loaded when it began.
        QCOMPARE(contentOf(path).count('\n'), manyRecords + 1);
        QTRY_COMPARE(scene.window.model()->dataSet()->instruments(), std::set<std::string>{"QA340"});
    }

    void aSecondExportDoesNotStartWhileOneRuns() {
        Scene scene(manyRecords);
        const QString path = scene.files.path("out.txt");
        QObject context;
        bool asked = false;
        whenever(&context, [&] {
            if (scene.window.frame->findChild<ExportProgressDialog *>() == nullptr) {
                return false;
            }
            scene.window.frame->OnExportFile();
            asked = true;
            return true;
        });
        scene.exportText(path);
        QVERIFY(asked);
        QCOMPARE(contentOf(path).count('\n'), manyRecords + 1);
    }

    void closingTheWindowCancelsTheExportFirst() {
        const QTemporaryDir settings;
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
        const DataFiles files;
        const QByteArray input = files.writeData("1.data", "QA330", "CH4", manyRecords).toLocal8Bit();
        const char *const arguments[] = {"/nowhere/viewer", input.constData()};
        MyMainWindow window("Viewer", "/nowhere/viewer", 2, arguments);
        window.show();
        auto *frame = window.findChild<MyFrame *>();
        auto *dataSet = window.findChild<QDataSet *>();
        QTRY_VERIFY(dataSet->hasVariableKeys());

        const QString path = files.path("out.txt");
        bool closedAtOnce = true;
        QObject context;
        onNextDialog(&context, [&](QDialog *shown) {
            Scene::choose(qobject_cast<ExportWhatDialog *>(shown), 1, path);
            shown->accept();
        });
        whenever(&context, [&] {
            if (!hasBegun(path)) {
                return false;
            }
            closedAtOnce = window.close();
            return true;
        });
        frame->OnExportFile();
        QVERIFY(!closedAtOnce);
        const qint64 lines = contentOf(path).count('\n');
        QVERIFY2(lines > 1 && lines < manyRecords, qPrintable(QString::number(lines)));
        QTRY_VERIFY(!window.isVisible());
    }
};

QTEST_MAIN(ExportActionTest)
#include "ExportActionTest.moc"

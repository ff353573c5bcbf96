// What the companion and the viewer write: the outputs that were named, the viewer's settings, and nothing
// else. No file that was read is touched.

#include "loading/QDataSet.h"
#include "plot/PlotDialog.h"
#include "promises/FolderState.h"
#include "support/SanitizerBuild.h"
#include "time/Timezone.h"
#include "ui/ExportWhatDialog.h"
#include "ui/FileItemModel.h"
#include "ui/ModalDialogs.h"
#include "ui/MyFrame.h"
#include "ui/MyMainWindow.h"

#include <QComboBox>
#include <QLineEdit>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

using Names = std::vector<std::string>;

// Stands for the machine: the files that are read, those that are written, and a home.
struct Machine {
    Machine() : root(folder.path().toStdString()) {
        for (const char *name : {"in/below", "out", "home"}) {
            std::filesystem::create_directories(root / name);
        }
        for (const auto &entry : std::filesystem::directory_iterator(FVQA_EXAMPLES_DIR)) {
            std::filesystem::copy(entry.path(), root / "in");
        }
        // One that is cut, and one that is no data file.
        std::ofstream(root / "in/below/cut.data")
            << "Instrument:\tQA330\nDATAH\tSECONDS\tA\nDATA\t5\t1\nDATA\t6";
        std::ofstream(root / "in/below/broken.ghg") << "PK";
        std::filesystem::permissions(root / "home", std::filesystem::perms::owner_all);
        for (const char *name :
             {"HOME", "TMPDIR", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"}) {
            qputenv(name, (root / "home").c_str());
        }
        if (isSanitizerBuild) {
            // The thread sanitizer puts a copy of constants into a file there for a moment.
            std::filesystem::create_directory(root / "sanitizer");
            qputenv("TMPDIR", (root / "sanitizer").c_str());
        }
    }

    QString path(const char *name) const { return QString::fromStdString((root / name).string()); }
    QStringList inputs() const {
        return {path("in/2019-06-01T120000_AIU-0412.ghg"), path("in/QA330-2019-06-01T130000.data"),
                path("in/below/cut.data"), path("in/below/broken.ghg")};
    }

    QTemporaryDir folder;
    std::filesystem::path root;
};

struct Shown {
    Names names;
};

bool operator==(const Shown &left, const Shown &right) {
    return left.names == right.names;
}

// Called by the test library for texts of comparisons.
char *toString(const Shown &shown) {
    QStringList texts;
    for (const std::string &name : shown.names) {
        texts += QString::fromStdString(name);
    }
    return qstrdup(texts.join(", ").toUtf8().constData());
}

} // namespace

class NothingElseWrittenTest : public QObject {
    Q_OBJECT

public:
    explicit NothingElseWrittenTest(Machine &machine) : machine_(machine) {}

private Q_SLOTS:
    void initTestCase() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    void init() {
        std::filesystem::remove_all(machine_.root / "out");
        std::filesystem::create_directory(machine_.root / "out");
    }

    void theCompanionWritesTheNamedOutputsOnly_data();
    void theCompanionWritesTheNamedOutputsOnly();
    void theCompanionReplacesNoInput();
    void theViewerWritesTheNamedOutputsAndItsSettingsOnly();
    void theViewerReplacesNoLoadedFile();

private:
    int run(const QStringList &arguments) const {
        QProcess process;
        process.setWorkingDirectory(machine_.path("in"));
        process.start(FVQA_CLI_PROGRAM, arguments + QStringList{machine_.path("in")});
        return process.waitForFinished(120'000) && process.exitStatus() == QProcess::NormalExit
                   ? process.exitCode()
                   : -1;
    }
    void exportFrom(MyFrame &frame, int type, const QString &path) {
        QObject context;
        onNextDialog(&context, [type, &path](QDialog *shown) {
            auto *dialog = qobject_cast<ExportWhatDialog *>(shown);
            dialog->findChildren<QComboBox *>()[0]->setCurrentIndex(type);
            dialog->findChild<QLineEdit *>()->setText(path);
            dialog->accept();
        });
        frame.OnExportFile();
    }
    std::unique_ptr<MyMainWindow> windowWithAllFiles() const {
        const QByteArrayList paths = [this] {
            QByteArrayList encoded;
            for (const QString &path : machine_.inputs()) {
                encoded += QFile::encodeName(path);
            }
            return encoded;
        }();
        QVector<const char *> arguments{"/nowhere/viewer"};
        for (const QByteArray &path : paths) {
            arguments += path.constData();
        }
        auto window = std::make_unique<MyMainWindow>("Viewer", "/nowhere/viewer", arguments.size(),
                                                     arguments.constData());
        QSignalSpy loaded(window->findChild<FileItemModel *>()->dataSet(), SIGNAL(FileLoaded(QString)));
        window->show();
        while (loaded.size() < paths.size() && loaded.wait(60'000)) {
        }
        return loaded.size() == paths.size() ? std::move(window) : nullptr;
    }

    Machine &machine_;
};

void NothingElseWrittenTest::theCompanionWritesTheNamedOutputsOnly_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("outputs");
    const auto exported = [](const char *data, const char *format, const char *target) {
        return QStringList{"export", "--data", data, "--format", format, "--output", target};
    };
    QTest::newRow("summary") << QStringList{"summary"} << QStringList();
    QTest::newRow("variables") << QStringList{"variables"} << QStringList();
    QTest::newRow("messages") << QStringList{"messages"} << QStringList();
    QTest::newRow("series") << QStringList{"series", "--variable", "QA330:DATA:CH4"} << QStringList();
    for (const char *format : {"text", "tob1", "diagnostics"}) {
        QTest::newRow(format) << exported("QA330:DATA", format, "../out/a.txt") << QStringList{"a.txt"};
    }
    QTest::newRow("pieces") << exported("AIU-0412:DATA", "tob1", "../out/a.dat") +
                                   QStringList{"--split", "3600"}
                            << QStringList{"a-2019-06-01T1200.dat", "a-2019-06-01T1300.dat"};
    QTest::newRow("data that are not there")
        << exported("QA330:DATABIO", "text", "../out/a.txt") << QStringList();
    for (const char *target : {"a.png", "a.svg", "a.pdf"}) {
        QTest::newRow(target) << QStringList{"plot", "--variable", "QA330:DATA:CH4", "--output",
                                             QString("../out/") + target}
                              << QStringList{target};
    }
}

void NothingElseWrittenTest::theCompanionWritesTheNamedOutputsOnly() {
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, outputs);
    const FolderState inputs(machine_.root / "in");
    const FolderState home(machine_.root / "home");
    // The broken archive and the cut file make it 1.
    QCOMPARE(run(arguments), 1);
    Names wanted{"."};
    for (const QString &name : outputs) {
        wanted.push_back(name.toStdString());
    }
    QCOMPARE(Shown{FolderState(machine_.root / "out").names()}, Shown{wanted});
    QCOMPARE(Shown{FolderState(machine_.root / "in").differencesFrom(inputs)}, Shown{});
    QCOMPARE(Shown{FolderState(machine_.root / "home").differencesFrom(home)}, Shown{});
}

void NothingElseWrittenTest::theCompanionReplacesNoInput() {
    const FolderState inputs(machine_.root / "in");
    const QString target = machine_.path("in/QA330-2019-06-01T130000.data");
    QCOMPARE(run({"export", "--data", "QA330:DATA", "--format", "text", "--output", target}), 1);
    QCOMPARE(run({"plot", "--variable", "QA330:DATA:CH4", "--output", target}), 2); // no picture's extension
    QCOMPARE(Shown{FolderState(machine_.root / "in").differencesFrom(inputs)}, Shown{});
}

void NothingElseWrittenTest::theViewerWritesTheNamedOutputsAndItsSettingsOnly() {
    const FolderState inputs(machine_.root / "in");
    const FolderState home(machine_.root / "home");
    {
        const auto window = windowWithAllFiles();
        QVERIFY(window != nullptr);
        auto *frame = window->findChild<MyFrame *>();
        for (int type = 0; type < 3; ++type) {
            exportFrom(*frame, type, machine_.path("out/viewer") + QString::number(type));
        }
        const PlotDialog plot(nullptr, window->findChild<FileItemModel *>()->dataSet(), "QA330:DATA:CH4");
        QVERIFY(window->close());
    }
    QCOMPARE(Shown{FolderState(machine_.root / "out").names()},
             (Shown{{".", "viewer0", "viewer1", "viewer2"}}));
    QCOMPARE(Shown{FolderState(machine_.root / "in").differencesFrom(inputs)}, Shown{});
    QCOMPARE(Shown{FolderState(machine_.root / "home").differencesFrom(home)},
             (Shown{{".", "Ombrix", "Ombrix/fvqa300.conf"}}));
}

void NothingElseWrittenTest::theViewerReplacesNoLoadedFile() {
    const FolderState inputs(machine_.root / "in");
    const auto window = windowWithAllFiles();
    QVERIFY(window != nullptr);
    for (const QString &path : machine_.inputs()) {
        QObject context;
        // The dialog may refuse the name, in a box of its own, or the export may.
        onNextDialog(&context, [&context, &path](QDialog *shown) {
            auto *dialog = qobject_cast<ExportWhatDialog *>(shown);
            dialog->findChild<QLineEdit *>()->setText(path);
            onNextDialog(&context, [](QDialog *box) { box->reject(); });
            dialog->accept();
            if (dialog->isVisible()) {
                dialog->reject();
            }
        });
        window->findChild<MyFrame *>()->OnExportFile();
    }
    QCOMPARE(Shown{FolderState(machine_.root / "in").differencesFrom(inputs)}, Shown{});
}

int main(int argc, char **argv) {
    Machine machine;
    QApplication application(argc, argv);
    NothingElseWrittenTest test(machine);
    return QTest::qExec(&test, argc, argv);
}

#include "NothingElseWrittenTest.moc"

#include "ui/ExportProgressDialog.h"
#include "ui/KeyboardScene.h"
#include "ui/MyFrame.h"

#include <QSettings>
#include <QTimer>
#include <QtTest>

// The keys that close a window or end the program.
class ClosingKeysTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(files_.setUp()); }

    void ctrlWClosesTheMainWindowAsItsCloseButtonDoes() {
        const Scene scene({files_.file()});
        scene.the<MyFrame>()->setTimeColumns(7);
        QVERIFY(isActive(scene.window.get()));
        press(Qt::Key_W, Qt::ControlModifier);
        QTRY_VERIFY(!scene.window->isVisible());
        QCOMPARE(QSettings("Ombrix", "fvqa300").value("timecols").toUInt(), 7U);
    }

    void ctrlWInAPlotLeavesTheMainWindowOpen() {
        const Scene scene({files_.file()});
        const QPointer<PlotDialog> plot = scene.openPlot();
        QVERIFY(plot);
        press(Qt::Key_W, Qt::ControlModifier);
        QTRY_VERIFY(plot.isNull());
        QVERIFY(scene.window->isVisible());
    }

    void ctrlQInAPlotEndsTheProgram() {
        const Scene scene({files_.file()});
        QVERIFY(scene.openPlot());
        constexpr int tooLong = 20000; // ms
        QTimer rescue;
        rescue.setSingleShot(true);
        connect(&rescue, &QTimer::timeout, qApp, [] { QCoreApplication::exit(1); });
        rescue.start(tooLong);
        QTimer::singleShot(0, scene.window.get(), [] { press(Qt::Key_Q, Qt::ControlModifier); });
        QCOMPARE(QApplication::exec(), 0);
        QVERIFY(!scene.window->isVisible());
    }

    void ctrlQWhileAnExportRunsEndsItAndThenTheProgram() {
        constexpr int manyRecords = 20000;
        const QByteArray large =
            QFile::encodeName(files_.writeData("large.data", "QA340", "CO2", manyRecords));
        const Scene scene({large});
        QVERIFY(scene.isLoaded());
        const QString target = files_.path("cut-short.txt");
        bool isAsked = false;
        QTimer watch;
        connect(&watch, &QTimer::timeout, &watch, [&] {
            auto *progress = scene.the<ExportProgressDialog>();
            if (!isAsked && progress != nullptr && QFileInfo(target).size() > 0) {
                isAsked = true;
                progress->show();
                QVERIFY(isActive(progress));
                press(Qt::Key_Q, Qt::ControlModifier);
            }
        });
        watch.start(0);
        QVERIFY(isActive(scene.window.get()));
        exportTo(target);
        QVERIFY(isAsked);
        QFile file(target);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const int lines = file.readAll().count('\n');
        QVERIFY2(lines > 1 && lines < manyRecords, qPrintable(QString::number(lines)));
        QTRY_VERIFY(!scene.window->isVisible());
    }

private:
    SceneFiles files_;
};

QTEST_MAIN(ClosingKeysTest)
#include "ClosingKeysTest.moc"

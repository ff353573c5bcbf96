// The whole program worked without a mouse, and what its keys leave alone.

#include "loading/QDataSet.h"
#include "plot/PlotZoomer.h"
#include "plot/QwtCurve.h"
#include "time/Timezone.h"
#include "ui/DataFiles.h"
#include "ui/ExportProgressDialog.h"
#include "ui/ExportWhatDialog.h"
#include "ui/FileItemView.h"
#include "ui/KeyboardScene.h"
#include "ui/ModalDialogs.h"

#include <QComboBox>
#include <QLineEdit>
#include <QScopeGuard>
#include <QSettings>
#include <QTabBar>
#include <QTextEdit>
#include <QtTest>
#include <qwt_plot.h>

class KeyboardTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        zoneDirectory = FVQA_ZONEINFO_DIR;
        QVERIFY(settings_.isValid());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings_.path());
        file_ = QFile::encodeName(files_.writeData("1.data", "QA330", "CH4\tTEMP", 5));
    }

    // From a file on the disk over its plot to an export.
    void theWholeProgramIsWorkedByKeysAlone() {
        const Scene scene;
        QVERIFY(isActive(scene.window.get()));
        open(QFile::decodeName(file_));
        QCOMPARE(scene.rows(), 1);
        QVERIFY(scene.isLoaded());

        QVERIFY(isActive(scene.window.get()));
        QVERIFY(tabTo(scene.the<FileWidget>()->tabBar()));
        press(Qt::Key_Right);
        auto *table = scene.the<SummaryTableWidget>();
        QVERIFY(tabTo(table));
        press(Qt::Key_Down);
        QCOMPARE(table->currentItem()->text(), "TEMP");
        press(Qt::Key_Return);
        const QPointer<PlotDialog> plot = scene.the<PlotDialog>();
        QVERIFY(plot);
        QVERIFY(isActive(plot));
        zoomInAndOut(*plot);
        press(Qt::Key_W, Qt::ControlModifier);
        QTRY_VERIFY(plot.isNull());

        QVERIFY(isActive(scene.window.get()));
        const QString target = files_.path("by-keys.tob1");
        exportTo(target);
        QVERIFY(QFileInfo(target).size() > 0);

        QVERIFY(isActive(scene.window.get()));
        QVERIFY(tabTo(scene.the<FileItemView>()));
        press(Qt::Key_Space);
        press(Qt::Key_Delete);
        QCOMPARE(scene.rows(), 0);
        press(Qt::Key_Q, Qt::ControlModifier);
        QTRY_VERIFY(!scene.window->isVisible());
    }

    void tabWalksTheMainWindowFromTheListOverThePageToTheButtons() {
        const Scene scene({file_});
        QVERIFY(scene.isLoaded());
        QVERIFY(scene.showVariables());
        QCOMPARE(tabOrder(scene.the<FileItemView>()),
                 (QStringList{"Files", "Variables", "Variables", "Add a file", "Remove a file", "Export...",
                              "Help...", "Close"}));
    }

    // In the middle of the history of views, where every button can be used.
    void tabWalksAPlotFromItsLegendOverTheCurvesToTheButtons() {
        const Scene scene({file_});
        const QPointer<PlotDialog> plot = scene.openPlot();
        QVERIFY(plot);
        chooseTheFirstTenthOfTheTime();
        chooseTheFirstTenthOfTheTime();
        press(Qt::Key_Minus);
        press(Qt::Key_Tab);
        QCOMPARE(tabOrder(QApplication::focusWidget()),
                 (QStringList{"QA330:DATA:CH4", "MAX QA330:DATA:CH4", "MIN QA330:DATA:CH4",
                              "Curves against time", "Go to previous zoom level", "Go to next zoom level",
                              "Auto scale to view entire data set", "Auto scale horizontally",
                              "Auto scale vertically", "Ymin Ymax", "Lowest value of the left axis",
                              "Highest value of the left axis", "Print...", "Close"}));
    }

    void tabWalksTheLegendEntriesOfAVariableThatIsAddedAfterTheFirstOnes() {
        const Scene scene({file_});
        const QPointer<PlotDialog> plot = scene.openPlot();
        QVERIFY(plot);
        plot->addVariable("QA330:DATA:AAA", TimeSeriesPlot::Side::left); // which sorts before the first one
        press(Qt::Key_Tab);
        QCOMPARE(tabOrder(QApplication::focusWidget()).mid(0, 7),
                 (QStringList{"QA330:DATA:CH4", "MAX QA330:DATA:CH4", "MIN QA330:DATA:CH4", "QA330:DATA:AAA",
                              "MAX QA330:DATA:AAA", "MIN QA330:DATA:AAA", "Curves against time"}));
    }

    void tabWalksTheExportDialogFromTheTopDown_data() {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QStringList>("timeColumns");
        QTest::newRow("TOB1") << "TOB1" << QStringList();
        QTest::newRow("text") << "Text" << QStringList{"Seconds", "Nanoseconds", "Date",
                                                       "Time",    "Timestamp",   "Timestamp with UTC offset"};
    }
    void tabWalksTheExportDialogFromTheTopDown() {
        QFETCH(QString, type);
        QFETCH(QStringList, timeColumns);
        const Scene scene({file_});
        QVERIFY(scene.isLoaded());
        QVERIFY(isActive(scene.window.get()));
        QStringList names;
        onNextDialog(scene.window.get(), [&names, &type](QDialog *dialog) {
            const auto guard = qScopeGuard([dialog] { leave(dialog); });
            QVERIFY(isActive(dialog));
            auto *types = dialog->findChild<QComboBox *>();
            QVERIFY(tabTo(types));
            for (int i = 0; i < types->count() && !types->currentText().startsWith(type); ++i) {
                press(Qt::Key_Down);
            }
            QVERIFY2(types->currentText().startsWith(type), qPrintable(types->currentText()));
            names = tabOrder(dialog->findChild<QListView *>());
        });
        press(Qt::Key_E, Qt::ControlModifier);
        QCOMPARE(names, QStringList({"Data to export", "File Name", "Browse...", "File Type", "File Split"}) +
                            timeColumns + QStringList({"Cancel", "Export"}));
    }

    void shiftAndCtrlWithReturnAddAVariableToThePlotThatWasActiveLast() {
        const Scene scene({file_});
        const QPointer<PlotDialog> first = scene.openPlot();
        QVERIFY(first);
        QVERIFY(scene.showVariables());
        press(Qt::Key_Return);
        const QList<PlotDialog *> plots = scene.window->findChildren<PlotDialog *>();
        QCOMPARE(plots.size(), 2);
        PlotDialog *second = plots[0] == first ? plots[1] : plots[0];
        QVERIFY(isActive(second));
        QVERIFY(isActive(first));

        QVERIFY(scene.showVariables());
        press(Qt::Key_Down);
        press(Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(axesOf(*first), (QStringList{"QA330:DATA:CH4 left", "QA330:DATA:TEMP left"}));
        QCOMPARE(axesOf(*second), QStringList{"QA330:DATA:CH4 left"});
        press(Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(axesOf(*first), (QStringList{"QA330:DATA:CH4 left", "QA330:DATA:TEMP right"}));

        // The one that was active before takes the place of one that is closed.
        first->close();
        press(Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier);
        QCOMPARE(axesOf(*second), (QStringList{"QA330:DATA:CH4 left", "QA330:DATA:TEMP right"}));
        QVERIFY(scene.the<SummaryTableWidget>()->hasFocus());
    }

    void theyOpenAPlotWhileNoneIsOpen() {
        const Scene scene({file_});
        QVERIFY(scene.showVariables());
        for (const Qt::KeyboardModifier modifier : {Qt::ShiftModifier, Qt::ControlModifier}) {
            press(Qt::Key_Return, modifier);
            const QPointer<PlotDialog> plot = scene.the<PlotDialog>();
            QVERIFY(plot);
            QCOMPARE(axesOf(*plot), QStringList{"QA330:DATA:CH4 left"});
            delete plot;
            QVERIFY(scene.showVariables());
        }
    }

    void deleteRemovesTheSelectedFilesOnlyInTheList() {
        const Scene scene({file_});
        QVERIFY(scene.isLoaded());
        scene.the<FileItemView>()->selectAll();
        QVERIFY(scene.showVariables());
        press(Qt::Key_Delete);
        QCOMPARE(scene.rows(), 1);
        scene.the<FileItemView>()->setFocus();
        press(Qt::Key_Delete);
        QCOMPARE(scene.rows(), 0);
    }

    void deleteInAnEditDeletesItsText() {
        const Scene scene({file_});
        scene.the<FileItemView>()->selectAll();
        const QPointer<PlotDialog> plot = scene.openPlot();
        QVERIFY(plot);
        auto *edit = plot->findChild<QLineEdit *>();
        edit->setText("12");
        edit->setFocus();
        press(Qt::Key_Home);
        press(Qt::Key_Delete);
        QCOMPARE(edit->text(), "2");
        press(Qt::Key_Home);
        press(Qt::Key_Minus);
        QCOMPARE(edit->text(), "-2");
        QCOMPARE(scene.rows(), 1);
    }

    void returnOnAnEmptyCellPlotsNothing() {
        const QByteArray other = QFile::encodeName(files_.writeData("2.data", "QA340", "CO2"));
        const Scene scene({file_, other});
        auto *table = scene.the<SummaryTableWidget>();
        QTRY_COMPARE(table->columnCount(), 2);
        QVERIFY(scene.showVariables());
        table->setCurrentCell(1, 1);
        QVERIFY(table->currentItem() == nullptr);
        press(Qt::Key_Return);
        press(Qt::Key_Return, Qt::ShiftModifier);
        QVERIFY(scene.the<PlotDialog>() == nullptr);
        table->setCurrentCell(0, 1);
        press(Qt::Key_Enter, Qt::KeypadModifier);
        QVERIFY(scene.the<PlotDialog>() != nullptr);
    }

    void aReturnKeyHeldDownOpensOnePlot() {
        const Scene scene({file_});
        QVERIFY(scene.showVariables());
        press(Qt::Key_Return);
        for (int i = 0; i < 3; ++i) {
            QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
            QCoreApplication::sendEvent(scene.the<SummaryTableWidget>(), &repeated);
        }
        QCOMPARE(scene.window->findChildren<PlotDialog *>().size(), 1);
    }

    void ctrlWClosesTheMainWindowAsItsCloseButtonDoes() {
        const Scene scene({file_});
        scene.the<MyFrame>()->setTimeColumns(7);
        QVERIFY(isActive(scene.window.get()));
        press(Qt::Key_W, Qt::ControlModifier);
        QTRY_VERIFY(!scene.window->isVisible());
        QCOMPARE(QSettings("Ombrix", "fvqa300").value("timecols").toUInt(), 7U);
    }

    void ctrlWInAPlotLeavesTheMainWindowOpen() {
        const Scene scene({file_});
        const QPointer<PlotDialog> plot = scene.openPlot();
        QVERIFY(plot);
        press(Qt::Key_W, Qt::ControlModifier);
        QTRY_VERIFY(plot.isNull());
        QVERIFY(scene.window->isVisible());
    }

    void ctrlQInAPlotEndsTheProgram() {
        const Scene scene({file_});
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

    void ctrlEWithoutFilesAsksNothing() {
        const Scene scene;
        QVERIFY(isActive(scene.window.get()));
        press(Qt::Key_E, Qt::ControlModifier);
        QVERIFY(scene.the<ExportWhatDialog>() == nullptr);
    }

    void theMessagesAreReadWithTheArrowKeys() {
        const Scene scene;
        scene.the<MyFrame>()->AddFiles({"/nowhere/absent.data"});
        scene.the<FileWidget>()->setCurrentIndex(2);
        auto *messages = scene.the<QTextEdit>();
        QTRY_VERIFY(!messages->toPlainText().isEmpty());
        QVERIFY(isActive(scene.window.get()));
        messages->setFocus();
        press(Qt::Key_Home, Qt::ControlModifier);
        press(Qt::Key_Right, Qt::ShiftModifier);
        QCOMPARE(messages->textCursor().selectedText(), messages->toPlainText().left(1));
        const QString before = messages->toPlainText();
        typeText("x");
        press(Qt::Key_Delete);
        QCOMPARE(messages->toPlainText(), before);
    }

private:
    static void open(const QString &path) {
        QObject context;
        onNextDialog(&context, [path](QDialog *dialog) {
            const auto guard = qScopeGuard([dialog] { leave(dialog); });
            QVERIFY(isActive(dialog));
            QVERIFY(tabTo(dialog->findChild<QLineEdit *>("fileNameEdit")));
            typeText(path);
            press(Qt::Key_Return);
        });
        press(Qt::Key_O, Qt::ControlModifier);
    }

    static void chooseTheFirstTenthOfTheTime() {
        press(Qt::Key_Home);
        press(Qt::Key_Return);
        press(Qt::Key_Right, Qt::ControlModifier);
        press(Qt::Key_Return);
    }

    // "VARIABLE left" or "VARIABLE right" of each variable.
    static QStringList axesOf(const PlotDialog &plot) {
        QStringList axes;
        for (const auto &[key, entry] : plot.findChild<TimeSeriesPlot *>()->entries()) {
            if (key.second.empty()) {
                const bool isRight = entry.curve->yAxis() == QwtPlot::yRight;
                axes += QString::fromStdString(key.first) + (isRight ? " right" : " left");
            }
        }
        return axes;
    }

    // Into a range of values that is typed, out again, and into a range of time.
    static void zoomInAndOut(PlotDialog &plot) {
        const auto &zoomer = *plot.findChild<PlotZoomer *>();
        const QList<QLineEdit *> edits = plot.findChildren<QLineEdit *>();
        QVERIFY(tabTo(edits[0]));
        typeText("1");
        press(Qt::Key_Tab);
        typeText("2");
        press(Qt::Key_Return);
        QCOMPARE(zoomer.zoomRectIndex(), 1U);
        QCOMPARE(zoomer.zoomRect().height(), 1.0);
        press(Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(zoomer.zoomRectIndex(), 0U);
        plot.findChild<QwtPlot *>()->setFocus();
        press(Qt::Key_Plus);
        QCOMPARE(zoomer.zoomRectIndex(), 1U);
        press(Qt::Key_Minus);
        QCOMPARE(zoomer.zoomRectIndex(), 0U);
        const QRectF base = zoomer.zoomRect();
        chooseTheFirstTenthOfTheTime();
        QCOMPARE(zoomer.zoomRectIndex(), 1U);
        QCOMPARE(zoomer.zoomRect().left(), base.left());
        QVERIFY(qAbs(zoomer.zoomRect().width() - base.width() / 10) < 1e-6);
    }

    static void exportTo(const QString &path) {
        QObject context;
        onNextDialog(&context, [path](QDialog *dialog) {
            const auto guard = qScopeGuard([dialog] { leave(dialog); });
            QVERIFY(isActive(dialog));
            QVERIFY(tabTo(dialog->findChild<QLineEdit *>()));
            press(Qt::Key_A, Qt::ControlModifier);
            typeText(path);
            press(Qt::Key_Return);
        });
        press(Qt::Key_E, Qt::ControlModifier);
    }

    const QTemporaryDir settings_;
    const DataFiles files_{};
    QByteArray file_;
};

QTEST_MAIN(KeyboardTest)
#include "KeyboardTest.moc"

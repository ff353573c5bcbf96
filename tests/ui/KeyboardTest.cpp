// The whole program worked without a mouse, and what its keys leave alone.

#include "plot/PlotZoomer.h"
#include "plot/QwtCurve.h"
#include "ui/ExportWhatDialog.h"
#include "ui/FileItemView.h"
#include "ui/KeyboardScene.h"
#include "ui/ModalDialogs.h"

#include <QLineEdit>
#include <QScopeGuard>
#include <QTabBar>
#include <QTextEdit>
#include <QtTest>
#include <qwt_plot.h>

class KeyboardTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(files_.setUp()); }

    // From a file on the disk over its plot to an export.
    void theWholeProgramIsWorkedByKeysAlone() {
        const Scene scene;
        QVERIFY(isActive(scene.window.get()));
        open(QFile::decodeName(files_.file()));
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

    void shiftAndCtrlWithReturnAddAVariableToThePlotThatWasActiveLast() {
        const Scene scene({files_.file()});
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
        const Scene scene({files_.file()});
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
        const Scene scene({files_.file()});
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
        const Scene scene({files_.file()});
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
        const Scene scene({files_.file(), other});
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
        const Scene scene({files_.file()});
        QVERIFY(scene.showVariables());
        press(Qt::Key_Return);
        for (int i = 0; i < 3; ++i) {
            QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
            QCoreApplication::sendEvent(scene.the<SummaryTableWidget>(), &repeated);
        }
        QCOMPARE(scene.window->findChildren<PlotDialog *>().size(), 1);
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

    SceneFiles files_;
};

QTEST_MAIN(KeyboardTest)
#include "KeyboardTest.moc"

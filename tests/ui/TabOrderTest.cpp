#include "ui/FileItemView.h"
#include "ui/KeyboardScene.h"
#include "ui/ModalDialogs.h"

#include <QComboBox>
#include <QListView>
#include <QScopeGuard>
#include <QtTest>

// In which order the Tab key walks the windows.
class TabOrderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(files_.setUp()); }

    void tabWalksTheMainWindowFromTheListOverThePageToTheButtons() {
        const Scene scene({files_.file()});
        QVERIFY(scene.isLoaded());
        QVERIFY(scene.showVariables());
        QCOMPARE(tabOrder(scene.the<FileItemView>()),
                 (QStringList{"Files", "Variables", "Variables", "Add a file", "Remove a file", "Export...",
                              "Help...", "Close"}));
    }

    // In the middle of the history of views, where every button can be used.
    void tabWalksAPlotFromItsLegendOverTheCurvesToTheButtons() {
        const Scene scene({files_.file()});
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
        const Scene scene({files_.file()});
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
        const Scene scene({files_.file()});
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

private:
    SceneFiles files_;
};

QTEST_MAIN(TabOrderTest)
#include "TabOrderTest.moc"

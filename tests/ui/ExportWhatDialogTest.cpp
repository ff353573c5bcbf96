#include "ui/ExportWhatDialog.h"

#include "ui/MetaObjectLists.h"
#include "ui/ModalDialogs.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const std::set<std::string> someGroups{"QA330:DATA", "QA330:DATASTAT", "AIU-0412:DATA"};

struct Scene {
    explicit Scene(std::uint32_t timeColumns = 0) : dialog(nullptr, timeColumns) { dialog.show(); }

    QPushButton *button(const QString &text) const {
        for (auto *candidate : dialog.findChildren<QPushButton *>()) {
            if (candidate->text() == text) {
                return candidate;
            }
        }
        return nullptr;
    }
    QListWidget *list() const { return dialog.findChild<QListWidget *>(); }
    QLineEdit *name() const { return dialog.findChild<QLineEdit *>(); }
    QComboBox *type() const { return dialog.findChildren<QComboBox *>()[0]; }
    QComboBox *split() const { return dialog.findChildren<QComboBox *>()[1]; }
    QGroupBox *timeColumns() const { return dialog.findChild<QGroupBox *>(); }
    // Types the name as a person does.
    void typeName(const QString &text) const {
        name()->selectAll();
        QTest::keyClick(name(), Qt::Key_Delete);
        QTest::keyClicks(name(), text);
    }
    void browseTo(const QString &path) {
        QObject context;
        onNextDialog(&context, [&path](QDialog *shown) {
            shown->findChild<QLineEdit *>("fileNameEdit")->setText(path);
            QMetaObject::invokeMethod(shown, path.isEmpty() ? "reject" : "accept");
        });
        button("Browse...")->click();
    }

    ExportWhatDialog dialog;
};

enum { tob1 = 0, text = 1, diagnostics = 2 };

QStringList itemsOf(const QComboBox &box) {
    QStringList items;
    for (int i = 0; i < box.count(); ++i) {
        items += box.itemText(i) + "|" + box.itemData(i).toString();
    }
    return items;
}

} // namespace

class ExportWhatDialogTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasItsSlots() {
        QCOMPARE(ownSlots(ExportWhatDialog::staticMetaObject),
                 (QStringList{"OnBrowseClicked()", "OnStateChanged()", "OnFileTypeChanged()",
                              "OnFilenameEdited()", "OnListSelectionChanged()"}));
    }

    void offersTypesAndSplitsWithTheirData() {
        const Scene scene;
        QCOMPARE(itemsOf(*scene.type()),
                 (QStringList{"TOB1 (.tob1)|.tob1", "Text (.txt)|.txt", "Diagnostics (.txt)|.txt"}));
        QCOMPARE(itemsOf(*scene.split()), (QStringList{"None|0", "Half Hour|1800", "One Hour|3600",
                                                       "Two Hours|7200", "Four Hours|14400", "Daily|86400"}));
    }

    void beginsWithTheNameExportAndNothingToExport() {
        const Scene scene;
        QCOMPARE(scene.name()->text(), "export.tob1");
        QCOMPARE(scene.list()->count(), 0);
        QVERIFY(!scene.button("Export")->isEnabled());
        QVERIFY(!scene.timeColumns()->isEnabled());
        QCOMPARE(scene.timeColumns()->title(), "Text File Time Columns");
    }

    void withNoDataExportStaysDisabled() {
        Scene scene;
        scene.dialog.fillList({});
        QVERIFY(!scene.button("Export")->isEnabled());
        scene.typeName("other.tob1");
        QVERIFY(!scene.button("Export")->isEnabled());
    }

    void theTimeColumnsStandInTwoRows() {
        const Scene scene(4 + 32);
        const auto *grid = qobject_cast<QGridLayout *>(scene.timeColumns()->layout());
        const QStringList expected{"Seconds",     "Date", "Timestamp",
                                   "Nanoseconds", "Time", "Timestamp with UTC offset"};
        QCOMPARE(grid->rowCount(), 2);
        QCOMPARE(grid->columnCount(), 3);
        for (int i = 0; i < expected.size(); ++i) {
            const auto *box = qobject_cast<QCheckBox *>(grid->itemAtPosition(i / 3, i % 3)->widget());
            QCOMPARE(box->text(), expected[i]);
            QCOMPARE(box->isChecked(), expected[i] == "Date" || expected[i] == "Timestamp with UTC offset");
        }
    }

    void everyMaskOfTimeColumnsComesBack() {
        for (std::uint32_t mask = 0; mask < 64; ++mask) {
            const ExportWhatDialog dialog(nullptr, mask);
            QCOMPARE(dialog.results().timeColumns, mask);
        }
    }

    void theListIsSortedAndItsFirstRowSelected() {
        Scene scene;
        scene.dialog.fillList(someGroups);
        QCOMPARE(scene.list()->count(), 3);
        QVERIFY(scene.list()->isSortingEnabled());
        QCOMPARE(scene.list()->item(0)->text(), "AIU-0412:DATA");
        QCOMPARE(scene.list()->item(2)->text(), "QA330:DATASTAT");
        QCOMPARE(scene.dialog.results().selectedItem, std::string("AIU-0412:DATA"));
        QVERIFY(scene.button("Export")->isEnabled());
    }

    void everySelectionProposesAName() {
        Scene scene;
        scene.dialog.fillList(someGroups);
        QCOMPARE(scene.name()->text(), "aiu-0412-data.tob1");
        scene.list()->setCurrentRow(1);
        QCOMPARE(scene.name()->text(), "qa330-data.tob1");
        scene.typeName("mine.tob1");
        scene.list()->setCurrentRow(2);
        QCOMPARE(scene.name()->text(), "qa330-datastat.tob1");
    }

    void aProposedNameStaysInTheFolderOfTheNameBefore() {
        Scene scene;
        scene.dialog.fillList(someGroups);
        scene.type()->setCurrentIndex(text);
        scene.typeName("C:/out/export.txt");
        scene.list()->setCurrentRow(1);
        QCOMPARE(scene.name()->text(), "C:/out/qa330-data.txt");
        scene.typeName("/export.txt");
        scene.list()->setCurrentRow(2);
        QCOMPARE(scene.name()->text(), "qa330-datastat.txt");
    }

    void timeColumnsAreForTextOnly() {
        const Scene scene;
        scene.type()->setCurrentIndex(text);
        QVERIFY(scene.timeColumns()->isEnabled());
        scene.type()->setCurrentIndex(diagnostics);
        QVERIFY(!scene.timeColumns()->isEnabled());
    }

    void textToDiagnosticsLeavesTheNameUnchanged() {
        const Scene scene;
        scene.type()->setCurrentIndex(text);
        scene.typeName("a.txt");
        scene.type()->setCurrentIndex(diagnostics);
        QCOMPARE(scene.name()->text(), "a.txt");
    }

    void tob1ToTextChangesTheExtension() {
        const Scene scene;
        scene.typeName("a.tob1");
        scene.type()->setCurrentIndex(text);
        QCOMPARE(scene.name()->text(), "a.txt");
    }

    void anotherExtensionIsKeptAndTheTypesAdded() {
        const Scene scene;
        scene.typeName("a.dat");
        scene.type()->setCurrentIndex(text);
        QCOMPARE(scene.name()->text(), "a.dat.txt");
    }

    void anEmptyNameDisablesExport() {
        Scene scene;
        scene.dialog.fillList(someGroups);
        scene.typeName("");
        QVERIFY(!scene.button("Export")->isEnabled());
        scene.typeName("x");
        QVERIFY(scene.button("Export")->isEnabled());
        QCOMPARE(scene.dialog.results().targetName, std::string("x"));
    }

    void browsingSetsTheNameWithItsExtension() {
        const QTemporaryDir folder;
        Scene scene;
        scene.browseTo(folder.filePath("day"));
        QCOMPARE(scene.name()->text(), folder.filePath("day.tob1"));
        scene.browseTo(folder.filePath("other.tob1"));
        QCOMPARE(scene.name()->text(), folder.filePath("other.tob1"));
        scene.browseTo("");
        QCOMPARE(scene.name()->text(), folder.filePath("other.tob1"));
    }

    void theBrowserHasItsTitleAndNoFilter() {
        Scene scene;
        QString title;
        QStringList filters;
        QObject context;
        onNextDialog(&context, [&](QDialog *shown) {
            title = shown->windowTitle();
            filters = qobject_cast<QFileDialog *>(shown)->nameFilters();
            shown->reject();
        });
        scene.button("Browse...")->click();
        QCOMPARE(title, "Export Filename");
        QCOMPARE(filters, QStringList{"All Files (*)"});
    }

    void theResultsNameTheTypeByItsNumber() {
        const Scene scene;
        scene.split()->setCurrentIndex(2);
        QCOMPARE(scene.dialog.results().fileType, 1);
        QCOMPARE(scene.dialog.results().splitPeriod, 3600);
        scene.type()->setCurrentIndex(diagnostics);
        QCOMPARE(scene.dialog.results().fileType, 2);
        scene.type()->setCurrentIndex(text);
        QCOMPARE(scene.dialog.results().fileType, 0);
    }

    void aListThatComesBackWithItsSelectionKeepsTheName() {
        Scene scene;
        scene.dialog.fillList(someGroups);
        scene.typeName("/tmp/flux/mine.tob1");
        scene.dialog.fillList(someGroups);
        QCOMPARE(scene.name()->text(), "/tmp/flux/mine.tob1");
        scene.dialog.fillList({"QA330:DATA"});
        QCOMPARE(scene.name()->text(), "/tmp/flux/qa330-data.tob1");
    }

    void returnInTheNameExportsAndDoesNotBrowse() {
        Scene scene;
        scene.dialog.fillList(someGroups);
        QVERIFY(scene.button("Export")->isDefault());
        QTest::keyClick(scene.name(), Qt::Key_Return);
        QCOMPARE(scene.dialog.result(), int{QDialog::Accepted});
        QVERIFY(!scene.dialog.isVisible());
    }

    void cancelRejects() {
        Scene scene;
        scene.dialog.setResult(QDialog::Accepted);
        scene.button("Cancel")->click();
        QCOMPARE(scene.dialog.result(), int{QDialog::Rejected});
    }

    void everyControlHasAName() {
        const Scene scene;
        for (const QWidget *control :
             {static_cast<QWidget *>(scene.list()), static_cast<QWidget *>(scene.name()),
              static_cast<QWidget *>(scene.type()), static_cast<QWidget *>(scene.split())}) {
            QVERIFY(!control->accessibleName().isEmpty());
        }
    }
};

QTEST_MAIN(ExportWhatDialogTest)
#include "ExportWhatDialogTest.moc"

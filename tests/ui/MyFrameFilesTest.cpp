#include "loading/QDataSet.h"
#include "time/Timezone.h"
#include "ui/DataFiles.h"
#include "ui/FrameWindow.h"
#include "ui/ModalDialogs.h"

#include <QDropEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QMimeData>
#include <QSignalSpy>
#include <QtTest>

namespace {

// Drags `urls` onto the middle of `target` and drops them there; tells whether the drop was taken.
bool drop(QWidget *target, const QList<QUrl> &urls, Qt::DropAction action) {
    QMimeData data;
    data.setUrls(urls);
    const QPoint middle = target->rect().center();
    QDragEnterEvent enter(middle, action, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    if (!enter.isAccepted()) {
        return false;
    }
    QDropEvent event(middle, action, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &event);
    return event.isAccepted();
}

QStringList rowsOf(const FrameWindow &parts) {
    QStringList rows;
    for (int row = 0; row < parts.model()->rowCount(); ++row) {
        rows += parts.model()->index(row).data().toString();
    }
    return rows;
}

} // namespace

// How files come into the frame and leave it.
class MyFrameFilesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        zoneDirectory = FVQA_ZONEINFO_DIR;
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    }

    void theAboutPageShowsUntilFilesAreAdded() {
        const FrameWindow parts;
        QCOMPARE(parts.pages()->currentIndex(), 0);
        parts.frame->AddFiles({"/nowhere/a.data"});
        QCOMPARE(parts.pages()->currentIndex(), 1);
    }

    void addingAnEmptyListChangesNoPage() {
        const FrameWindow parts;
        parts.frame->AddFiles({});
        QCOMPARE(parts.pages()->currentIndex(), 0);
        QCOMPARE(parts.model()->rowCount(), 0);
    }

    void removingTheLastFileKeepsThePageAndDisablesExport() {
        const DataFiles files;
        const FrameWindow parts;
        const QPushButton *exporting = parts.pushButton("Export...");
        QVERIFY(!exporting->isEnabled());
        QSignalSpy loaded(parts.model(), SIGNAL(FileLoaded(QString)));
        parts.frame->AddFiles({files.writeData("a.data", "QA330", "CH4")});
        QTRY_COMPARE(loaded.count(), 1);
        QVERIFY(exporting->isEnabled());

        parts.view()->selectAll();
        parts.toolButton("Remove a file")->click();
        QCOMPARE(parts.model()->rowCount(), 0);
        QCOMPARE(parts.pages()->currentIndex(), 1);
        QVERIFY(!exporting->isEnabled());
    }

    void aFileWithoutVariablesDoesNotEnableExport() {
        const DataFiles files;
        const FrameWindow parts;
        QSignalSpy loaded(parts.model(), SIGNAL(FileLoaded(QString)));
        parts.frame->AddFiles({files.write("a.data", "Instrument:\tQA330\n")});
        QTRY_COMPARE(loaded.count(), 1);
        QVERIFY(!parts.pushButton("Export...")->isEnabled());
    }

    void onlySelectedRowsAreRemoved() {
        const FrameWindow parts;
        parts.frame->AddFiles({"/d/a", "/d/b", "/d/c", "/d/d", "/d/e"});
        parts.frame->OnCloseFile();
        QCOMPARE(parts.model()->rowCount(), 5);
        for (const int row : {4, 1, 2}) {
            parts.view()->selectionModel()->select(parts.model()->index(row), QItemSelectionModel::Select);
        }
        QSignalSpy removed(parts.model(), SIGNAL(PostHandleFileRemoved(QString)));
        parts.frame->OnCloseFile();
        QCOMPARE(rowsOf(parts), (QStringList{"a", "d"}));
        QCOMPARE(removed.count(), 3);
        QVERIFY(!parts.view()->selectionModel()->hasSelection());
        QCOMPARE(parts.view()->currentIndex().row(), 1);
    }

    void tenThousandFilesCanBeAddedAndRemovedAtOnce() {
        const FrameWindow parts;
        QStringList paths;
        for (int i = 0; i < 10000; ++i) {
            paths += QString("/nowhere/%1.data").arg(i);
        }
        parts.frame->AddFiles(paths);
        // Every other row: as many ranges as rows.
        QItemSelection selection;
        for (int row = 0; row < paths.size(); row += 2) {
            selection.append(QItemSelectionRange(parts.model()->index(row)));
        }
        parts.view()->setCurrentIndex(parts.model()->index(9998));
        parts.view()->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
        parts.frame->OnCloseFile();
        QCOMPARE(parts.model()->rowCount(), 5000);
        QCOMPARE(parts.model()->index(0).data().toString(), "1.data");
        parts.view()->selectAll();
        parts.frame->OnCloseFile();
        QCOMPARE(parts.model()->rowCount(), 0);
    }

    void filesCanBeRemovedWhileTheyLoad() {
        const DataFiles files;
        const FrameWindow parts;
        QSignalSpy loaded(parts.model(), SIGNAL(FileLoaded(QString)));
        QStringList paths;
        for (int i = 0; i < QDataSet::maximumThreads; ++i) {
            paths += files.writeData(QString("%1.data").arg(i), "QA330", "CH4\tTEMP", 20000);
        }
        parts.frame->AddFiles(paths);
        parts.view()->selectAll();
        parts.frame->OnCloseFile();
        QCOMPARE(parts.model()->rowCount(), 0);

        const QString next = files.writeData("next.data", "QA340", "CO2");
        parts.frame->AddFiles({next});
        QTRY_COMPARE(loaded.count(), 1);
        QCOMPARE(loaded[0][0].toString(), next);
        const std::set<std::string> expected{"QA340:DATA:CO2"};
        QTRY_COMPARE(parts.model()->dataSet()->variableKeys(), expected);
    }

    void droppedUrlsAreAddedAsFiles() {
        const FrameWindow parts;
        QVERIFY(drop(parts.frame, {QUrl("file:///d/a.data"), QUrl("file:///d/b%20c.data")}, Qt::CopyAction));
        QCOMPARE(rowsOf(parts), (QStringList{"a.data", "b c.data"}));
        QCOMPARE(parts.pages()->currentIndex(), 1);
    }

    void urlsDroppedToBeMovedAddNothing() {
        const FrameWindow parts;
        QVERIFY(!drop(parts.frame, {QUrl("file:///d/a.data")}, Qt::MoveAction));
        QVERIFY(!drop(parts.frame, {QUrl("file:///d/a.data")}, Qt::LinkAction));
        QCOMPARE(parts.model()->rowCount(), 0);
        QCOMPARE(parts.pages()->currentIndex(), 0);
    }

    void aDragIsAcceptedForItsUrlsOnly() {
        const FrameWindow parts;
        QMimeData text;
        text.setText("QA330:DATA:CH4");
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(parts.frame, &enter);
        QVERIFY(!enter.isAccepted());
        QVERIFY(!drop(parts.frame, {QUrl("http://example.org/a.data")}, Qt::CopyAction));
        QCOMPARE(parts.pages()->currentIndex(), 0);
    }

    void filesCanBeDroppedOnEveryPartOfTheFrame() {
        const FrameWindow parts;
        int rows = 0;
        const QList<QWidget *> targets{parts.view()->viewport(),
                                       parts.about(),
                                       parts.tabs()->widget(0),
                                       parts.tabs()->widget(1),
                                       parts.frame->findChild<QTextEdit *>()->viewport(),
                                       parts.pushButton("Close")};
        for (QWidget *target : targets) {
            const QUrl url = QUrl::fromLocalFile(QString("/d/%1.data").arg(++rows));
            QVERIFY2(drop(target, {url}, Qt::CopyAction), target->metaObject()->className());
            QCOMPARE(parts.model()->rowCount(), rows);
        }
    }

    void theFileDialogAddsWhatWasChosen() {
        const DataFiles files;
        files.writeData("a.data", "QA330", "CH4");
        files.writeData("b.data", "QA330", "CH4");
        const FrameWindow parts;
        onNextDialog(parts.frame, [&files](QDialog *active) {
            auto *dialog = qobject_cast<QFileDialog *>(active);
            QVERIFY(dialog != nullptr);
            QCOMPARE(dialog->fileMode(), QFileDialog::ExistingFiles);
            QCOMPARE(dialog->viewMode(), QFileDialog::Detail);
            QVERIFY(dialog->isModal());
            dialog->setDirectory(files.path(""));
            dialog->findChild<QLineEdit *>("fileNameEdit")->setText("\"a.data\" \"b.data\"");
            QMetaObject::invokeMethod(dialog, "accept");
        });
        parts.toolButton("Add a file")->click();
        QCOMPARE(rowsOf(parts), (QStringList{"a.data", "b.data"}));
        QCOMPARE(parts.pages()->currentIndex(), 1);
    }

    void aCancelledFileDialogChangesNothing() {
        const FrameWindow parts;
        bool shown = false;
        onNextDialog(parts.frame, [&shown](QDialog *dialog) {
            shown = true;
            dialog->reject();
        });
        QTest::mouseClick(parts.about(), Qt::LeftButton);
        QVERIFY(shown);
        QCOMPARE(parts.pages()->currentIndex(), 0);
        QCOMPARE(parts.model()->rowCount(), 0);
    }

    void theKeyboardOpensTheFileDialogFromTheAboutPage() {
        FrameWindow parts;
        parts.window.activateWindow();
        parts.about()->setFocus();
        QTRY_VERIFY(parts.about()->hasFocus());
        int shown = 0;
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) {
            onNextDialog(parts.frame, [&shown](QDialog *dialog) {
                ++shown;
                dialog->reject();
            });
            QTest::keyClick(parts.about(), key);
        }
        QCOMPARE(shown, 2);
    }
};

QTEST_MAIN(MyFrameFilesTest)
#include "MyFrameFilesTest.moc"

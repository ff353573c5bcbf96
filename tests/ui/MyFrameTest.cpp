#include "loading/QDataSet.h"
#include "loading/messagebuf.h"
#include "plot/PlotDialog.h"
#include "time/Timezone.h"
#include "ui/DataFiles.h"
#include "ui/FrameWindow.h"
#include "ui/MetaObjectLists.h"
#include "ui/ModalDialogs.h"

#include <QDesktopServices>
#include <QDropEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMimeData>
#include <QPointer>
#include <QSignalSpy>
#include <QSplitter>
#include <QVBoxLayout>
#include <QtTest>

#include <iostream>

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

// Opened URLs of a test, in place of the desktop's programs.
class OpenedUrls : public QObject {
    Q_OBJECT

public:
    OpenedUrls() { QDesktopServices::setUrlHandler("file", this, "open"); }
    ~OpenedUrls() override { QDesktopServices::unsetUrlHandler("file"); }

    QList<QUrl> urls;

public Q_SLOTS:
    void open(const QUrl &url) { urls += url; }
};

class MyFrameTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        zoneDirectory = FVQA_ZONEINFO_DIR;
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    }

    void hasItsSignalAndSlots() {
        const QMetaObject &meta = MyFrame::staticMetaObject;
        QCOMPARE(meta.className(), "MyFrame");
        QCOMPARE(ownSignals(meta), QStringList{"Message(const char*)"});
        QCOMPARE(ownSlots(meta),
                 (QStringList{"OnOpenFile()", "OnCloseFile()", "OnExportFile()", "OnHelp()",
                              "OnSelectionChanged(QModelIndex,QModelIndex)", "OnFileLoaded(QString)",
                              "OnFileRemoved(QString)", "OnPostFileRemoved(QString)"}));
        QCOMPARE(meta.method(meta.methodOffset()).methodSignature(), QByteArray("Message(const char*)"));
    }

    void buttonsPagesAndStreamsAreConnected() {
        const FrameWindow parts;
        MyFrame *frame = parts.frame;
        const struct {
            const QObject *sender;
            const char *signal;
            const QObject *receiver;
            const char *slot;
        } connections[] = {
            {parts.toolButton("Add a file"), SIGNAL(clicked(bool)), frame, SLOT(OnOpenFile())},
            {parts.toolButton("Remove a file"), SIGNAL(clicked(bool)), frame, SLOT(OnCloseFile())},
            {parts.pushButton("Close"), SIGNAL(clicked(bool)), &parts.window, SLOT(close())},
            {parts.pushButton("Export..."), SIGNAL(clicked(bool)), frame, SLOT(OnExportFile())},
            {parts.pushButton("Help..."), SIGNAL(clicked(bool)), frame, SLOT(OnHelp())},
            {parts.about(), SIGNAL(OpenFile()), frame, SLOT(OnOpenFile())},
            {parts.view(), SIGNAL(SelectionChanged(QModelIndex, QModelIndex)), frame,
             SLOT(OnSelectionChanged(QModelIndex, QModelIndex))},
            {dynamic_cast<messagebuf *>(std::cerr.rdbuf()), SIGNAL(Message(const char *)), parts.tabs(),
             SLOT(OnMessage(const char *))},
            {parts.model(), SIGNAL(FileLoaded(QString)), frame, SLOT(OnFileLoaded(QString))},
            {parts.model(), SIGNAL(FileRemoved(QString)), frame, SLOT(OnFileRemoved(QString))},
            {parts.model(), SIGNAL(PostHandleFileRemoved(QString)), frame, SLOT(OnPostFileRemoved(QString))},
        };
        for (const auto &connection : connections) {
            QVERIFY2(connection.sender != nullptr, connection.signal);
            QVERIFY2(QObject::disconnect(connection.sender, connection.signal, connection.receiver,
                                         connection.slot),
                     connection.signal);
        }
    }

    void theListStandsBesideThePagesAboveTheButtons() {
        const FrameWindow parts;
        QVERIFY(parts.frame->testAttribute(Qt::WA_DeleteOnClose));
        QVERIFY(parts.frame->acceptDrops());
        QCOMPARE(parts.view()->minimumWidth(), 200);
        QCOMPARE(parts.pages()->minimumSize(), QSize(480, 360));
        QCOMPARE(parts.pages()->count(), 2);
        QCOMPARE(parts.pages()->indexOf(parts.about()), 0);
        QCOMPARE(parts.pages()->indexOf(parts.tabs()), 1);

        const auto *splitter = parts.frame->findChild<QSplitter *>();
        QCOMPARE(splitter->orientation(), Qt::Horizontal);
        QCOMPARE(splitter->widget(0), parts.view());
        QCOMPARE(splitter->widget(1), parts.pages());

        const auto *column = qobject_cast<QVBoxLayout *>(parts.frame->layout());
        QVERIFY(column != nullptr);
        QCOMPARE(column->itemAt(0)->widget(), splitter);
        const auto *row = qobject_cast<QHBoxLayout *>(column->itemAt(1)->layout());
        QVERIFY(row != nullptr);
        QCOMPARE(row->count(), 6);
        QCOMPARE(row->itemAt(0)->widget(), parts.toolButton("Add a file"));
        QCOMPARE(row->itemAt(1)->widget(), parts.toolButton("Remove a file"));
        QVERIFY(row->itemAt(2)->spacerItem() != nullptr);
        QCOMPARE(row->itemAt(3)->widget(), parts.pushButton("Export..."));
        QCOMPARE(row->itemAt(4)->widget(), parts.pushButton("Help..."));
        QCOMPARE(row->itemAt(5)->widget(), parts.pushButton("Close"));
    }

    void theWindowsExtraRoomGoesToThePages() {
        FrameWindow parts;
        parts.window.resize(900, 600);
        QTRY_COMPARE(parts.window.width(), 900);
        const int listWidth = parts.view()->width();
        parts.window.resize(1200, 600);
        QTRY_VERIFY(parts.pages()->width() > 700);
        QCOMPARE(parts.view()->width(), listWidth);
    }

    void theToolButtonsHaveIconsOf22Pixels() {
        const FrameWindow parts;
        for (const QString name : {"Add a file", "Remove a file"}) {
            const QToolButton *button = parts.toolButton(name);
            QVERIFY(button->autoRaise());
            QCOMPARE(button->accessibleName(), name);
            QCOMPARE(button->iconSize(), QSize(22, 22));
            QCOMPARE(button->icon().availableSizes(), QList<QSize>{QSize(22, 22)});
        }
    }

    void theIconsHaveTheirCountsOfColours() {
        const FrameWindow parts;
        const QPair<QString, int> rows[] = {{"Add a file", 47}, {"Remove a file", 22}};
        for (const auto &[name, colours] : rows) {
            const QImage image = parts.toolButton(name)->icon().pixmap(22, 22).toImage();
            QSet<QRgb> seen;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    const QColor colour = image.pixelColor(x, y);
                    // Transparent is one of the colours; all others lean to blue.
                    QVERIFY(colour.alpha() == 0 || (colour.alpha() == 255 && colour.blue() >= colour.red()));
                    seen += colour.alpha() == 0 ? 0 : colour.rgba();
                }
            }
            QCOMPARE(seen.size(), colours);
        }
    }

    void theIconsAreDrawnAnewForAScreenOfTwiceThePixels() {
        const FrameWindow parts;
        for (const QString name : {"Add a file", "Remove a file"}) {
            const QIcon icon = parts.toolButton(name)->icon();
            const QImage sharp = icon.pixmap(44, 44).toImage();
            QCOMPARE(sharp.size(), QSize(44, 44));
            bool isEnlarged = true; // each pixel stands four times
            for (int y = 0; y < 44; ++y) {
                for (int x = 0; x < 44; ++x) {
                    isEnlarged = isEnlarged && sharp.pixel(x, y) == sharp.pixel(x & ~1, y & ~1);
                }
            }
            QVERIFY(!isEnlarged);
            QCOMPARE(sharp.pixelColor(0, 0).alpha(), 0);
            QCOMPARE(sharp.pixelColor(30, 30), QColor(0xf2, 0xf8, 0xff)); // the sign's middle
        }
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

    void theCloseButtonClosesTheWindow() {
        const FrameWindow parts;
        parts.pushButton("Close")->click();
        QVERIFY(!parts.window.isVisible());
    }

    void helpOpensTheDocumentBesideTheProgram() {
        const DataFiles files;
        const QString document = files.write("viewer.pdf", "%PDF");
        const OpenedUrls opened;
        const FrameWindow parts(files.path("viewer"));
        parts.pushButton("Help...")->click();
        QCOMPARE(opened.urls, QList<QUrl>{QUrl::fromLocalFile(QFileInfo(document).canonicalFilePath())});
    }

    void aMissingHelpDocumentOpensNothing() {
        const OpenedUrls opened;
        const FrameWindow parts("/nowhere/viewer");
        parts.pushButton("Help...")->click();
        QCOMPARE(opened.urls, QList<QUrl>());
        QCOMPARE(parts.messages(), QString());
    }

    void f1OpensTheDocumentToo() {
        const DataFiles files;
        files.write("viewer.pdf", "%PDF");
        const OpenedUrls opened;
        const FrameWindow parts(files.path("viewer"));
        QVERIFY(QTest::qWaitForWindowActive(const_cast<QMainWindow *>(&parts.window)));
        for (QWidget *widget :
             {static_cast<QWidget *>(parts.view()), static_cast<QWidget *>(parts.about())}) {
            widget->setFocus();
            QTest::keyClick(widget, Qt::Key_F1);
        }
        QCOMPARE(opened.urls.size(), 2);
    }

    void f1OpensTheDocumentFromAPlotWindow() {
        const DataFiles files;
        files.write("viewer.pdf", "%PDF");
        const OpenedUrls opened;
        const FrameWindow parts(files.path("viewer"));
        const QPointer<PlotDialog> plot(new PlotDialog(parts.frame, parts.model()->dataSet(), "NONE"));
        plot->show();
        plot->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(plot));
        QTest::keyClick(plot, Qt::Key_F1);
        QCOMPARE(opened.urls.size(), 1);
    }

    void f1OpensTheDocumentFromTheExportDialog() {
        const DataFiles files;
        files.write("viewer.pdf", "%PDF");
        const OpenedUrls opened;
        const FrameWindow parts(files.path("viewer"));
        parts.frame->AddFiles({files.writeData("GA-1-a.data", "GA", "CH4")});
        QTRY_VERIFY(parts.pushButton("Export...")->isEnabled());
        onNextDialog(parts.frame, [](QDialog *dialog) {
            dialog->activateWindow();
            QTRY_VERIFY(dialog->isActiveWindow());
            QTest::keyClick(dialog, Qt::Key_F1);
            dialog->reject();
        });
        parts.frame->OnExportFile();
        QCOMPARE(opened.urls.size(), 1);
    }

    void timeColumnsDefaultTo12() {
        const FrameWindow parts;
        QCOMPARE(parts.frame->timeColumns(), 12U);
        parts.frame->setTimeColumns(35);
        QCOMPARE(parts.frame->timeColumns(), 35U);
        parts.frame->setTimeColumns(0);
        QCOMPARE(parts.frame->timeColumns(), 12U);
    }

    void standardErrorShowsInTheMessagesTabLineByLine() {
        const FrameWindow parts;
        std::cerr << "100 %s\n<b>not bold</b>\nbroken \xff\n\nnever finished";
        QCOMPARE(parts.messages(), QStringLiteral("100 %s\n<b>not bold</b>\nbroken \ufffd\n"));
    }

    void standardErrorGetsItsBufferBackWhenTheFrameIsGone() {
        const std::streambuf *before = std::cerr.rdbuf();
        {
            const FrameWindow parts;
            QVERIFY(std::cerr.rdbuf() != before);
        }
        QCOMPARE(static_cast<const std::streambuf *>(std::cerr.rdbuf()), before);
        std::cerr << std::flush;
        QVERIFY(std::cerr.good());
    }

    void theFrameIsDeletedWhenItIsClosed() {
        FrameWindow parts;
        QSignalSpy destroyed(parts.frame, SIGNAL(destroyed()));
        parts.frame->close();
        QTRY_COMPARE(destroyed.count(), 1);
    }
};

QTEST_MAIN(MyFrameTest)
#include "MyFrameTest.moc"

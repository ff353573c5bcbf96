#include "loading/QDataSet.h"
#include "plot/PlotDialog.h"
#include "time/Timezone.h"
#include "ui/DataFiles.h"
#include "ui/FrameWindow.h"
#include "ui/ModalDialogs.h"

#include <QDesktopServices>
#include <QPointer>
#include <QtTest>

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

// The help document, by its button and by its key.
class MyFrameHelpTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        zoneDirectory = FVQA_ZONEINFO_DIR;
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
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
};

QTEST_MAIN(MyFrameHelpTest)
#include "MyFrameHelpTest.moc"

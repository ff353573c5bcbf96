#include "ui/FileWidget.h"

#include "loading/QDataSet.h"
#include "time/Timezone.h"
#include "ui/DataFiles.h"
#include "ui/FileLoadProgressWidget.h"
#include "ui/MetaObjectLists.h"
#include "ui/SummaryWidget.h"

#include <QProgressBar>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTextBlock>
#include <QTextEdit>
#include <QtTest>

namespace {

QTextEdit *messagesOf(const FileWidget &tabs) {
    return qobject_cast<QTextEdit *>(tabs.widget(2));
}

} // namespace

class FileWidgetTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    void hasTheTwoMessageSlots() {
        QCOMPARE(FileWidget::staticMetaObject.className(), "FileWidget");
        QCOMPARE(ownSlots(FileWidget::staticMetaObject),
                 (QStringList{"OnMessage(const char*)", "OnDataSetMessage(QString,QString)"}));
    }

    void theTabsAreProgressVariablesMessages() {
        QDataSet dataSet;
        const FileWidget tabs(nullptr, &dataSet);
        QCOMPARE(tabs.count(), 3);
        QCOMPARE(tabs.tabText(0), "Progress");
        QCOMPARE(tabs.tabText(1), "Variables");
        QCOMPARE(tabs.tabText(2), "Messages");
        QVERIFY(qobject_cast<FileLoadProgressWidget *>(tabs.widget(0)) != nullptr);
        QVERIFY(qobject_cast<SummaryWidget *>(tabs.widget(1)) != nullptr);
        QVERIFY(messagesOf(tabs)->isReadOnly());
    }

    void isConnectedToTheDataSet() {
        QDataSet dataSet;
        FileWidget tabs(nullptr, &dataSet);
        QVERIFY(QObject::disconnect(&dataSet, SIGNAL(Message(QString, QString)), &tabs,
                                    SLOT(OnDataSetMessage(QString, QString))));
        QVERIFY(QObject::disconnect(&dataSet, SIGNAL(Progress(QString, int, qint64)), tabs.widget(0),
                                    SLOT(OnProgress(QString, int, qint64))));
    }

    void everyMessageIsAParagraph() {
        QDataSet dataSet;
        FileWidget tabs(nullptr, &dataSet);
        tabs.OnMessage("first");
        tabs.OnMessage("");
        tabs.OnDataSetMessage("/d/x.data", "Checksum errors: 3");
        QCOMPARE(messagesOf(tabs)->toPlainText(), "first\n\n/d/x.data: Checksum errors: 3");
    }

    void aNullPointerIsAnEmptyParagraph() {
        QDataSet dataSet;
        FileWidget tabs(nullptr, &dataSet);
        tabs.OnMessage("before");
        tabs.OnMessage(nullptr);
        tabs.OnMessage("after");
        QCOMPARE(messagesOf(tabs)->toPlainText(), "before\n\nafter");
    }

    void messagesAreUtf8AndDamagedOnesStillShow() {
        QDataSet dataSet;
        FileWidget tabs(nullptr, &dataSet);
        tabs.OnMessage("\xc2\xb5mol");
        tabs.OnMessage("a\xff\xfe!");
        const QString replacement(2, QChar(0xfffd));
        QCOMPARE(messagesOf(tabs)->toPlainText(), QStringLiteral("\u00b5mol\na") + replacement + "!");
    }

    void whatLooksLikeMarkupOrAFormatIsShownAsItIs() {
        QDataSet dataSet;
        FileWidget tabs(nullptr, &dataSet);
        tabs.OnMessage("<b>bold</b> &amp; %s %1");
        tabs.OnDataSetMessage("/d/<i>x</i>.data", "ERROR: <img src=\"/etc/x.png\"><br>");
        tabs.OnMessage("<html><body>page</body></html>");
        QCOMPARE(messagesOf(tabs)->toPlainText(), "<b>bold</b> &amp; %s %1\n"
                                                  "/d/<i>x</i>.data: ERROR: <img src=\"/etc/x.png\"><br>\n"
                                                  "<html><body>page</body></html>");
    }

    void aMessageThatNobodySawMarksItsTabUntilTheTabIsShown() {
        QDataSet dataSet;
        FileWidget tabs(nullptr, &dataSet);
        QVERIFY(tabs.tabIcon(2).isNull());
        tabs.OnDataSetMessage("/d/x.data", "Checksum errors: 3");
        QVERIFY(!tabs.tabIcon(2).isNull());
        QVERIFY(!tabs.tabToolTip(2).isEmpty());
        tabs.setCurrentIndex(1);
        QVERIFY(!tabs.tabIcon(2).isNull());
        tabs.setCurrentIndex(2);
        QVERIFY(tabs.tabIcon(2).isNull());
        QVERIFY(tabs.tabToolTip(2).isEmpty());
        tabs.OnMessage("seen as it comes");
        tabs.setCurrentIndex(0);
        QVERIFY(tabs.tabIcon(2).isNull());
        QCOMPARE(tabs.tabText(2), "Messages");
    }

    void theNewestMessagesAreKept() {
        QDataSet dataSet;
        FileWidget tabs(nullptr, &dataSet);
        const int count = FileWidget::mostMessages + 3;
        for (int i = 0; i < count; ++i) {
            tabs.OnMessage(QByteArray::number(i).constData());
        }
        const QTextDocument *messages = messagesOf(tabs)->document();
        QCOMPARE(messages->blockCount(), FileWidget::mostMessages);
        QCOMPARE(messages->firstBlock().text(), "3");
        QCOMPARE(messages->lastBlock().text(), QString::number(count - 1));
    }

    void aLongMessageIsCutAndManyOfThemPushOutTheOldest() {
        QDataSet dataSet;
        FileWidget tabs(nullptr, &dataSet);
        const int count = FileWidget::mostCharacters / FileWidget::longestMessage + 3;
        for (int i = 0; i < count; ++i) {
            tabs.OnDataSetMessage(QString::number(i), QString(1'000'000, QLatin1Char('x')));
        }
        const QTextDocument *messages = messagesOf(tabs)->document();
        QVERIFY(messages->characterCount() <= FileWidget::mostCharacters);
        QVERIFY(messages->characterCount() > FileWidget::mostCharacters - 2 * FileWidget::longestMessage);
        const QString last = messages->lastBlock().text();
        QCOMPARE(last.size(), FileWidget::longestMessage + 1);
        QVERIFY(last.startsWith(QString::number(count - 1) + ": xxx"));
        QVERIFY(last.endsWith(QStringLiteral("…")));
        QVERIFY(messages->firstBlock().text().contains(QStringLiteral(": xxx"))); // a whole one
    }

    void theMessagesScrollToTheNewestUnlessSomeoneReadsEarlierOnes() {
        QDataSet dataSet;
        FileWidget tabs(nullptr, &dataSet);
        tabs.resize(300, 200);
        tabs.setCurrentIndex(2);
        tabs.show();
        const QScrollBar *bar = messagesOf(tabs)->verticalScrollBar();
        for (int line = 0; line < 100; ++line) {
            tabs.OnMessage("line");
        }
        QVERIFY(bar->maximum() > 0);
        QCOMPARE(bar->value(), bar->maximum());

        messagesOf(tabs)->verticalScrollBar()->setValue(3);
        tabs.OnMessage("line");
        QCOMPARE(bar->value(), 3);
    }

    void theNewestMessageIsInViewWhenTheTabIsShownLateOrResized() {
        QDataSet dataSet;
        FileWidget tabs(nullptr, &dataSet);
        tabs.resize(300, 200);
        tabs.show();
        for (int line = 0; line < 100; ++line) {
            tabs.OnMessage("a line that is long enough to wrap when the window becomes narrow");
        }
        const QScrollBar *bar = messagesOf(tabs)->verticalScrollBar();
        tabs.setCurrentIndex(2);
        for (const QSize size : {QSize(300, 200), QSize(200, 120), QSize(600, 300), QSize(200, 200)}) {
            tabs.resize(size);
            QTRY_COMPARE(tabs.size(), size);
            QVERIFY(bar->maximum() > 0);
            QTRY_COMPARE(bar->value(), bar->maximum());
            tabs.OnMessage("one more");
            QCOMPARE(bar->value(), bar->maximum());
        }
    }

    void loadingShowsInAllThreeTabs() {
        const DataFiles files;
        const QString path = files.write("x.data", "DATAH\tSECONDS\tCH4\tCHK\n"
                                                   "DATA\t1600000000\t1.5\t0\n"
                                                   "DATA\t1600000001\t1.5\t0\n");
        QDataSet dataSet;
        FileWidget tabs(nullptr, &dataSet);
        QSignalSpy loaded(&dataSet, SIGNAL(FileLoaded(QString)));
        dataSet.AddFile(path);
        const auto *bar = tabs.findChild<QProgressBar *>();
        QCOMPARE(bar->format(), "1 Files Remaining (%p% Done)");
        QTRY_COMPARE(loaded.count(), 1);
        QCOMPARE(bar->format(), "0 Files Remaining (%p% Done)");
        QCOMPARE(bar->value(), 100);
        QVERIFY(messagesOf(tabs)->toPlainText().startsWith(path + ": Checksum errors: 2"));
    }
};

QTEST_MAIN(FileWidgetTest)
#include "FileWidgetTest.moc"

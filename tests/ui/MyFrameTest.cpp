#include "loading/messagebuf.h"
#include "time/Timezone.h"
#include "ui/FrameWindow.h"
#include "ui/MetaObjectLists.h"

#include <QHBoxLayout>
#include <QSignalSpy>
#include <QSplitter>
#include <QVBoxLayout>
#include <QtTest>

#include <iostream>

// What the frame consists of, what it is connected to, and how it ends.
class MyFrameTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zoneDirectory = FVQA_ZONEINFO_DIR; }

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

    void theCloseButtonClosesTheWindow() {
        const FrameWindow parts;
        parts.pushButton("Close")->click();
        QVERIFY(!parts.window.isVisible());
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

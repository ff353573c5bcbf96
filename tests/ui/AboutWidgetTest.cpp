#include "ui/AboutWidget.h"

#include "ui/MetaObjectLists.h"

#include <QGridLayout>
#include <QLabel>
#include <QMainWindow>
#include <QSignalSpy>
#include <QtTest>

class AboutWidgetTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasTheOneSignalOpenFile() {
        QCOMPARE(AboutWidget::staticMetaObject.className(), "AboutWidget");
        QCOMPARE(ownSignals(AboutWidget::staticMetaObject), QStringList{"OpenFile()"});
    }

    void theTextNamesTheInstrumentsTheVersionAndTheOwner() {
        const AboutWidget about;
        const QString expected =
            QStringLiteral("<html><head><style type=\"text/css\">p{color:darkblue; text-align:center; }"
                           "</style></head><body><strong><center>&nbsp;"
                           "<p>File Viewer for QA-310, QA-320A, QA-330, and QA-34xx</p>"
                           "<p>Version 1.0.5 (2022-02-14)</p><p>\u00a9 Ombrix</p><p>All rights reserved</p>"
                           "&nbsp;</center></strong></body></html>");
        QCOMPARE(about.findChild<QLabel *>()->text(), expected);
    }

    void resizingTheWindowKeepsTheTextCentred() {
        QMainWindow window;
        auto *about = new AboutWidget;
        window.setCentralWidget(about);
        window.show();
        const auto *label = about->findChild<QLabel *>();
        for (const QSize size : {QSize(600, 400), QSize(1000, 500), QSize(640, 800), QSize(601, 401)}) {
            window.resize(size);
            QTRY_COMPARE(about->size(), size);
            const QPoint off = label->geometry().center() - about->rect().center();
            QVERIFY2(qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1, qPrintable(QString("%1").arg(off.x())));
            QVERIFY(about->rect().contains(label->geometry()));
        }
    }

    void noTextIsCutOffOnThePageAtItsSmallestOrLargest() {
        for (const int points : {8, 9, 10, 11, 12, 16, 20}) {
            AboutWidget about;
            QFont font = about.font();
            font.setPointSize(points);
            about.setFont(font);
            about.show();
            const auto *label = about.findChild<QLabel *>();
            for (const QSize size : {QSize(480, 360), QSize(1600, 900)}) {
                about.resize(size);
                QTRY_COMPARE(about.size(), size);
                QVERIFY(about.rect().contains(label->geometry()));
                QVERIFY(label->width() >= label->minimumSizeHint().width());
                QVERIFY2(label->heightForWidth(label->width()) <= label->height(),
                         qPrintable(QString("%1 pt").arg(points)));
            }
        }
    }

    void theTextStandsInRow3AndColumn1BetweenStretches() {
        const AboutWidget about;
        const auto *layout = qobject_cast<QGridLayout *>(about.layout());
        QVERIFY(layout != nullptr);
        QCOMPARE(layout->itemAtPosition(3, 1)->widget(), about.findChild<QLabel *>());
        QCOMPARE(layout->itemAtPosition(3, 1)->alignment(), Qt::AlignHCenter);
        QCOMPARE(layout->rowStretch(0), 1);
        QCOMPARE(layout->rowStretch(6), 1);
    }

    void aClickAnywhereOnThePageAsksForFiles() {
        AboutWidget about;
        about.resize(500, 400);
        about.show();
        QSignalSpy opened(&about, SIGNAL(OpenFile()));
        QTest::mouseClick(&about, Qt::LeftButton, {}, {5, 5});
        QCOMPARE(opened.count(), 1);
        QTest::mouseClick(about.findChild<QLabel *>(), Qt::LeftButton);
        QCOMPARE(opened.count(), 2);
    }

    void onlyAFinishedLeftClickCounts() {
        AboutWidget about;
        about.resize(500, 400);
        about.show();
        QSignalSpy opened(&about, SIGNAL(OpenFile()));
        QTest::mouseClick(&about, Qt::RightButton);
        QTest::mouseClick(&about, Qt::MiddleButton);
        QTest::mousePress(&about, Qt::LeftButton);
        QTest::mouseRelease(&about, Qt::LeftButton, {}, {600, 5}); // outside: changed one's mind
        QCOMPARE(opened.count(), 0);
    }

    void returnAndSpaceAskForFiles() {
        AboutWidget about;
        about.show();
        about.activateWindow();
        about.setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(about.hasFocus());
        QSignalSpy opened(&about, SIGNAL(OpenFile()));
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
            QTest::keyClick(&about, key);
        }
        QCOMPARE(opened.count(), 3);
        QTest::keyClick(&about, Qt::Key_A);
        QTest::keyClick(&about, Qt::Key_Escape);
        QCOMPARE(opened.count(), 3);
    }

    void aKeyHeldDownAsksOnce() {
        AboutWidget about;
        QSignalSpy opened(&about, SIGNAL(OpenFile()));
        QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, " ", true);
        QApplication::sendEvent(&about, &repeated);
        QCOMPARE(opened.count(), 0);
    }

    void theKeyboardReachesThePage() {
        const AboutWidget about;
        QCOMPARE(about.focusPolicy(), Qt::StrongFocus);
        QVERIFY(!about.accessibleName().isEmpty());
    }

    void darkBlueTextIsLegibleInADarkColourScheme() {
        const QPalette before = QApplication::palette();
        QPalette dark(QColor(49, 54, 59));
        dark.setColor(QPalette::WindowText, Qt::white);
        QApplication::setPalette(dark);
        QMainWindow window;
        auto *about = new AboutWidget;
        window.setCentralWidget(about);
        const QColor corner = window.grab().toImage().pixelColor(about->pos() + QPoint(1, 1));
        QApplication::setPalette(before);
        QVERIFY2(corner.lightness() > 200, qPrintable(corner.name()));
    }

    void keyboardUsersSeeThatThePageHasTheFocus() {
        AboutWidget about;
        about.resize(300, 200);
        about.show();
        about.activateWindow();
        QTRY_VERIFY(about.isActiveWindow());
        const QImage without = about.grab().toImage();
        about.setFocus();
        QTest::keyClick(&about, Qt::Key_Tab);
        QTRY_VERIFY(about.hasFocus());
        QVERIFY(about.grab().toImage() != without);
    }
};

QTEST_MAIN(AboutWidgetTest)
#include "AboutWidgetTest.moc"

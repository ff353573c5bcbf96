// F1, Ctrl+W and Ctrl+Q in the dialogs, which the keys of the windows behind them do not reach.

#include "ui/KeyboardScene.h"
#include "ui/ModalDialogs.h"

#include <QDesktopServices>
#include <QScopeGuard>

class DialogKeysTest : public QObject {
    Q_OBJECT

public Q_SLOTS:
    void noteHelp(const QUrl &) { ++helps_; }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(files_.setUp());
        files_.write("viewer.pdf", "%PDF");
        program_ = QFile::encodeName(files_.path("viewer"));
        QDesktopServices::setUrlHandler("file", this, "noteHelp");
    }
    void cleanupTestCase() { QDesktopServices::unsetUrlHandler("file"); }

    void everyDialogHasTheKeys_data() {
        QTest::addColumn<bool>("isOfPlot");
        QTest::addColumn<Qt::Key>("opening");
        QTest::addColumn<Qt::Key>("leaving");
        for (const Qt::Key leaving : {Qt::Key_W, Qt::Key_Q}) {
            const QByteArray name = leaving == Qt::Key_W ? ", Ctrl+W" : ", Ctrl+Q";
            QTest::newRow(("export" + name).constData()) << false << Qt::Key_E << leaving;
            QTest::newRow(("files" + name).constData()) << false << Qt::Key_O << leaving;
            QTest::newRow(("picture" + name).constData()) << true << Qt::Key_S << leaving;
            QTest::newRow(("print" + name).constData()) << true << Qt::Key_P << leaving;
        }
    }
    void everyDialogHasTheKeys() {
        QFETCH(bool, isOfPlot);
        QFETCH(Qt::Key, opening);
        QFETCH(Qt::Key, leaving);
        const Scene scene({files_.file()}, program_);
        QVERIFY(scene.isLoaded());
        QWidget *from = scene.window.get();
        if (isOfPlot) {
            from = scene.openPlot();
            QVERIFY(from != nullptr);
        }
        // A dialog that is kept has them once, also when it is shown again.
        for (int i = leaving == Qt::Key_W ? 0 : 1; i < 2; ++i) {
            helps_ = 0;
            QVERIFY(isActive(from));
            onNextDialog(scene.window.get(), [&](QDialog *dialog) {
                const auto guard = qScopeGuard([dialog] { leave(dialog); });
                QVERIFY(isActive(dialog));
                press(Qt::Key_F1);
                QVERIFY(dialog->isVisible());
                press(leaving, Qt::ControlModifier);
                QVERIFY(!dialog->isVisible());
            });
            press(opening, Qt::ControlModifier);
            QCOMPARE(helps_, 1);
        }
        QCoreApplication::sendPostedEvents();
        QCOMPARE(scene.window->isVisible(), leaving == Qt::Key_W);
    }

    // The dialog that was asked from stays, or goes with it.
    void aDialogOfADialogHasThemToo_data() {
        QTest::addColumn<Qt::Key>("leaving");
        QTest::newRow("Ctrl+W") << Qt::Key_W;
        QTest::newRow("Ctrl+Q") << Qt::Key_Q;
    }
    void aDialogOfADialogHasThemToo() {
        QFETCH(Qt::Key, leaving);
        const Scene scene({files_.file()}, program_);
        QVERIFY(scene.isLoaded());
        QVERIFY(isActive(scene.window.get()));
        helps_ = 0;
        int left = 0;
        onNextDialog(scene.window.get(), [&](QDialog *exports) {
            const auto guard = qScopeGuard([exports] { leave(exports); });
            QVERIFY(isActive(exports));
            onNextDialog(scene.window.get(), [&](QDialog *names) {
                const auto innerGuard = qScopeGuard([names] { leave(names); });
                QVERIFY(names != exports);
                QVERIFY(isActive(names));
                press(Qt::Key_F1);
                press(leaving, Qt::ControlModifier);
                QVERIFY(!names->isVisible());
                ++left;
            });
            for (auto *button : exports->findChildren<QPushButton *>()) {
                if (button->text() == "Browse...") {
                    button->click();
                }
            }
            QCOMPARE(exports->isVisible(), leaving == Qt::Key_W);
        });
        press(Qt::Key_E, Qt::ControlModifier);
        QCOMPARE(left, 1);
        QCOMPARE(helps_, 1);
        QCoreApplication::sendPostedEvents();
        QCOMPARE(scene.window->isVisible(), leaving == Qt::Key_W);
    }

private:
    int helps_ = 0;
    SceneFiles files_;
    QByteArray program_;
};

QTEST_MAIN(DialogKeysTest)
#include "DialogKeysTest.moc"

#include "ui/MyMainWindow.h"

#include "time/Timezone.h"
#include "ui/DataFiles.h"
#include "ui/FileItemModel.h"
#include "ui/MyFrame.h"

#include <QScreen>
#include <QSettings>
#include <QSignalSpy>
#include <QtTest>

#include <iostream>
#include <memory>

namespace {

std::unique_ptr<MyMainWindow> makeWindow(const QByteArrayList &arguments = {}) {
    QVector<const char *> vector{"/nowhere/viewer"};
    for (const QByteArray &argument : arguments) {
        vector += argument.constData();
    }
    return std::make_unique<MyMainWindow>("Viewer", "/nowhere/viewer", vector.size(), vector.constData());
}

QStringList shownFiles(const MyMainWindow &window) {
    const auto *model = window.findChild<FileItemModel *>();
    QStringList names;
    for (int row = 0; row < model->rowCount(); ++row) {
        names += model->index(row).data().toString();
    }
    return names;
}

MyFrame *frameOf(const MyMainWindow &window) {
    return qobject_cast<MyFrame *>(window.centralWidget());
}

} // namespace

class MyMainWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        zoneDirectory = FVQA_ZONEINFO_DIR;
        QVERIFY(settingsFolder_.isValid());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsFolder_.path());
    }

    void init() { settings().clear(); }

    void holdsTheFrame() {
        QCOMPARE(MyMainWindow::staticMetaObject.className(), "MyMainWindow");
        const auto window = makeWindow();
        QVERIFY(frameOf(*window) != nullptr);
        QCOMPARE(shownFiles(*window), QStringList());
    }

    void argumentsThatBeginWithAHyphenAreNoFiles() {
        const auto window = makeWindow({"-x", "a.data", "b.ghg"});
        QCOMPARE(shownFiles(*window), (QStringList{"a.data", "b.ghg"}));
        const auto onlyOptions = makeWindow({"-x", "--", "-"});
        QCOMPARE(shownFiles(*onlyOptions), QStringList());
    }

    void argumentsAreUtf8() {
        const auto window = makeWindow({"/d/\xc3\xa9t\xc3\xa9.data"});
        QCOMPARE(shownFiles(*window), QStringList{QStringLiteral("\u00e9t\u00e9.data")});
    }

    void argumentsLoad() {
        const DataFiles files;
        const QString path = files.writeData("a.data", "QA330", "CH4");
        const auto window = makeWindow({QFile::encodeName(path)});
        QSignalSpy loaded(window->findChild<FileItemModel *>(), SIGNAL(FileLoaded(QString)));
        QTRY_COMPARE(loaded.count(), 1);
        QCOMPARE(loaded[0][0].toString(), path);
    }

    void noArgumentsAtAllAreFine() {
        const MyMainWindow window("Viewer", QString(), 0, nullptr);
        QCOMPARE(shownFiles(window), QStringList());
    }

    void aStoredTimeColumnsOf0ReadsBackAs12() {
        settings().setValue("timecols", 0U);
        QCOMPARE(frameOf(*makeWindow())->timeColumns(), 12U);
    }

    void storedTimeColumns() {
        const QPair<QVariant, quint32> rows[] = {
            {QVariant(), 12}, {35U, 35}, {"3", 3}, {"rubbish", 12}, {4294967295U, 4294967295U}};
        for (const auto &[stored, read] : rows) {
            settings().clear();
            if (stored.isValid()) {
                settings().setValue("timecols", stored);
            }
            const auto window = makeWindow();
            QCOMPARE(frameOf(*window)->timeColumns(), read);
        }
    }

    void closingStoresTheTimeColumns() {
        const auto window = makeWindow();
        frameOf(*window)->setTimeColumns(63);
        QVERIFY(!settings().contains("timecols"));
        window->close();
        QCOMPARE(settings().value("timecols").toUInt(), 63U);
    }

    void closingStoresTheGeometryAndTheNextWindowGetsIt() {
        const auto first = makeWindow();
        first->show();
        first->setGeometry(40, 50, 760, 555);
        QTRY_COMPARE(first->geometry(), QRect(40, 50, 760, 555));
        first->close();
        QCOMPARE(settings().value("geometry").toByteArray(), first->saveGeometry());

        const auto second = makeWindow();
        second->show();
        QTRY_COMPARE(second->geometry(), QRect(40, 50, 760, 555));
    }

    void theFirstWindowIsRoomyAndFitsTheScreen() {
        const auto window = makeWindow();
        window->show();
        const QSize screen = window->screen()->availableSize();
        QVERIFY(window->width() <= screen.width() && window->height() <= screen.height());
        QVERIFY(window->width() >= qMin(1000, screen.width() / 2));
    }

    void damagedStoredGeometryRestoresNothing() {
        settings().setValue("geometry", QByteArray("rubbish"));
        const auto window = makeWindow();
        window->show();
        QVERIFY(window->width() >= 680);
    }

    void onlyTheTwoKeysAreStored() {
        const auto window = makeWindow();
        window->show();
        window->close();
        QCOMPARE(settings().allKeys(), (QStringList{"geometry", "timecols"}));
        QVERIFY(settings().fileName().endsWith("/Ombrix/fvqa300.conf"));
    }

    void closingWhileFilesLoadEndsCleanly() {
        const DataFiles files;
        const std::streambuf *before = std::cerr.rdbuf();
        QByteArrayList paths;
        for (int i = 0; i < 15; ++i) { // more than load at once
            paths +=
                QFile::encodeName(files.writeData(QString("%1.data").arg(i), "QA330", "CH4\tTEMP", 20000));
        }
        auto window = makeWindow(paths);
        window->show();
        QSignalSpy loaded(window->findChild<FileItemModel *>(), SIGNAL(FileLoaded(QString)));
        QVERIFY(window->close());
        window.reset();
        QCoreApplication::processEvents();
        QVERIFY(loaded.count() < paths.size());
        QCOMPARE(static_cast<const std::streambuf *>(std::cerr.rdbuf()), before);
        QVERIFY(settings().contains("geometry"));
    }

private:
    // A new one each time, so that what others wrote is seen.
    struct Settings : QSettings {
        Settings() : QSettings("Ombrix", "fvqa300") {}
    };
    static Settings settings() { return {}; }

    QTemporaryDir settingsFolder_;
};

QTEST_MAIN(MyMainWindowTest)
#include "MyMainWindowTest.moc"

// The viewer as a program: what it answers without opening a window.

#include <QProcess>
#include <QProcessEnvironment>
#include <QtTest>

namespace {

struct Ending {
    int status = -1;
    bool isCrash = true;
    QByteArray output;
    QByteArray errors;
};

Ending runViewer(const QStringList &arguments, const QString &platform) {
    QProcess viewer;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), platform);
    environment.insert(QStringLiteral("DISPLAY"), QStringLiteral(":9999")); // is not there
    viewer.setProcessEnvironment(environment);
    viewer.start(QStringLiteral(FVQA_VIEWER_PROGRAM), arguments);
    if (!viewer.waitForFinished()) {
        return {};
    }
    return {viewer.exitCode(), viewer.exitStatus() == QProcess::CrashExit, viewer.readAllStandardOutput(),
            viewer.readAllStandardError()};
}

} // namespace

class ViewerProgramTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tellsItsUsageAndItsVersionWithoutADesktop() {
        for (const QString &option : {QStringLiteral("--help"), QStringLiteral("-h")}) {
            const Ending help = runViewer({option}, QStringLiteral("xcb"));
            QVERIFY(!help.isCrash);
            QCOMPARE(help.status, 0);
            QVERIFY(help.output.startsWith("Usage: fvqa300 [FILE...]\n"));
            QCOMPARE(help.errors, QByteArray());
        }
        const Ending version = runViewer({QStringLiteral("--version")}, QStringLiteral("xcb"));
        QCOMPARE(version.status, 0);
        QCOMPARE(version.output, QByteArray("fvqa300 " FVQA_VERSION "\n"));
    }

    void withoutADesktopItEndsWithAReason() {
        const Ending ending = runViewer({}, QStringLiteral("xcb"));
        QVERIFY(!ending.isCrash);
        QCOMPARE(ending.status, 1);
        QVERIFY2(ending.errors.contains(":9999"), ending.errors.constData());
    }
};

QTEST_GUILESS_MAIN(ViewerProgramTest)
#include "ViewerProgramTest.moc"

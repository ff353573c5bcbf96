#include <QDir>
#include <QMimeDatabase>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString archive = QStringLiteral("application/x-gas-analyser-archive");
const QString dataFile = QStringLiteral("text/x-gas-analyser-data");

QByteArray contentOf(const char *example) {
    QFile file(QStringLiteral(FVQA_EXAMPLES_DIR "/") + example);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

// How desktops see our files, once the types are installed beside the system's own.
class FileTypesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(installed_.isValid());
        QVERIFY(QDir(installed_.path()).mkpath("mime/packages"));
        QVERIFY(
            QFile::copy(FVQA_DESKTOP_DIR "/fvqa300.xml", installed_.filePath("mime/packages/fvqa300.xml")));
        qputenv("XDG_DATA_DIRS", installed_.path().toUtf8() + ":/usr/share");
    }

    void aFileIsKnownByItsName_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("type");
        QTest::newRow("archive") << "2019-06-01T120000_AIU-0412.ghg" << archive;
        QTest::newRow("archive, capitals") << "A.GHG" << archive;
        QTest::newRow("data") << "AIU-0412-2019-06-01T133000.data" << dataFile;
        QTest::newRow("data, capitals") << "A.DATA" << dataFile;
        QTest::newRow("other archive") << "photographs.zip"
                                       << "application/zip";
        QTest::newRow("other text") << "notes.txt"
                                    << "text/plain";
    }

    void aFileIsKnownByItsName() {
        QFETCH(QString, name);
        QTEST(QMimeDatabase().mimeTypeForFile(name, QMimeDatabase::MatchExtension).name(), "type");
    }

    void aDataFileIsKnownByItsContentWhateverItIsCalled_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("type");
        QTest::newRow("QA-34xx") << contentOf("AIU-0412-2019-06-01T133000.data") << dataFile;
        QTest::newRow("QA-330") << contentOf("QA330-2019-06-01T130000.data") << dataFile;
        QTest::newRow("header only") << QByteArray("DATAH\tSECONDS\tCH4\n") << dataFile;
        QTest::newRow("status first") << QByteArray("DATASTATH\tSECONDS\tREFRSSI\n") << dataFile;
        QTest::newRow("word without a tab") << QByteArray("DATAH is a word\n") << "text/plain";
        QTest::newRow("other text") << QByteArray("Dear diary\n") << "text/plain";
    }

    void aDataFileIsKnownByItsContentWhateverItIsCalled() {
        QFETCH(QByteArray, content);
        QTEST(QMimeDatabase().mimeTypeForData(content).name(), "type");
    }

    // So that editors and archive managers go on offering themselves.
    void ourFilesAreTextAndZipForOtherPrograms() {
        const QMimeDatabase types;
        QVERIFY(types.mimeTypeForName(archive).inherits("application/zip"));
        QVERIFY(types.mimeTypeForName(dataFile).inherits("text/plain"));
    }

    void theDesktopEntryTakesEveryTypeThatIsInstalled() {
        QFile file(FVQA_DESKTOP_DIR "/fvqa300.desktop");
        QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
        const QStringList lines = QString::fromUtf8(file.readAll()).split('\n');
        QCOMPARE(lines.filter(QRegularExpression("^MimeType=")),
                 QStringList{QStringLiteral("MimeType=%1;%2;").arg(archive, dataFile)});
    }

private:
    QTemporaryDir installed_;
};

QTEST_GUILESS_MAIN(FileTypesTest)
#include "FileTypesTest.moc"

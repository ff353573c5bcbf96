#include "loading/QDataSet.h"
#include "time/Timezone.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <clocale>

// The application takes over the desktop's locale, where a number may have a decimal comma.
class CommaLocaleTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        zoneDirectory = FVQA_ZONEINFO_DIR;
        QCOMPARE(std::localeconv()->decimal_point, ",");
    }

    void NumbersWithPointsAreReadWholeUnderADecimalComma() {
        const QTemporaryDir folder;
        const QString path = folder.filePath("points.data");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("Instrument:\tQA330\n"
                   "DATAH\tSECONDS\tNANOSECONDS\tCH4\n"
                   "DATA\t1600000000\t250000000\t1.875\n"
                   "DATA\t1600000001\t0\t-2.5e-3\n");
        file.close();

        QDataSet data;
        QSignalSpy loaded(&data, SIGNAL(FileLoaded(QString)));
        data.AddFile(path);
        QVERIFY(loaded.wait());

        std::vector<double> times;
        std::vector<double> values;
        data.series("QA330:DATA:CH4", "", wholeRangeStart, wholeRangeEnd, times, values);
        QCOMPARE(times, (std::vector<double>{1600000000.25, 1600000001.0}));
        QCOMPARE(values, (std::vector<double>{1.875, static_cast<double>(-2.5e-3F)}));
    }
};

QTEST_MAIN(CommaLocaleTest)
#include "CommaLocaleTest.moc"

#include "ui/FileLoadProgressWidget.h"

#include "ui/MetaObjectLists.h"

#include <QLabel>
#include <QProgressBar>
#include <QRandomGenerator>
#include <QVBoxLayout>
#include <QtTest>

class FileLoadProgressWidgetTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasTheOneSlotOnProgress() {
        const QMetaObject &meta = FileLoadProgressWidget::staticMetaObject;
        QCOMPARE(meta.className(), "FileLoadProgressWidget");
        QCOMPARE(ownSlots(meta), QStringList{"OnProgress(QString,int,qlonglong)"});
    }

    void aFreshWidgetReadsAsFinished() {
        const FileLoadProgressWidget widget;
        const auto *bar = widget.findChild<QProgressBar *>();
        QCOMPARE(widget.findChild<QLabel *>()->text(), "Load Data Files");
        QCOMPARE(bar->orientation(), Qt::Horizontal);
        QCOMPARE(bar->minimum(), 0);
        QCOMPARE(bar->maximum(), 100);
        QCOMPARE(bar->value(), 100);
        QCOMPARE(bar->format(), "0 Files Remaining (%p% Done)");
    }

    void labelAndBarStandAboveAStretch() {
        const FileLoadProgressWidget widget;
        const auto *layout = qobject_cast<QVBoxLayout *>(widget.layout());
        QVERIFY(layout != nullptr);
        QCOMPARE(layout->count(), 3);
        QVERIFY(qobject_cast<QLabel *>(layout->itemAt(0)->widget()) != nullptr);
        QVERIFY(qobject_cast<QProgressBar *>(layout->itemAt(1)->widget()) != nullptr);
        QVERIFY(layout->itemAt(2)->spacerItem() != nullptr);
    }

    void halfOf100BytesAndAllOf300BytesAre87Percent() {
        FileLoadProgressWidget widget;
        widget.OnProgress("a.data", 50, 100);
        widget.OnProgress("b.data", 100, 300);
        const auto *bar = widget.findChild<QProgressBar *>();
        QCOMPARE(bar->value(), 87);
        QCOMPARE(bar->format(), "1 Files Remaining (%p% Done)");
        QCOMPARE(bar->text(), "1 Files Remaining (87% Done)");
    }

    void everyFilesShareIsTruncatedByItself() {
        FileLoadProgressWidget widget;
        // Two thirds of a byte each: together more than one byte, but each counts as none.
        widget.OnProgress("a.data", 66, 1);
        widget.OnProgress("b.data", 66, 1);
        QCOMPARE(widget.findChild<QProgressBar *>()->value(), 0);
        widget.OnProgress("a.data", 100, 1);
        QCOMPARE(widget.findChild<QProgressBar *>()->value(), 50);
    }

    void aLaterReportReplacesAnEarlierOneOfTheSameFile() {
        FileLoadProgressWidget widget;
        widget.OnProgress("a.data", 100, 1000);
        widget.OnProgress("a.data", 0, 3000);
        const auto *bar = widget.findChild<QProgressBar *>();
        QCOMPARE(bar->value(), 0);
        QCOMPARE(bar->format(), "1 Files Remaining (%p% Done)");
        widget.OnProgress("a.data", 100, 3000);
        QCOMPARE(bar->value(), 100);
        QCOMPARE(bar->format(), "0 Files Remaining (%p% Done)");
    }

    void filesWithoutBytesLeaveTheBarAt100() {
        FileLoadProgressWidget widget;
        widget.OnProgress("empty.data", 0, 0);
        const auto *bar = widget.findChild<QProgressBar *>();
        QCOMPARE(bar->value(), 100);
        QCOMPARE(bar->format(), "1 Files Remaining (%p% Done)");
    }

    void sizesBeyond32BitsCount() {
        FileLoadProgressWidget widget;
        const qint64 terabyte = Q_INT64_C(1) << 40;
        widget.OnProgress("a.data", 50, terabyte);
        widget.OnProgress("b.data", 0, terabyte);
        QCOMPARE(widget.findChild<QProgressBar *>()->value(), 25);
    }

    void tenThousandReportsGiveThePlainFormulasValue() {
        FileLoadProgressWidget widget;
        const auto *bar = widget.findChild<QProgressBar *>();
        QMap<QString, QPair<int, qint64>> plain;
        QRandomGenerator random(20190601);
        for (int report = 0; report < 10000; ++report) {
            const QString name = QString::number(random.bounded(500));
            const int percent = random.bounded(101);
            const qint64 size = random.bounded(1 << 30);
            plain[name] = {percent, size};
            widget.OnProgress(name, percent, size);

            qint64 total = 0;
            qint64 done = 0;
            int remaining = 0;
            for (const auto &[filePercent, fileSize] : qAsConst(plain)) {
                total += fileSize;
                done += filePercent * fileSize / 100;
                remaining += filePercent < 100 ? 1 : 0;
            }
            QCOMPARE(bar->value(), static_cast<int>(done * 100 / total));
            QCOMPARE(bar->format(), QString("%1 Files Remaining (%p% Done)").arg(remaining));
        }
    }
};

QTEST_MAIN(FileLoadProgressWidgetTest)
#include "FileLoadProgressWidgetTest.moc"

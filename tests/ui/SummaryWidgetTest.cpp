#include "ui/SummaryWidget.h"

#include "loading/QDataSet.h"
#include "time/Timezone.h"
#include "ui/DataFiles.h"
#include "ui/MetaObjectLists.h"
#include "ui/SummaryTableWidget.h"

#include <QSignalSpy>
#include <QVBoxLayout>
#include <QtTest>

class SummaryWidgetTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    void hasTheSlotUpdate() {
        QCOMPARE(SummaryWidget::staticMetaObject.className(), "SummaryWidget");
        QVERIFY(ownSlots(SummaryWidget::staticMetaObject).contains("Update()"));
    }

    void holdsTheTableOnly() {
        QDataSet dataSet;
        const SummaryWidget widget(nullptr, &dataSet);
        QVERIFY(qobject_cast<QVBoxLayout *>(widget.layout()) != nullptr);
        QCOMPARE(widget.layout()->count(), 1);
        QCOMPARE(widget.layout()->itemAt(0)->widget(), widget.findChild<SummaryTableWidget *>());
    }

    void filesLoadedAndRemovedUpdateTheTable() {
        QDataSet dataSet;
        SummaryWidget widget(nullptr, &dataSet);
        QVERIFY(QObject::disconnect(&dataSet, SIGNAL(FileLoaded(QString)), &widget, SLOT(Update())));
        QVERIFY(QObject::disconnect(&dataSet, SIGNAL(FileRemoved(QString)), &widget, SLOT(Update())));
    }

    void theTableFollowsTheLoadedFiles() {
        const DataFiles files;
        const QString first = files.writeData("1.data", "QA330", "CH4\tTEMP");
        const QString second = files.writeData("2.data", "QA340", "CO2");
        QDataSet dataSet;
        SummaryWidget widget(nullptr, &dataSet);
        const auto *table = widget.findChild<SummaryTableWidget *>();
        QSignalSpy loaded(&dataSet, SIGNAL(FileLoaded(QString)));
        dataSet.AddFile(first);
        dataSet.AddFile(second);
        QTRY_COMPARE(loaded.count(), 2);
        QTRY_COMPARE(table->columnCount(), 2);
        QTRY_COMPARE(table->horizontalHeaderItem(0)->text(), "QA330:DATA");
        QTRY_COMPARE(table->horizontalHeaderItem(1)->text(), "QA340:DATA");
        QTRY_COMPARE(table->item(1, 0)->text(), "TEMP");
        QTRY_COMPARE(table->item(1, 0)->data(Qt::UserRole).toString(), "QA330:DATA:TEMP");

        dataSet.RemoveFile(first);
        QTRY_COMPARE(table->columnCount(), 1);
        QTRY_COMPARE(table->horizontalHeaderItem(0)->text(), "QA340:DATA");
        dataSet.RemoveFile(second);
        QTRY_COMPARE(table->horizontalHeaderItem(0)->text(), "Variable");
        QTRY_COMPARE(table->rowCount(), 0);
    }

    void aDataSetThatHoldsFilesAlreadyShowsAtOnce() {
        const DataFiles files;
        QDataSet dataSet;
        QSignalSpy loaded(&dataSet, SIGNAL(FileLoaded(QString)));
        dataSet.AddFile(files.writeData("1.data", "QA330", "CH4"));
        QTRY_COMPARE(loaded.count(), 1);
        const SummaryWidget widget(nullptr, &dataSet);
        QCOMPARE(widget.findChild<SummaryTableWidget *>()->horizontalHeaderItem(0)->text(), "QA330:DATA");
    }

    void theTableIsLeftAloneWhileTheVariablesStayTheSame() {
        const DataFiles files;
        QDataSet dataSet;
        SummaryWidget widget(nullptr, &dataSet);
        auto *table = widget.findChild<SummaryTableWidget *>();
        QSignalSpy loaded(&dataSet, SIGNAL(FileLoaded(QString)));
        dataSet.AddFile(files.writeData("1.data", "QA330", "CH4\tTEMP"));
        QTRY_COMPARE(loaded.count(), 1);
        const QTableWidgetItem *item = table->item(1, 0);
        table->setCurrentCell(1, 0);

        const QString second = files.writeData("2.data", "QA330", "CH4\tTEMP");
        dataSet.AddFile(second);
        QTRY_COMPARE(loaded.count(), 2);
        dataSet.RemoveFile(second);
        widget.Update();
        QTRY_COMPARE(table->item(1, 0), item);
        QTRY_COMPARE(table->currentRow(), 1);

        dataSet.AddFile(files.writeData("3.data", "QA330", "CH4\tPRESSURE\tTEMP"));
        QTRY_COMPARE(loaded.count(), 3);
        QTRY_COMPARE(table->item(1, 0)->text(), "PRESSURE");
    }
};

QTEST_MAIN(SummaryWidgetTest)
#include "SummaryWidgetTest.moc"

#include "ui/SummaryTableWidget.h"

#include "ui/MetaObjectLists.h"
#include "ui/WrittenOn.h"

#include <QHeaderView>
#include <QtTest>

namespace {

QStringList headersOf(const QTableWidget &table) {
    QStringList headers;
    for (int column = 0; column < table.columnCount(); ++column) {
        headers += table.horizontalHeaderItem(column)->text();
    }
    return headers;
}

// Names from the top down to the first row without a cell.
QStringList columnOf(const QTableWidget &table, int column) {
    QStringList names;
    for (int row = 0; row < table.rowCount() && table.item(row, column) != nullptr; ++row) {
        names += table.item(row, column)->text();
    }
    return names;
}

} // namespace

class SummaryTableWidgetTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasItsClassName() {
        QCOMPARE(SummaryTableWidget::staticMetaObject.className(), "SummaryTableWidget");
    }

    void withoutVariablesThereIsOneEmptyColumnHeadedVariable() {
        SummaryTableWidget table;
        QCOMPARE(headersOf(table), QStringList{"Variable"});
        QCOMPARE(table.rowCount(), 0);
        table.showVariables({"a:b:x", "c:d:y"});
        table.showVariables({});
        QCOMPARE(headersOf(table), QStringList{"Variable"});
        QCOMPARE(table.rowCount(), 0);
    }

    void everyGroupIsAColumnOfItsNames() {
        SummaryTableWidget table;
        table.showVariables({"a:b:x", "a:b:y", "c:d:z"});
        QCOMPARE(headersOf(table), (QStringList{"a:b", "c:d"}));
        QCOMPARE(columnOf(table, 0), (QStringList{"x", "y"}));
        QCOMPARE(columnOf(table, 1), QStringList{"z"});
        QCOMPARE(table.rowCount(), 2);
        QVERIFY(table.item(1, 1) == nullptr);
    }

    void aKeyWithASingleColonIsNotShown() {
        SummaryTableWidget table;
        table.showVariables({"a:x", "plain", "a:b:x"});
        QCOMPARE(headersOf(table), QStringList{"a:b"});
        QCOMPARE(columnOf(table, 0), QStringList{"x"});
        table.showVariables({"a:x"});
        QCOMPARE(headersOf(table), QStringList{"Variable"});
        QCOMPARE(table.rowCount(), 0);
    }

    // A cell for each row of each group would take gigabytes.
    void groupsThatDoNotFitAreLeftOutAndCounted() {
        SummaryTableWidget table;
        std::set<std::string> keys;
        for (int i = 0; i < 1000; ++i) {
            keys.insert("a:b:" + std::to_string(i));
            keys.insert("c" + std::to_string(1000 + i) + ":d:x");
        }
        table.showVariables(keys);
        QCOMPARE(table.rowCount(), 1000);
        QCOMPARE(table.columnCount(), 1001);
        QCOMPARE(table.horizontalHeaderItem(999)->text(), "c1998:d");
        QCOMPARE(table.horizontalHeaderItem(1000)->text(), "1 more are not shown");
        QVERIFY(table.item(0, 1000) == nullptr);
        keys.erase("c1000:d:x");
        table.showVariables(keys);
        QCOMPARE(table.columnCount(), 1000);
        QCOMPARE(table.horizontalHeaderItem(999)->text(), "c1999:d");
    }

    void theNameMayHoldFurtherColonsAndBeEmpty() {
        SummaryTableWidget table;
        table.showVariables({"QA330:DATA:", "QA330:DATA:DIAG:PUMPON", "::n"});
        QCOMPARE(headersOf(table), (QStringList{":", "QA330:DATA"}));
        QCOMPARE(columnOf(table, 1), (QStringList{"", "DIAG:PUMPON"}));
    }

    void groupsAreWholeInstrumentsAndTags() {
        SummaryTableWidget table;
        table.showVariables({"QA330:DATA:x", "QA330:DATABIO:x", "QA330-2:DATA:x", "QA330:DATA:y"});
        QCOMPARE(headersOf(table), (QStringList{"QA330-2:DATA", "QA330:DATA", "QA330:DATABIO"}));
        QCOMPARE(columnOf(table, 1), (QStringList{"x", "y"}));
    }

    void aCellCarriesItsKeyAndCannotBeEdited() {
        SummaryTableWidget table;
        table.showVariables({"a:b:x"});
        const QTableWidgetItem *item = table.item(0, 0);
        QCOMPARE(item->data(Qt::UserRole), QVariant("a:b:x"));
        QCOMPARE(item->flags(), QTableWidgetItem().flags() & ~Qt::ItemIsEditable);
    }

    void namesAreUtf8() {
        SummaryTableWidget table;
        table.showVariables({"a:b:\xc2\xb5mol", "a:b:\xff"});
        QCOMPARE(columnOf(table, 0), (QStringList{QStringLiteral("\u00b5mol"), QString(QChar(0xfffd))}));
    }

    void columnsAreAsWideAsTheirContents() {
        SummaryTableWidget table;
        const std::string longName(60, 'W');
        table.showVariables({"a:b:" + longName, "c:d:z"});
        QVERIFY(table.columnWidth(0) >= table.fontMetrics().horizontalAdvance(QString(60, 'W')));
        QVERIFY(table.columnWidth(1) < table.columnWidth(0));
    }

    void aWiderTableBecomesNarrowAgain() {
        SummaryTableWidget table;
        table.showVariables({"a:b:x", "a:b:y", "c:d:z", "e:f:z"});
        table.showVariables({"c:d:z"});
        QCOMPARE(headersOf(table), QStringList{"c:d"});
        QCOMPARE(table.rowCount(), 1);
        QCOMPARE(columnOf(table, 0), QStringList{"z"});
    }

    void theTableTellsWhatItIsForWhileItIsEmpty() {
        SummaryTableWidget table;
        table.setShowGrid(false);
        QVERIFY(isWrittenOn(table));
        table.showVariables({"a:b:x"});
        QVERIFY(!isWrittenOn(table));
        table.showVariables({});
        QVERIFY(isWrittenOn(table));
    }

    void theToolTipTellsHowToPlot() {
        const SummaryTableWidget table;
        QCOMPARE(table.toolTip(), "Double-click or Drag to plot");
    }
};

QTEST_MAIN(SummaryTableWidgetTest)
#include "SummaryTableWidgetTest.moc"

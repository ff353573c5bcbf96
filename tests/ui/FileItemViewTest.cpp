#include "ui/FileItemView.h"

#include "ui/MetaObjectLists.h"
#include "ui/WrittenOn.h"

#include <QSignalSpy>
#include <QStringListModel>
#include <QtTest>

class FileItemViewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasTheOneSignalSelectionChanged() {
        QCOMPARE(FileItemView::staticMetaObject.className(), "FileItemView");
        QCOMPARE(ownSignals(FileItemView::staticMetaObject),
                 QStringList{"SelectionChanged(QModelIndex,QModelIndex)"});
    }

    void severalRowsCanBeSelected() {
        const FileItemView view;
        QCOMPARE(view.selectionMode(), QAbstractItemView::ExtendedSelection);
    }

    void aNewCurrentRowIsTold() {
        QStringListModel model(QStringList{"a", "b"});
        FileItemView view;
        view.setModel(&model);
        QSignalSpy changed(&view, SIGNAL(SelectionChanged(QModelIndex, QModelIndex)));
        view.setCurrentIndex(model.index(0));
        view.setCurrentIndex(model.index(1));
        QCOMPARE(changed.count(), 2);
        QCOMPARE(changed[0][0].toModelIndex(), model.index(0));
        QCOMPARE(changed[0][1].toModelIndex(), QModelIndex());
        QCOMPARE(changed[1][0].toModelIndex(), model.index(1));
        QCOMPARE(changed[1][1].toModelIndex(), model.index(0));
    }

    void selectedRowsAreReadFromTheBottomEachOnce() {
        QStringListModel model(QStringList{"a", "b", "c", "d", "e", "f"});
        FileItemView view;
        view.setModel(&model);
        QVERIFY(view.selectedRowsFromBottom().empty());

        QItemSelection selection(model.index(3), model.index(4));
        selection.select(model.index(0), model.index(0));
        view.selectionModel()->select(selection, QItemSelectionModel::Select);
        view.selectionModel()->select(model.index(4), QItemSelectionModel::Select);
        QCOMPARE(view.selectedRowsFromBottom(), (std::vector<int>{4, 3, 0}));

        view.selectAll();
        QCOMPARE(view.selectedRowsFromBottom(), (std::vector<int>{5, 4, 3, 2, 1, 0}));
    }

    void theListTellsHowToAddFilesWhileItIsEmpty() {
        QStringListModel model;
        FileItemView view;
        QVERIFY(!isWrittenOn(view));
        view.setModel(&model);
        QVERIFY(isWrittenOn(view));
        model.setStringList({"a"});
        QVERIFY(!isWrittenOn(view));
    }
};

QTEST_MAIN(FileItemViewTest)
#include "FileItemViewTest.moc"

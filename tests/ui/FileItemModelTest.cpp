#include "ui/FileItemModel.h"

#include "loading/QDataSet.h"
#include "time/Timezone.h"
#include "ui/DataFiles.h"
#include "ui/MetaObjectLists.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

QStringList shownNames(const FileItemModel &model) {
    QStringList names;
    for (int row = 0; row < model.rowCount(); ++row) {
        names += model.index(row).data().toString();
    }
    return names;
}

// Gives out indexes of rows that are not there.
class IndexMaker : public FileItemModel {
public:
    QModelIndex indexOf(int row) const { return createIndex(row, 0); }
};

} // namespace

class FileItemModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    void hasTheSignalsOfTheDataSetAndOneMore() {
        const QMetaObject &meta = FileItemModel::staticMetaObject;
        QCOMPARE(meta.className(), "FileItemModel");
        QCOMPARE(ownSignals(meta), (QStringList{"Progress(QString,int,qlonglong)", "Message(QString,QString)",
                                                "FileLoaded(QString)", "FileRemoved(QString)",
                                                "PostHandleFileRemoved(QString)"}));
    }

    void signalsOfTheDataSetAreForwarded() {
        FileItemModel model;
        for (const char *signal : {SIGNAL(Progress(QString, int, qint64)), SIGNAL(Message(QString, QString)),
                                   SIGNAL(FileLoaded(QString)), SIGNAL(FileRemoved(QString))}) {
            QVERIFY2(QObject::disconnect(model.dataSet(), signal, &model, signal), signal);
        }
    }

    void aPathAddedTwiceIsOneRowAndOneLoad() {
        const DataFiles files;
        const QString path = files.writeData("x.data", "QA330", "CH4");
        FileItemModel model;
        QSignalSpy loaded(&model, SIGNAL(FileLoaded(QString)));
        QSignalSpy started(&model, SIGNAL(FileRemoved(QString))); // comes with every order to load
        model.AddFile(path);
        model.AddFile(path);
        QCOMPARE(model.rowCount(), 1);
        QTRY_COMPARE(loaded.count(), 1);
        QCOMPARE(started.count(), 1);
    }

    void aPathInOtherLetterCaseIsTheSameFile() {
        FileItemModel model;
        QSignalSpy started(&model, SIGNAL(FileRemoved(QString)));
        model.AddFile("C:/d/x.data");
        model.AddFile("C:/d/X.data");
        model.AddFiles({"c:/D/x.DATA"});
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(started.count(), 1);
    }

    void aListOfKnownPathsInsertsNothing() {
        FileItemModel model;
        model.AddFiles({"/d/a.data", "/d/b.data"});
        QSignalSpy about(&model, SIGNAL(rowsAboutToBeInserted(QModelIndex, int, int)));
        QSignalSpy inserted(&model, SIGNAL(rowsInserted(QModelIndex, int, int)));
        QSignalSpy started(&model, SIGNAL(FileRemoved(QString)));
        model.AddFiles({"/d/b.data", "/d/A.data"});
        model.AddFiles({});
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(about.count() + inserted.count() + started.count(), 0);
    }

    void aListIsInsertedAsOneBlockAtTheEndAndLoadedInOrder() {
        FileItemModel model;
        model.AddFile("/d/a.data");
        QSignalSpy inserted(&model, SIGNAL(rowsInserted(QModelIndex, int, int)));
        QSignalSpy started(&model, SIGNAL(FileRemoved(QString)));
        model.AddFiles({"/d/c.data", "/d/a.data", "/d/b.data"});
        QCOMPARE(shownNames(model), (QStringList{"a.data", "c.data", "b.data"}));
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(inserted[0][1].toInt(), 1);
        QCOMPARE(inserted[0][2].toInt(), 2);
        QCOMPARE(started.count(), 2);
        QCOMPARE(started[0][0].toString(), "/d/c.data");
        QCOMPARE(started[1][0].toString(), "/d/b.data");
    }

    void allRowsAreThereBeforeTheFirstFileLoads() {
        FileItemModel model;
        QVector<int> counts;
        connect(&model, &FileItemModel::FileRemoved, this, [&] { counts += model.rowCount(); });
        model.AddFiles({"/d/a.data", "/d/b.data"});
        QCOMPARE(counts, (QVector<int>{2, 2}));
    }

    void aPathThatStandsTwiceInOneListGetsTwoRows() {
        FileItemModel model;
        model.AddFiles({"/d/a.data", "/d/a.data"});
        QCOMPARE(model.rowCount(), 2);
        // With one of them gone, the other still counts.
        QVERIFY(model.RemoveFile(model.index(0)));
        model.AddFile("/d/a.data");
        QCOMPARE(model.rowCount(), 1);
        QVERIFY(model.RemoveFile(model.index(0)));
        model.AddFile("/d/a.data");
        QCOMPARE(model.rowCount(), 1);
    }

    void removingRow5Of3RowsChangesNothing() {
        IndexMaker model;
        model.AddFiles({"/d/a.data", "/d/b.data", "/d/c.data"});
        QSignalSpy removed(&model, SIGNAL(rowsRemoved(QModelIndex, int, int)));
        QSignalSpy unloaded(&model, SIGNAL(FileRemoved(QString)));
        QSignalSpy after(&model, SIGNAL(PostHandleFileRemoved(QString)));
        QVERIFY(!model.RemoveFile(model.indexOf(5)));
        QVERIFY(!model.RemoveFile(model.indexOf(3)));
        QVERIFY(!model.RemoveFile(QModelIndex()));
        QCOMPARE(model.rowCount(), 3);
        QCOMPARE(removed.count() + unloaded.count() + after.count(), 0);
    }

    void theDataGoBeforeTheRowAndTheLastSignalComesAfterIt() {
        FileItemModel model;
        model.AddFiles({"/d/a.data", "/d/b.data"});
        QStringList order;
        const auto note = [&](const QString &what) {
            return [&order, &model, what] { order += what + " with " + shownNames(model).join(' '); };
        };
        connect(&model, &FileItemModel::FileRemoved, this, note("unloaded"));
        connect(&model, &FileItemModel::rowsAboutToBeRemoved, this, note("removing"));
        connect(&model, &FileItemModel::rowsRemoved, this, note("removed"));
        connect(&model, &FileItemModel::PostHandleFileRemoved, this, note("done"));
        QVERIFY(model.RemoveFile(model.index(0)));
        QCOMPARE(order, (QStringList{"unloaded with a.data b.data", "removing with a.data b.data",
                                     "removed with b.data", "done with b.data"}));
    }

    void removingByPathMindsTheLetterCase() {
        FileItemModel model;
        model.AddFiles({"/d/a.data", "/d/b.data"});
        QSignalSpy after(&model, SIGNAL(PostHandleFileRemoved(QString)));
        QVERIFY(!model.RemoveFile(QString("/d/B.data")));
        QVERIFY(!model.RemoveFile(QString("b.data")));
        QVERIFY(model.RemoveFile(QString("/d/b.data")));
        QCOMPARE(shownNames(model), QStringList{"a.data"});
        QCOMPARE(after.count(), 1);
        QCOMPARE(after[0][0].toString(), "/d/b.data");
    }

    void aRemovedFileCanBeAddedAgain() {
        FileItemModel model;
        model.AddFile("/d/a.data");
        model.RemoveFile(model.index(0));
        model.AddFile("/d/A.data");
        QCOMPARE(shownNames(model), QStringList{"A.data"});
    }

    void aBackslashPathShowsWholeAndIsAnotherFileThanTheSlashPath() {
        FileItemModel model;
        model.AddFile("C:\\data\\x.data");
        model.AddFile("C:/data/x.data");
        QCOMPARE(shownNames(model), (QStringList{"C:\\data\\x.data", "x.data"}));
    }

    void onlyTheDisplayRoleOfARowHasAValue() {
        IndexMaker model;
        model.AddFile("/d/a.data");
        QCOMPARE(model.data(model.index(0)), QVariant("a.data"));
        for (int role = 0; role < Qt::UserRole + 2; ++role) {
            QCOMPARE(model.data(model.index(0), role).isValid(), role == Qt::DisplayRole);
        }
        QVERIFY(!model.data(QModelIndex()).isValid());
        QVERIFY(!model.data(model.indexOf(1)).isValid());
        QCOMPARE(model.rowCount(model.index(0)), 0);
    }

    void takesUriLists() {
        const FileItemModel model;
        QCOMPARE(model.mimeTypes(), QStringList{"text/uri-list"});
    }

    void whatALoadReportsComesThroughTheModel() {
        const DataFiles files;
        const QString path = files.write("x.data", "DATAH\tSECONDS\tCH4\tCHK\nDATA\t1600000000\t1.5\t0\n");
        FileItemModel model;
        QSignalSpy progress(&model, SIGNAL(Progress(QString, int, qint64)));
        QSignalSpy message(&model, SIGNAL(Message(QString, QString)));
        QSignalSpy loaded(&model, SIGNAL(FileLoaded(QString)));
        model.AddFile(path);
        QTRY_COMPARE(loaded.count(), 1);
        QCOMPARE(loaded[0][0].toString(), path);
        QCOMPARE(progress.last()[1].toInt(), 100);
        QVERIFY(!message.isEmpty());
        QCOMPARE(message[0][1].toString(), "Checksum errors: 1");
    }

    void manyFilesAreAddedFoundAndRemoved() {
        const int count = 10000;
        QStringList paths;
        for (int i = 0; i < count; ++i) {
            paths += QString("/nowhere/%1.data").arg(i);
        }
        FileItemModel model;
        for (const QString &path : qAsConst(paths)) {
            model.AddFile(path);
        }
        model.AddFiles(paths);
        QCOMPARE(model.rowCount(), count);
        for (int row = count - 1; row >= 0; --row) {
            QVERIFY(model.RemoveFile(model.index(row)));
        }
        QCOMPARE(model.rowCount(), 0);
    }
};

QTEST_MAIN(FileItemModelTest)
#include "FileItemModelTest.moc"

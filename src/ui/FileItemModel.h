#pragma once

#include <QAbstractListModel>
#include <QStringList>

#include <string>
#include <unordered_set>

class QDataSet;

// The paths of the files that the user has added, in the order added, and the owner of what they hold: adding
// a row starts loading its file, removing a row unloads it.
//
// Forwards the QDataSet's signals. For the interface thread. Adding or removing a file costs the same however
// many there are.
class FileItemModel : public QAbstractListModel {
    Q_OBJECT

public:
    explicit FileItemModel(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    // The file name, which is what follows the last "/" of the path.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QStringList mimeTypes() const override;

    // Adds `path` unless a row has it already, in whatever letter case.
    void AddFile(const QString &path);
    // Adds those of `paths` that no row has yet, as one block of rows. A path that stands twice in `paths`
    // gets two rows: only the rows that were there before count.
    void AddFiles(const QStringList &paths);

    // Unloads the row's file and removes the row; false when there is no such row.
    bool RemoveFile(const QModelIndex &index);
    // The same for the first row with exactly this path, letter case included.
    bool RemoveFile(const QString &path);

    const QStringList &paths() const { return paths_; }
    QDataSet *dataSet() const { return dataSet_; }

Q_SIGNALS:
    void Progress(const QString &fileName, int percent, qint64 fileSize);
    void Message(const QString &fileName, const QString &text);
    void FileLoaded(const QString &fileName);
    // The file's data are gone, but it still has its row.
    void FileRemoved(const QString &fileName);
    // The row is gone too.
    void PostHandleFileRemoved(const QString &fileName);

private:
    bool contains(const QString &path) const;
    bool removeFileAt(int row);

    QDataSet *dataSet_;
    QStringList paths_;
    std::unordered_multiset<std::u32string> foldedPaths_; // of all rows, see caseFolded
};

#include "ui/FileItemModel.h"

#include "loading/QDataSet.h"
#include "ui/CaseFolding.h"

FileItemModel::FileItemModel(QObject *parent) : QAbstractListModel(parent), dataSet_(new QDataSet(this)) {
    connect(dataSet_, SIGNAL(FileRemoved(QString)), SIGNAL(FileRemoved(QString)));
    connect(dataSet_, SIGNAL(Progress(QString, int, qint64)), SIGNAL(Progress(QString, int, qint64)));
    connect(dataSet_, SIGNAL(Message(QString, QString)), SIGNAL(Message(QString, QString)));
    connect(dataSet_, SIGNAL(FileLoaded(QString)), SIGNAL(FileLoaded(QString)));
}

int FileItemModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : paths_.size();
}

QVariant FileItemModel::data(const QModelIndex &index, int role) const {
    if (role != Qt::DisplayRole || !index.isValid() || index.row() >= paths_.size()) {
        return {};
    }
    return paths_[index.row()].section('/', -1, -1);
}

QStringList FileItemModel::mimeTypes() const {
    return {QStringLiteral("text/uri-list")};
}

void FileItemModel::AddFile(const QString &path) {
    AddFiles({path});
}

void FileItemModel::AddFiles(const QStringList &paths) {
    QStringList added;
    for (const QString &path : paths) {
        if (!contains(path)) {
            added += path;
        }
    }
    if (added.isEmpty()) {
        return;
    }
    beginInsertRows({}, paths_.size(), paths_.size() + added.size() - 1);
    for (const QString &path : qAsConst(added)) {
        paths_ += path;
        foldedPaths_.insert(caseFolded(path));
    }
    endInsertRows();
    for (const QString &path : qAsConst(added)) {
        dataSet_->AddFile(path);
    }
}

bool FileItemModel::RemoveFile(const QModelIndex &index) {
    return removeFileAt(index.row());
}

bool FileItemModel::RemoveFile(const QString &path) {
    return removeFileAt(paths_.indexOf(path));
}

bool FileItemModel::contains(const QString &path) const {
    return foldedPaths_.find(caseFolded(path)) != foldedPaths_.end();
}

bool FileItemModel::removeFileAt(int row) {
    if (row < 0 || row >= paths_.size()) {
        return false;
    }
    const QString path = paths_[row];
    // Listeners to FileRemoved still find the row; those who need the final list wait for the last signal.
    dataSet_->RemoveFile(path);
    beginRemoveRows({}, row, row);
    paths_.removeAt(row);
    foldedPaths_.erase(foldedPaths_.find(caseFolded(path)));
    endRemoveRows();
    Q_EMIT PostHandleFileRemoved(path);
    return true;
}

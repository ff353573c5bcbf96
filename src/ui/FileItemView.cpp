#include "ui/FileItemView.h"

#include "ui/EmptyHint.h"

#include <algorithm>
#include <functional>

FileItemView::FileItemView(QWidget *parent) : QListView(parent) {
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    // Else every added or removed file would have every name measured again.
    setUniformItemSizes(true);
    // A file's name tells its date in front and its instrument behind.
    setTextElideMode(Qt::ElideMiddle);
}

QSize FileItemView::sizeHint() const {
    constexpr int nameLength = 40;
    return {fontMetrics().averageCharWidth() * nameLength, QListView::sizeHint().height()};
}

std::vector<int> FileItemView::selectedRowsFromBottom() const {
    // Read by ranges: QItemSelectionModel::selectedRows looks through all ranges for each row.
    std::vector<int> rows;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            rows.push_back(row);
        }
    }
    std::sort(rows.begin(), rows.end(), std::greater<>());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void FileItemView::paintEvent(QPaintEvent *event) {
    QListView::paintEvent(event);
    if (model() != nullptr && model()->rowCount() == 0) {
        drawEmptyHint(*this, tr("Drop files here or choose them with +"));
    }
}

void FileItemView::currentChanged(const QModelIndex &current, const QModelIndex &previous) {
    QListView::currentChanged(current, previous);
    Q_EMIT SelectionChanged(current, previous);
}

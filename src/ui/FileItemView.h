#pragma once

#include <QListView>

#include <vector>

// The list of files. Tells how to add some while there are none.
class FileItemView : public QListView {
    Q_OBJECT

public:
    explicit FileItemView(QWidget *parent = nullptr);

    // As wide as a usual file name.
    QSize sizeHint() const override;

    // Rows that are selected, descending, so that each can be removed without moving the next ones.
    std::vector<int> selectedRowsFromBottom() const;

Q_SIGNALS:
    void SelectionChanged(const QModelIndex &current, const QModelIndex &previous);

protected:
    void paintEvent(QPaintEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
};

#pragma once

#include <QTableWidget>

#include <cstddef>
#include <set>
#include <string>

// The table of variables: one column for each instrument and tag, holding the names of its variables from the
// top down. A cell's user-role text is its whole variable key.
//
// Return on a variable counts as a double-click. Tab leaves the table; arrow keys walk its cells.
class SummaryTableWidget : public QTableWidget {
    Q_OBJECT

public:
    // Every row of every group is a cell. Damaged files may name a million groups, or variables: those that
    // do not fit are left out, and a last column says of how many groups.
    static constexpr std::size_t maximumCells = 1000000;

    explicit SummaryTableWidget(QWidget *parent = nullptr);

    // Shows these variable keys in place of what was shown; those without two ":" are left out.
    void showVariables(const std::set<std::string> &keys);

Q_SIGNALS:
    void GotMouseMoveEvent(QMouseEvent *event);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
};

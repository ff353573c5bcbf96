#pragma once

#include <QList>
#include <QPoint>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QWidget>

#include <cstdint>

class PlotDialog;
class QDataSet;
class QKeyEvent;
class QMouseEvent;
class SummaryTableWidget;

// Shows the variables of all loaded files. A double-click on one opens a plot window of it; dragged, it
// carries its key as text, which a plot window takes as a further curve. By keys it goes to the plot window
// that was active last, or to a new one while none is open. `dataSet` must outlive it.
class SummaryWidget : public QWidget {
    Q_OBJECT

public:
    explicit SummaryWidget(QWidget *parent, QDataSet *dataSet);

public Q_SLOTS:
    // Builds the table anew when the set of variables has changed since it was built: at once while that is
    // quick, else a little later, so that very many files with variables of their own do not each wait for a
    // large table.
    void Update();
    void OnCellPressed(int row, int column);
    void OnCellDoubleClicked(int row, int column);
    void OnCellMouseMoved(QMouseEvent *event);
    // While a variable is dragged over `target`; changes nothing.
    void OnTargetChanged(QWidget *target);

protected:
    // Of the table's cells: forgets the cell that was pressed before, for a press beside them gives no
    // signal. Of the table: adds the current variable to a plot. Of the plot windows: remembers which one was
    // active last.
    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    void rebuild();

private:
    QString keyOfCell(int row, int column) const;
    PlotDialog *lastPlot() const;
    bool takeKey(const QKeyEvent &key);
    void addToPlot(bool isForRightAxis);

    QDataSet *dataSet_;
    SummaryTableWidget *table_;
    QList<QPointer<PlotDialog>> plots_; // in the order in which they were active
    QPoint pressedAt_;                  // on the screen
    QString pressedKey_;
    QTimer later_;
    qint64 lastCost_ = 0;         // of the last rebuild, ms
    std::uint64_t shownRevision_; // of the variable keys that the table shows
};

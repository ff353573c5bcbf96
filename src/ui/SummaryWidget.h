#pragma once

#include <QTimer>
#include <QWidget>

#include <cstdint>

class QDataSet;
class SummaryTableWidget;

// Shows the variables of all loaded files. `dataSet` must outlive it.
class SummaryWidget : public QWidget {
    Q_OBJECT

public:
    explicit SummaryWidget(QWidget *parent, QDataSet *dataSet);

public Q_SLOTS:
    // Builds the table anew when the set of variables has changed since it was built: at once while that is
    // quick, else a little later, so that very many files with variables of their own do not each wait for a
    // large table.
    void Update();

private Q_SLOTS:
    void rebuild();

private:
    QDataSet *dataSet_;
    SummaryTableWidget *table_;
    QTimer later_;
    qint64 lastCost_ = 0;         // of the last rebuild, ms
    std::uint64_t shownRevision_; // of the variable keys that the table shows
};

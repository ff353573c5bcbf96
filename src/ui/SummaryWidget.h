#pragma once

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
    // Builds the table anew when the set of variables has changed since it was built.
    void Update();

private:
    QDataSet *dataSet_;
    SummaryTableWidget *table_;
    std::uint64_t shownRevision_; // of the variable keys that the table shows
};

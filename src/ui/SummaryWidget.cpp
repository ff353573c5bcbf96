#include "ui/SummaryWidget.h"

#include "loading/QDataSet.h"
#include "ui/SummaryTableWidget.h"

#include <QElapsedTimer>
#include <QVBoxLayout>

#include <algorithm>

SummaryWidget::SummaryWidget(QWidget *parent, QDataSet *dataSet)
    : QWidget(parent),
      dataSet_(dataSet),
      table_(new SummaryTableWidget),
      shownRevision_(dataSet->variableKeysRevision()) {
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(table_);
    table_->showVariables(dataSet_->variableKeys());

    later_.setSingleShot(true);
    connect(&later_, SIGNAL(timeout()), SLOT(rebuild()));
    connect(dataSet_, SIGNAL(FileLoaded(QString)), SLOT(Update()));
    connect(dataSet_, SIGNAL(FileRemoved(QString)), SLOT(Update()));
}

void SummaryWidget::Update() {
    // A slow rebuild waits several times its own cost, which bounds its share of the time.
    constexpr qint64 quick = 5; // ms
    constexpr int pause = 5;
    if (lastCost_ < quick) {
        rebuild();
    } else if (!later_.isActive()) {
        later_.start(static_cast<int>(std::min<qint64>(lastCost_ * pause, 10000)));
    }
}

void SummaryWidget::rebuild() {
    // Most files bring the same variables. Leaving the table alone also keeps its selection and position.
    const std::uint64_t revision = dataSet_->variableKeysRevision();
    if (revision == shownRevision_) {
        return;
    }
    QElapsedTimer timer;
    timer.start();
    shownRevision_ = revision;
    table_->showVariables(dataSet_->variableKeys());
    lastCost_ = timer.elapsed();
}

#include "ui/SummaryWidget.h"

#include "loading/QDataSet.h"
#include "ui/SummaryTableWidget.h"

#include <QVBoxLayout>

SummaryWidget::SummaryWidget(QWidget *parent, QDataSet *dataSet)
    : QWidget(parent),
      dataSet_(dataSet),
      table_(new SummaryTableWidget),
      shownRevision_(dataSet->variableKeysRevision()) {
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(table_);
    table_->showVariables(dataSet_->variableKeys());

    connect(dataSet_, SIGNAL(FileLoaded(QString)), SLOT(Update()));
    connect(dataSet_, SIGNAL(FileRemoved(QString)), SLOT(Update()));
}

void SummaryWidget::Update() {
    // Most files bring the same variables. Leaving the table alone also keeps its selection and position.
    const std::uint64_t revision = dataSet_->variableKeysRevision();
    if (revision != shownRevision_) {
        shownRevision_ = revision;
        table_->showVariables(dataSet_->variableKeys());
    }
}

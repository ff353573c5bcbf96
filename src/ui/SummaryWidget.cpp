#include "ui/SummaryWidget.h"

#include "loading/QDataSet.h"
#include "plot/PlotDialog.h"
#include "time/Timezone.h"
#include "ui/SummaryTableWidget.h"

#include <QApplication>
#include <QCursor>
#include <QDrag>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QVBoxLayout>

#include <algorithm>
#include <iostream>

SummaryWidget::SummaryWidget(QWidget *parent, QDataSet *dataSet)
    : QWidget(parent),
      dataSet_(dataSet),
      table_(new SummaryTableWidget),
      shownRevision_(dataSet->variableKeysRevision()) {
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(table_);
    table_->viewport()->installEventFilter(this);
    table_->installEventFilter(this);
    table_->showVariables(dataSet_->variableKeys());

    later_.setSingleShot(true);
    connect(&later_, SIGNAL(timeout()), SLOT(rebuild()));
    connect(dataSet_, SIGNAL(FileLoaded(QString)), SLOT(Update()));
    connect(dataSet_, SIGNAL(FileRemoved(QString)), SLOT(Update()));
    connect(table_, SIGNAL(cellDoubleClicked(int, int)), SLOT(OnCellDoubleClicked(int, int)));
    connect(table_, SIGNAL(cellPressed(int, int)), SLOT(OnCellPressed(int, int)));
    connect(table_, SIGNAL(GotMouseMoveEvent(QMouseEvent *)), SLOT(OnCellMouseMoved(QMouseEvent *)));
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

bool SummaryWidget::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::MouseButtonPress) {
        pressedKey_.clear();
    }
    if (event->type() == QEvent::WindowActivate) {
        if (auto *plot = qobject_cast<PlotDialog *>(watched)) {
            plots_.removeAll(plot);
            plots_.append(plot);
        }
    }
    if (watched == table_ && event->type() == QEvent::KeyPress) {
        return takeKey(*static_cast<QKeyEvent *>(event));
    }
    return QWidget::eventFilter(watched, event);
}

QString SummaryWidget::keyOfCell(int row, int column) const {
    const QTableWidgetItem *item = table_->item(row, column);
    return item != nullptr ? item->data(Qt::UserRole).toString() : QStringLiteral("NONE");
}

void SummaryWidget::OnCellPressed(int row, int column) {
    pressedAt_ = QCursor::pos();
    pressedKey_ = keyOfCell(row, column);
}

void SummaryWidget::OnCellDoubleClicked(int row, int column) {
    try {
        auto *plot = new PlotDialog(this, dataSet_, keyOfCell(row, column));
        plots_.removeAll(nullptr); // those that were closed
        plots_.append(plot);
        plot->installEventFilter(this);
        plot->show();
    } catch (const Timezone::Error &error) {
        std::cerr << error.what() << '\n';
    }
}

// Shift and Return for the left axis, Ctrl and Return for the right one. An empty cell has nothing to add.
bool SummaryWidget::takeKey(const QKeyEvent &key) {
    const bool isReturn = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    const Qt::KeyboardModifiers modifiers = key.modifiers() & ~Qt::KeypadModifier;
    const bool isForRightAxis = modifiers == Qt::ControlModifier;
    if (!isReturn || table_->currentItem() == nullptr ||
        (modifiers != Qt::ShiftModifier && !isForRightAxis)) {
        return false;
    }
    if (!key.isAutoRepeat()) {
        addToPlot(isForRightAxis);
    }
    return true;
}

void SummaryWidget::addToPlot(bool isForRightAxis) {
    const int row = table_->currentRow();
    const int column = table_->currentColumn();
    if (PlotDialog *plot = lastPlot()) {
        plot->addVariable(keyOfCell(row, column),
                          isForRightAxis ? TimeSeriesPlot::Side::right : TimeSeriesPlot::Side::left);
    } else {
        OnCellDoubleClicked(row, column);
    }
}

// A window that was closed is there a little longer.
PlotDialog *SummaryWidget::lastPlot() const {
    const auto found = std::find_if(plots_.rbegin(), plots_.rend(), [](const QPointer<PlotDialog> &plot) {
        return plot && plot->isVisible();
    });
    return found == plots_.rend() ? nullptr : found->data();
}

// A short jitter during a double-click must not start a drag, hence three times the usual distance.
void SummaryWidget::OnCellMouseMoved(QMouseEvent *event) {
    if ((event->buttons() & Qt::LeftButton) == 0 || pressedKey_.isEmpty()) {
        return;
    }
    const QPoint way = event->screenPos().toPoint() - pressedAt_;
    if (way.manhattanLength() < 3 * QApplication::startDragDistance()) {
        return;
    }
    auto *mimeData = new QMimeData;
    mimeData->setText(pressedKey_);
    auto *drag = new QDrag(this);
    drag->setMimeData(mimeData);
    connect(drag, &QDrag::targetChanged, this,
            [this](QObject *target) { OnTargetChanged(qobject_cast<QWidget *>(target)); });
    drag->exec(Qt::CopyAction);
}

void SummaryWidget::OnTargetChanged(QWidget *) {}

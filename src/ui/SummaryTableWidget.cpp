#include "ui/SummaryTableWidget.h"

#include "data/VariableKey.h"
#include "ui/EmptyHint.h"

#include <QHeaderView>
#include <QKeyEvent>

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

struct Variable {
    std::string_view name;
    std::string_view key;
};

struct Group {
    std::string_view title; // instrument and tag, as they stand in the key
    std::vector<Variable> variables;
};

QString textOf(std::string_view bytes) {
    return QString::fromUtf8(bytes.data(), static_cast<int>(bytes.size()));
}

// Views into `keys`. The keys of a group stand together, for they begin with the same bytes.
std::vector<Group> groupsOf(const std::set<std::string> &keys) {
    std::vector<Group> groups;
    for (const std::string &text : keys) {
        const std::string_view whole = text;
        const std::optional<VariableKey> key = splitVariableKey(whole);
        if (!key) {
            continue;
        }
        const std::string_view title = whole.substr(0, key->instrument.size() + 1 + key->tag.size());
        if (groups.empty() || groups.back().title != title) {
            groups.push_back({title, {}});
        }
        groups.back().variables.push_back({key->column, whole});
    }
    return groups;
}

// How many of the groups the table can hold, from the first one on; at least one, of which rows are left out.
std::size_t fittingGroups(const std::vector<Group> &groups) {
    std::size_t rows = 0;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        rows = std::max(rows, groups[i].variables.size());
        if (rows * (i + 1) > SummaryTableWidget::maximumCells) {
            return std::max<std::size_t>(i, 1);
        }
    }
    return groups.size();
}

QTableWidgetItem *makeItem(const Variable &variable) {
    auto *item = new QTableWidgetItem(textOf(variable.name));
    item->setData(Qt::UserRole, textOf(variable.key));
    item->setFlags(item->flags() & ~Qt::ItemIsEditable);
    return item;
}

} // namespace

SummaryTableWidget::SummaryTableWidget(QWidget *parent) : QTableWidget(parent) {
    setToolTip(tr("Double-click or Drag to plot"));
    setTabKeyNavigation(false);
    setAccessibleName(tr("Variables"));
    setAccessibleDescription(tr(
        "One column for each instrument and kind of record. Return plots the variable. Shift+Return adds it "
        "to the plot that was used last, Ctrl+Return to the right axis of that plot."));
    horizontalHeader()->setAccessibleName(tr("Instruments and kinds of record"));
    verticalHeader()->setAccessibleName(tr("Row numbers"));
    showVariables({});
}

void SummaryTableWidget::showVariables(const std::set<std::string> &keys) {
    std::vector<Group> groups = groupsOf(keys);
    const std::size_t count = groups.size();
    groups.resize(fittingGroups(groups));
    std::size_t rows = 0;
    QStringList titles;
    for (Group &group : groups) {
        group.variables.resize(std::min(group.variables.size(), maximumCells));
        rows = std::max(rows, group.variables.size());
        titles += textOf(group.title);
    }
    if (groups.size() < count) {
        titles += tr("%1 more are not shown").arg(count - groups.size());
    }
    if (titles.isEmpty()) {
        titles += tr("Variable");
    }

    clear();
    setRowCount(static_cast<int>(rows));
    setColumnCount(titles.size());
    for (int column = 0; const Group &group : groups) {
        for (int row = 0; const Variable &variable : group.variables) {
            setItem(row++, column, makeItem(variable));
        }
        ++column;
    }
    setHorizontalHeaderLabels(titles);
    resizeColumnsToContents();
}

// An empty cell has nothing to plot, and a key held down would open one window after the other.
void SummaryTableWidget::keyPressEvent(QKeyEvent *event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn || currentItem() == nullptr) {
        QTableWidget::keyPressEvent(event);
    } else if (!event->isAutoRepeat()) {
        Q_EMIT cellDoubleClicked(currentRow(), currentColumn());
    }
}

void SummaryTableWidget::paintEvent(QPaintEvent *event) {
    QTableWidget::paintEvent(event);
    if (rowCount() == 0) {
        drawEmptyHint(*this, tr("The variables of the files that you add show here"));
    }
}

// Not the table's own selecting of further cells: a variable is being dragged out.
void SummaryTableWidget::mouseMoveEvent(QMouseEvent *event) {
    Q_EMIT GotMouseMoveEvent(event);
}

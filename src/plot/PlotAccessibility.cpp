#include "plot/PlotAccessibility.h"

#include "plot/QwtCurve.h"
#include "plot/TimeSeriesPlot.h"

#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QScrollArea>
#include <qwt_legend.h>
#include <qwt_legend_label.h>
#include <qwt_plot_canvas.h>

namespace {

class LegendEntryAccessible : public QAccessibleWidget {
public:
    explicit LegendEntryAccessible(QwtLegendLabel *label)
        : QAccessibleWidget(label, QAccessible::CheckBox), label_(label) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = true;
        state.checked = label_->isChecked();
        return state;
    }
    QStringList actionNames() const override { return {toggleAction(), setFocusAction()}; }
    void doAction(const QString &name) override {
        if (name != toggleAction()) {
            QAccessibleWidget::doAction(name);
            return;
        }
        // As the keyboard does it: setting the state by a call hides no curve.
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
        QCoreApplication::sendEvent(label_, &press);
    }

private:
    QwtLegendLabel *label_;
};

QAccessibleInterface *makeAccessible(const QString &, QObject *object) {
    auto *label = qobject_cast<QwtLegendLabel *>(object);
    return label == nullptr ? nullptr : new LegendEntryAccessible(label);
}

void describeEntry(QwtLegendLabel &label, const QString &name) {
    if (!label.accessibleName().isEmpty()) {
        return;
    }
    label.setAccessibleName(name);
    label.setAccessibleDescription(QwtPlot::tr("A curve of the plot. Space hides it or shows it again."));
    QObject::connect(&label, &QwtLegendLabel::checked, &label, [&label] {
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent event(&label, changed);
        QAccessible::updateAccessibility(&event);
    });
}

// From the top down, as they are seen: else the entries of a variable come when it was added.
void orderTabStops(TimeSeriesPlot &plot) {
    QWidget *last = &plot;
    const auto append = [&last](QWidget *next) {
        QWidget::setTabOrder(last, next);
        last = next;
    };
    for (QwtPlotItem *curve : plot.itemList(QwtPlotItem::Rtti_PlotCurve)) {
        if (QWidget *label = plot.checkableLegend().legendWidget(plot.itemToInfo(curve))) {
            append(label);
        }
    }
    append(plot.canvas());
}

} // namespace

void describeForScreenReaders(TimeSeriesPlot &plot) {
    static const bool isInstalled = (QAccessible::installFactory(makeAccessible), true);
    Q_UNUSED(isInstalled)
    QStringList variables;
    for (const auto &[key, entry] : plot.entries()) {
        const auto &[variable, selector] = key;
        QString name = QString::fromStdString(variable);
        if (selector.empty()) {
            variables += name;
        } else {
            name = entry.curve->title().text() + QLatin1Char(' ') + name;
        }
        const QVariant info = plot.itemToInfo(entry.curve);
        if (auto *label = qobject_cast<QwtLegendLabel *>(plot.checkableLegend().legendWidget(info))) {
            describeEntry(*label, name);
        }
    }
    plot.setAccessibleName(QwtPlot::tr("Plot of %1").arg(variables.join(QStringLiteral(", "))));
    plot.setAccessibleDescription(QwtPlot::tr(
        "Minus and plus go back and forth in the history of views, Escape closes the window. Left and "
        "right move a mark; Return at both ends of a range of time shows that range."));
    orderTabStops(plot);
    // Its entries are stops of the Tab key, and come into view by themselves.
    plot.checkableLegend().findChild<QScrollArea *>()->setFocusPolicy(Qt::NoFocus);
    plot.canvas()->setAccessibleName(QwtPlot::tr("Curves against time"));
    plot.canvas()->setAccessibleDescription(plot.accessibleDescription());
}

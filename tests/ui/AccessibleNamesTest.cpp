// What a screen reader says about every window.

#include "loading/QDataSet.h"
#include "plot/PlotDialog.h"
#include "time/Timezone.h"
#include "ui/DataFiles.h"
#include "ui/ExportProgressDialog.h"
#include "ui/ExportWhatDialog.h"
#include "ui/FrameWindow.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAccessible>
#include <QComboBox>
#include <QDropEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QMimeData>
#include <QProgressBar>
#include <QScrollBar>
#include <QSplitterHandle>
#include <QTabBar>
#include <QtTest>
#include <qwt_legend_label.h>
#include <qwt_plot.h>
#include <qwt_plot_item.h>

namespace {

QString textOf(QWidget *widget, QAccessible::Text which) {
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(widget);
    return interface == nullptr ? QString() : interface->text(which);
}

// What people work with, or look at to see how far something is.
bool isInteractive(const QWidget &widget) {
    return widget.focusPolicy() != Qt::NoFocus || qobject_cast<const QAbstractButton *>(&widget) != nullptr ||
           qobject_cast<const QComboBox *>(&widget) != nullptr ||
           qobject_cast<const QProgressBar *>(&widget) != nullptr;
}

// Parts of Qt's own that nobody meets by themselves.
QString reasonToHaveNoName(const QWidget &widget) {
    if (qobject_cast<const QScrollBar *>(&widget) != nullptr) {
        return "the area that it scrolls is named";
    }
    if (qobject_cast<const QSplitterHandle *>(&widget) != nullptr) {
        return "only a mouse moves it, and all can be read without moving it";
    }
    if (widget.inherits("QComboBoxPrivateContainer") || widget.inherits("QComboBoxListView")) {
        return "the box that drops it down is named";
    }
    if (widget.inherits("QTableCornerButton")) {
        return "it selects all cells, as Ctrl+A does";
    }
    if (widget.parentWidget() != nullptr && widget.inherits("QToolButton") &&
        qobject_cast<const QTabBar *>(widget.parentWidget()) != nullptr) {
        return "it scrolls tabs that arrow keys reach";
    }
    return {};
}

// Of the window and everything in it; widgets as "class in class".
struct Names {
    explicit Names(QWidget &window) {
        for (QWidget *widget : window.findChildren<QWidget *>()) {
            if (!isInteractive(*widget) || !reasonToHaveNoName(*widget).isEmpty()) {
                continue;
            }
            ++count;
            const QString what = QString::fromLatin1(widget->metaObject()->className()) + " in " +
                                 widget->parentWidget()->metaObject()->className() + " " +
                                 textOf(widget, QAccessible::Name);
            if (textOf(widget, QAccessible::Name).isEmpty()) {
                nameless += what;
            }
            // Tabs tell their titles alone.
            if (textOf(widget, QAccessible::Description).isEmpty() &&
                qobject_cast<QTabBar *>(widget) == nullptr) {
                undescribed += what;
            }
        }
    }

    int count = 0;
    QStringList nameless;
    QStringList undescribed;
};

void expectNamed(QWidget &window, int fewest) {
    const Names names(window);
    QVERIFY2(names.count >= fewest, qPrintable(QString::number(names.count)));
    QVERIFY2(names.nameless.isEmpty(), qPrintable(names.nameless.join("; ")));
    QVERIFY2(names.undescribed.isEmpty(), qPrintable(names.undescribed.join("; ")));
}

} // namespace

class AccessibleNamesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        zoneDirectory = FVQA_ZONEINFO_DIR;
        QSignalSpy loaded(&dataSet_, SIGNAL(FileLoaded(QString)));
        dataSet_.AddFile(files_.writeData("1.data", "QA330", "CH4\tTEMP"));
        QVERIFY(!loaded.isEmpty() || loaded.wait());
    }

    void everyControlOfTheMainWindowIsNamed() {
        const FrameWindow window;
        expectNamed(*window.frame, 11);
    }

    void everyControlOfAPlotIsNamed() {
        PlotDialog plot(nullptr, &dataSet_, "QA330:DATA:CH4");
        plot.setAttribute(Qt::WA_DeleteOnClose, false);
        expectNamed(plot, 14);
    }

    void everyControlOfTheExportDialogIsNamed() {
        ExportWhatDialog dialog(nullptr, 12);
        expectNamed(dialog, 13);
    }

    void everyControlOfTheExportProgressIsNamed() {
        ExportProgressDialog dialog(nullptr, dataSet_, "QA330");
        expectNamed(dialog, 2);
    }

    void aPlotAndItsLegendSayWhichVariablesTheyShow() {
        PlotDialog plot(nullptr, &dataSet_, "QA330:DATA:CH4");
        plot.setAttribute(Qt::WA_DeleteOnClose, false);
        QMimeData data;
        data.setText("QA330:DATA:TEMP");
        QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&plot, &enter);
        QDropEvent drop(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&plot, &drop);
        QCOMPARE(plot.findChild<QwtPlot *>()->accessibleName(), "Plot of QA330:DATA:CH4, QA330:DATA:TEMP");
        QStringList entries;
        for (auto *label : plot.findChildren<QwtLegendLabel *>()) {
            entries += textOf(label, QAccessible::Name);
        }
        QCOMPARE(entries, (QStringList{"QA330:DATA:CH4", "MAX QA330:DATA:CH4", "MIN QA330:DATA:CH4",
                                       "QA330:DATA:TEMP", "MAX QA330:DATA:TEMP", "MIN QA330:DATA:TEMP"}));
    }

    void aLegendEntryIsACheckBoxThatAScreenReaderCanToggle() {
        PlotDialog plot(nullptr, &dataSet_, "QA330:DATA:CH4");
        plot.setAttribute(Qt::WA_DeleteOnClose, false);
        auto *label = plot.findChildren<QwtLegendLabel *>()[1];
        QAccessibleInterface *entry = QAccessible::queryAccessibleInterface(label);
        QCOMPARE(entry->role(), QAccessible::CheckBox);
        QVERIFY(entry->state().checkable);
        QVERIFY(entry->state().checked);
        entry->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(!entry->state().checked);
        QCOMPARE(shownCurves(plot), 2);
        entry->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(entry->state().checked);
        QCOMPARE(shownCurves(plot), 3);
    }

private:
    static int shownCurves(const PlotDialog &plot) {
        int shown = 0;
        for (const QwtPlotItem *item : plot.findChild<QwtPlot *>()->itemList(QwtPlotItem::Rtti_PlotCurve)) {
            shown += item->isVisible() ? 1 : 0;
        }
        return shown;
    }

    const DataFiles files_{};
    QDataSet dataSet_;
};

QTEST_MAIN(AccessibleNamesTest)
#include "AccessibleNamesTest.moc"

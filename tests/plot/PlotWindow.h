#pragma once

#include "plot/GappedCurve.h"
#include "plot/PlotData.h"
#include "plot/PlotDialog.h"
#include "plot/PlotZoomer.h"
#include "plot/TimeSeriesPlot.h"

#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPointer>
#include <QPushButton>
#include <QToolButton>
#include <QtTest>
#include <qwt_legend.h>
#include <qwt_legend_label.h>
#include <qwt_plot_canvas.h>

// A plot window and its parts.
class PlotWindow {
public:
    PlotWindow(const PlotData &data, const QString &key) : dialog_(new PlotDialog(nullptr, &data.set, key)) {}
    ~PlotWindow() { delete dialog_; }
    Q_DISABLE_COPY(PlotWindow)

    bool show() {
        dialog_->show();
        return QTest::qWaitForWindowExposed(dialog_);
    }
    // So that keys come to it.
    bool showActive() {
        const bool isShown = show();
        dialog_->activateWindow();
        return isShown && QTest::qWaitForWindowActive(dialog_);
    }

    PlotDialog &dialog() const { return *dialog_; }
    const QPointer<PlotDialog> &pointer() const { return dialog_; }
    TimeSeriesPlot &plot() const { return *dialog_->findChild<TimeSeriesPlot *>(); }
    PlotZoomer &zoomer() const { return *dialog_->findChild<PlotZoomer *>(); }
    QWidget &canvas() const { return *plot().canvas(); }

    QToolButton &previous() const { return toolButton("Go to previous zoom level"); }
    QToolButton &next() const { return toolButton("Go to next zoom level"); }
    QToolButton &full() const { return toolButton("Auto scale to view entire data set"); }
    QToolButton &horizontal() const { return toolButton("Auto scale horizontally"); }
    QToolButton &vertical() const { return toolButton("Auto scale vertically"); }
    QPushButton &yRange() const { return pushButton("Ymin Ymax"); }
    QPushButton &print() const { return pushButton("Print..."); }
    QPushButton &closeButton() const { return pushButton("Close"); }
    QLineEdit &yMinimum() const { return *dialog_->findChildren<QLineEdit *>().at(0); }
    QLineEdit &yMaximum() const { return *dialog_->findChildren<QLineEdit *>().at(1); }

    // "previous, next, full, horizontal, vertical" as far as they can be used.
    QString usableButtons() const {
        QStringList usable;
        const QToolButton *buttons[] = {&previous(), &next(), &full(), &horizontal(), &vertical()};
        const char *names[] = {"previous", "next", "full", "horizontal", "vertical"};
        for (int i = 0; i < 5; ++i) {
            if (buttons[i]->isEnabled()) {
                usable += names[i];
            }
        }
        return usable.join(' ');
    }
    // "lowest to highest" of the edits.
    QString yTexts() const { return yMinimum().text() + " to " + yMaximum().text(); }
    // As a user does: the text in, then on to the next field.
    void enterYRange(const QString &minimum, const QString &maximum) const {
        for (const auto &[edit, text] : {std::pair(&yMinimum(), minimum), std::pair(&yMaximum(), maximum)}) {
            edit->selectAll();
            QTest::keyClicks(edit, text);
            // Without the focus of the window system, tabbing on ends no editing.
            if (edit->hasAcceptableInput()) {
                Q_EMIT edit->editingFinished();
            }
        }
    }

    void zoom(double left, double right, double low, double high) const {
        zoomer().zoom(QRectF(left, low, right - left, high - low));
    }
    QVector<QRectF> stack() const { return zoomer().zoomStack(); }
    int index() const { return static_cast<int>(zoomer().zoomRectIndex()); }
    // What the time axis and the left axis show.
    QRectF shown() const {
        const QwtScaleDiv &times = plot().axisScaleDiv(QwtPlot::xBottom);
        const QwtScaleDiv &values = plot().axisScaleDiv(QwtPlot::yLeft);
        return QRectF(QPointF(times.lowerBound(), values.lowerBound()),
                      QPointF(times.upperBound(), values.upperBound()));
    }

    const TimeSeriesPlot::Entry &entry(const std::string &key, const std::string &selector = "") const {
        return plot().entries().at({key, selector});
    }
    QwtPlotCurve &curve(const std::string &key, const std::string &selector = "") const {
        return *entry(key, selector).curve;
    }
    const PlotSeries &series(const std::string &key, const std::string &selector = "") const {
        return *entry(key, selector).series;
    }
    QwtLegendLabel &label(const QwtPlotCurve &curve) const {
        QVariant info = plot().itemToInfo(const_cast<QwtPlotCurve *>(&curve));
        return *qobject_cast<QwtLegendLabel *>(plot().checkableLegend().legendWidget(info));
    }
    void clickLegend(const std::string &key, const std::string &selector = "") const {
        QTest::mouseClick(&label(curve(key, selector)), Qt::LeftButton);
    }

    // Drops the text on the window's left or right half; false when the drop was not taken.
    bool drop(const QString &text, TimeSeriesPlot::Side side = TimeSeriesPlot::Side::left) const {
        QMimeData data;
        data.setText(text);
        const int middle = dialog_->width() / 2;
        return dropAt(data, side == TimeSeriesPlot::Side::left ? middle : middle + 1);
    }
    bool dropAt(const QMimeData &data, int x) const {
        const QPoint at(x, dialog_->height() / 2);
        QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.setAccepted(false);
        QApplication::sendEvent(dialog_, &enter);
        if (!enter.isAccepted()) {
            return false;
        }
        QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        drop.setAccepted(false);
        QApplication::sendEvent(dialog_, &drop);
        return drop.isAccepted();
    }

private:
    QToolButton &toolButton(const QString &toolTip) const {
        for (auto *button : dialog_->findChildren<QToolButton *>()) {
            if (button->toolTip() == toolTip) {
                return *button;
            }
        }
        throw std::runtime_error("no button " + toolTip.toStdString());
    }
    QPushButton &pushButton(const QString &text) const {
        for (auto *button : dialog_->findChildren<QPushButton *>()) {
            if (button->text() == text) {
                return *button;
            }
        }
        throw std::runtime_error("no button " + text.toStdString());
    }

    QPointer<PlotDialog> dialog_;
};

#pragma once

#include "plot/PlotControls.h"
#include "plot/PlotOutput.h"
#include "plot/PlotView.h"
#include "plot/TimeSeriesPlot.h"
#include "time/Timezone.h"

#include <QDialog>
#include <QPair>
#include <QVector>

class PlotZoomer;
class QAction;
class QDataSet;
class QToolButton;

// A window that draws variables against time: zoom history, automatic scaling, a range for the left axis,
// curves that can be hidden, pictures and printing.
//
// A variable's key dropped as text adds its curves, on the right axis when it is dropped on the right half.
// Deletes itself when it is closed. The data set must outlive it.
class PlotDialog : public QDialog {
    Q_OBJECT

public:
    class _QwtPlotData; // shows a series to its curve: plot/PlotCurveData.h

    // Throws Timezone::Error when the zone file of the variable's zone has become unreadable.
    PlotDialog(QWidget *parent, const QDataSet *dataSet, const QString &key);
    ~PlotDialog() override;

    // Adds a variable's curves, as dropping its key on that side does.
    void addVariable(const QString &key, TimeSeriesPlot::Side side);

public Q_SLOTS:
    void OnZoomed(const QRectF &rect);
    void OnZoomLeft();
    void OnZoomRight();
    void OnAutoScaleFull();
    void OnAutoScaleVertical();
    void OnAutoScaleHorizontal();
    void OnPrintClicked();
    void OnLegendChecked(const QVariant &info, bool on, int index);
    void OnYMinMaxApplyClicked();
    void OnYMinMaxEditChanged();

    void copyPicture();
    void savePicture();
    void giveUpOrClose();

protected:
    void changeEvent(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void makeActions();
    void connectAll();
    void updateButtons();

    TimeSeriesPlot *plot_; // these two owned by the window
    PlotZoomer *zoomer_;
    PlotControls controls_;
    PlotView view_;
    PlotOutput output_;
    QVector<QPair<QToolButton *, QAction *>> zoomControls_; // button and menu entry of the same
};

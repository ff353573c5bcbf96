#pragma once

#include "plot/TimeSeriesPlot.h"
#include "time/Timezone.h"

#include <QDialog>
#include <QPair>
#include <QVector>

#include <memory>

class PlotZoomer;
class QAction;
class QBoxLayout;
class QDataSet;
class QLineEdit;
class QPrintDialog;
class QPrinter;
class QPushButton;
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
    QBoxLayout *makeControls();
    QToolButton *makeToolButton(const QIcon &icon, const QString &toolTip);
    void makeActions();
    void connectAll();

    void zoomTo(const QRectF &rect);
    void loadView();
    void updateButtons();
    void updateHint();
    void showYRange(const QRectF &rect);
    void extendZoomBase(bool wasEmpty);
    bool mayReplace(const QString &path);
    bool isLoaded(const QString &path) const;
    void tell(const QString &title, const QString &problem);

    const QDataSet *dataSet_;
    TimeSeriesPlot *plot_;
    PlotZoomer *zoomer_;
    QToolButton *previousButton_ = nullptr;
    QToolButton *nextButton_ = nullptr;
    QToolButton *fullButton_ = nullptr;
    QToolButton *horizontalButton_ = nullptr;
    QToolButton *verticalButton_ = nullptr;
    QPushButton *yRangeButton_ = nullptr;
    QLineEdit *yMinimumEdit_ = nullptr;
    QLineEdit *yMaximumEdit_ = nullptr;
    QPushButton *printButton_ = nullptr;
    QPushButton *closeButton_ = nullptr;
    QVector<QPair<QToolButton *, QAction *>> zoomControls_; // button and menu entry of the same
    bool yRangeIsUsers_ = false;                            // what the edits hold was entered by the user
    bool viewIsLoaded_ = false;                             // by the last zoom
    std::unique_ptr<QPrinter> printer_;
    QPrintDialog *printDialog_ = nullptr;
};

#pragma once

#include <QCoreApplication>

#include <memory>

class QDataSet;
class QPrintDialog;
class QPrinter;
class QWidget;
class QwtPlot;

// What leaves a plot window: its plot as a print, in the clipboard and in a file.
//
// Asks by dialogs above the window, and says there what went wrong. Window, plot and data set must outlive
// it.
class PlotOutput {
    Q_DECLARE_TR_FUNCTIONS(PlotOutput)

public:
    PlotOutput(QWidget &window, QwtPlot &plot, const QDataSet &dataSet);
    ~PlotOutput();
    Q_DISABLE_COPY(PlotOutput)

    // The printer keeps its choices from one print to the next.
    void print();
    void copyPicture();
    // Never over a file that is loaded; over any other one when the user wants that.
    void savePicture();

private:
    bool mayReplace(const QString &path);
    bool isLoaded(const QString &path) const;
    void tell(const QString &title, const QString &problem);

    QWidget &window_;
    QwtPlot &plot_;
    const QDataSet &dataSet_;
    std::unique_ptr<QPrinter> printer_;   // from the first print on
    QPrintDialog *printDialog_ = nullptr; // owned by the window
};

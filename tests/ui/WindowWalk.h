#pragma once

#include "plot/PlotDialog.h"
#include "support/RandomNumbers.h"
#include "ui/MyFrame.h"
#include "ui/MyMainWindow.h"
#include "ui/WalkFiles.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <memory>
#include <set>

class FileItemModel;
class QDataSet;

// Random use of a main window while files load, and what must hold after each action.
class WindowWalk : public QObject {
    Q_OBJECT

public:
    WindowWalk(const WalkFiles &files, quint64 seed);
    // Closes the window, whatever it is doing.
    ~WindowWalk() override;

    // Does something and gives its name.
    QString act();
    // What is wrong, or an empty text.
    QString problem() const;
    // True when no worker is left, of those that the window has started.
    bool isIdle() const;
    // What is wrong with an idle window, or an empty text.
    QString idleProblem() const;

    // Plot windows that this walk has opened; null where they are gone.
    const QList<QPointer<PlotDialog>> &plots() const { return plots_; }
    // Most workers that were seen at a time.
    int mostWorkers() const { return mostWorkers_; }
    int exports() const { return exports_; }
    bool isClosed() const { return isClosed_; }

private:
    enum class Ending { finish, reject, cancel, removeFiles, close };

    void addSome();
    void waitForOneFile();
    void removeSome();
    void addAgain();
    void plotSome();
    void dropOnPlot();
    void zoomSomePlot();
    void closeSomePlot();
    void exportSome();
    void disturb(Ending ending);
    void removeRows(const std::set<int> &rows);
    PlotDialog *somePlot();

    const WalkFiles &files_;
    RandomNumbers random_;
    std::unique_ptr<MyMainWindow> window_;
    MyFrame *frame_;
    FileItemModel *model_;
    QDataSet *dataSet_;
    QStringList rows_;         // that the list of files must show
    std::set<QString> loaded_; // whose data must be there
    QList<QPointer<PlotDialog>> plots_;
    QString exportProblem_;
    int exports_ = 0;
    int mostWorkers_ = 0;
    bool isClosed_ = false;
};

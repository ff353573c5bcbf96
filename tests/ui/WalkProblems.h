#pragma once

#include "ui/WalkFiles.h"

#include <QList>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <set>
#include <string>

class FileItemModel;
class PlotDialog;
class QDataSet;
class QWidget;
class SummaryTableWidget;

// What may be wrong with a main window that is walked through. Each gives an empty text when nothing is.

// At any time. `rows` is what the list of files must show.
QString rowProblem(const FileItemModel &model, const QStringList &rows);
// The data must be those of the files whose loading was reported, and of no other.
QString dataProblem(const QDataSet &dataSet, const WalkFiles &files, const std::set<QString> &loaded);
// Every plot window must be one of those that were opened; some of these may be gone.
QString plotProblem(const QWidget &window, const QList<QPointer<PlotDialog>> &opened);

// While no worker is left. Every file of the list must have been loaded that can be.
QString loadProblem(const QStringList &rows, const WalkFiles &files, const std::set<QString> &loaded);
QString progressProblem(const QWidget &window);
QString tableProblem(const QWidget &window, const QDataSet &dataSet);

// After an export of text into one file. `records` is how many records it may have had.
enum class ExportEnd { whole, cut, rejected };
QString exportProblem(const QString &target, ExportEnd end, const std::set<qint64> &records);

// The variables that a table shows.
std::set<std::string> keysOf(const SummaryTableWidget &table);

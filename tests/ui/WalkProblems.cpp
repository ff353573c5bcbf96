#include "ui/WalkProblems.h"

#include "loading/QDataSet.h"
#include "plot/PlotDialog.h"
#include "ui/FileItemModel.h"
#include "ui/FileLoadProgressWidget.h"
#include "ui/SummaryTableWidget.h"

#include <QFile>
#include <QProgressBar>

namespace {

QByteArray contentOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

QString rowProblem(const FileItemModel &model, const QStringList &rows) {
    return model.paths() == rows ? "" : "the list of files shows " + model.paths().join(", ");
}

QString dataProblem(const QDataSet &dataSet, const WalkFiles &files, const std::set<QString> &loaded) {
    std::set<std::string> names;
    std::set<std::string> keys;
    for (const QString &path : loaded) {
        const std::set<std::string> &own = files.variablesOf(path);
        keys.insert(own.begin(), own.end());
        if (!own.empty()) {
            names.insert(path.toStdString());
        }
    }
    if (dataSet.fileNames() != names) {
        return "the data are of other files than were loaded";
    }
    return dataSet.variableKeys() == keys ? "" : "the variables are others than those of the files";
}

QString plotProblem(const QWidget &window, const QList<QPointer<PlotDialog>> &opened) {
    QList<PlotDialog *> known;
    for (const QPointer<PlotDialog> &plot : opened) {
        if (plot) {
            known += plot;
        }
    }
    for (PlotDialog *plot : window.findChildren<PlotDialog *>()) {
        if (!known.contains(plot)) {
            return "a plot window that nobody opened";
        }
    }
    return "";
}

QString loadProblem(const QStringList &rows, const WalkFiles &files, const std::set<QString> &loaded) {
    for (const QString &path : rows) {
        if (path != files.missing() && loaded.count(path) == 0) {
            return path + " is in the list but was not loaded";
        }
    }
    return "";
}

QString progressProblem(const QWidget &window) {
    const auto *progress = window.findChild<FileLoadProgressWidget *>();
    const QString bar = progress->findChild<QProgressBar *>()->format();
    return bar.startsWith("0 Files Remaining") ? "" : "the progress bar shows " + bar;
}

QString tableProblem(const QWidget &window, const QDataSet &dataSet) {
    return keysOf(*window.findChild<SummaryTableWidget *>()) == dataSet.variableKeys()
               ? ""
               : "the table shows other variables than there are";
}

// A cancelled export leaves what it has written: the header line, then whole records.
QString exportProblem(const QString &target, ExportEnd end, const std::set<qint64> &records) {
    const QByteArray content = contentOf(target);
    const qint64 lines = content.count('\n');
    if (end == ExportEnd::rejected) {
        return content.isNull() ? "" : "a rejected dialog has written a file";
    }
    if (!content.isEmpty() && !content.endsWith('\n')) {
        return "an export ends within a line";
    }
    if (lines > *records.rbegin() + 1 || (end == ExportEnd::whole && !records.contains(lines - 1))) {
        return QString("an export of %1 records has %2 lines").arg(*records.rbegin()).arg(lines);
    }
    return "";
}

std::set<std::string> keysOf(const SummaryTableWidget &table) {
    std::set<std::string> keys;
    for (int row = 0; row < table.rowCount(); ++row) {
        for (int column = 0; column < table.columnCount(); ++column) {
            if (const auto *item = table.item(row, column)) {
                keys.insert(item->data(Qt::UserRole).toString().toStdString());
            }
        }
    }
    return keys;
}

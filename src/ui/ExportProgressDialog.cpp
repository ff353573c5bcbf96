#include "ui/ExportProgressDialog.h"

#include "loading/QDataSet.h"

#include <QApplication>
#include <QProgressBar>
#include <QPushButton>

#include <limits>

namespace {

ProgressScale scaleOf(const QDataSet &dataSet, const std::string &instrument) {
    double earliest = std::numeric_limits<double>::max();
    double latest = std::numeric_limits<double>::lowest();
    dataSet.timeRangeOfInstrument(instrument, earliest, latest);
    return {earliest, latest};
}

} // namespace

ExportProgressDialog::ExportProgressDialog(QWidget *parent, const QDataSet &dataSet,
                                           const std::string &instrument)
    : QProgressDialog(tr("Exporting file"), tr("Cancel"), 0, 100, parent),
      scale_(scaleOf(dataSet, instrument)) {
    setWindowModality(Qt::WindowModal);
    // A clock that is set back reaches the end more than once.
    setAutoReset(false);
    setAutoClose(false);
    findChild<QProgressBar *>()->setAccessibleName(tr("Export"));
    findChild<QProgressBar *>()->setAccessibleDescription(tr("How much of the data is written"));
    findChild<QPushButton *>()->setAccessibleDescription(tr("Ends the export; what is written stays"));
    setValue(0);
    QApplication::setOverrideCursor(Qt::BusyCursor);
    QCoreApplication::processEvents();
}

ExportProgressDialog::~ExportProgressDialog() {
    QApplication::restoreOverrideCursor();
}

void ExportProgressDialog::showFile(const std::string &name) {
    setLabelText(tr("Exporting file: ") + QString::fromStdString(name));
    QCoreApplication::processEvents();
}

void ExportProgressDialog::showTime(double utcSeconds) {
    setValue(scale_.percentAt(utcSeconds));
    QCoreApplication::processEvents();
}

void ExportProgressDialog::showEnd() {
    setValue(maximum());
}

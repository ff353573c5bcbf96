#pragma once

#include "export/ExportProgress.h"

#include <QProgressDialog>

#include <string>

class QDataSet;

// Shows how far an export is and offers to cancel it. Keeps the interface alive: events are processed at
// every step, so anything may happen to the data meanwhile. The busy cursor shows while it lives.
class ExportProgressDialog : public QProgressDialog, public ExportProgress {
    Q_OBJECT

public:
    // For an export of the instrument's data.
    ExportProgressDialog(QWidget *parent, const QDataSet &dataSet, const std::string &instrument);
    ~ExportProgressDialog() override;

    void showFile(const std::string &name) override;
    void showTime(double utcSeconds) override;
    bool isCancelled() override { return wasCanceled(); }
    void showEnd() override;

private:
    ProgressScale scale_;
};

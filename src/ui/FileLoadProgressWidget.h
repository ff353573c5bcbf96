#pragma once

#include <QMap>
#include <QPair>
#include <QWidget>

class QProgressBar;

// How far the loading of all files has come since the program started.
class FileLoadProgressWidget : public QWidget {
    Q_OBJECT

public:
    explicit FileLoadProgressWidget(QWidget *parent = nullptr);

public Q_SLOTS:
    // `percent` of the `fileSize` bytes of `fileName` are loaded. A later report replaces an earlier one.
    void OnProgress(const QString &fileName, int percent, qint64 fileSize);

private:
    using Report = QPair<qint32, qint64>; // percent, bytes

    void count(const Report &report, int sign);

    QProgressBar *bar_;
    QMap<QString, Report> reports_; // never shrinks: the bar covers every file reported
    // Sums over reports_, kept up to date so that a report costs the same among ten thousand files.
    qint64 totalBytes_ = 0;
    qint64 doneBytes_ = 0; // each file's share truncated to whole bytes
    int remainingFiles_ = 0;
};

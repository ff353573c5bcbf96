#include "ui/FileLoadProgressWidget.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

namespace {

QString barFormat(int remainingFiles) {
    return QString::number(remainingFiles) + QStringLiteral(" Files Remaining (%p% Done)");
}

} // namespace

FileLoadProgressWidget::FileLoadProgressWidget(QWidget *parent) : QWidget(parent), bar_(new QProgressBar) {
    auto *label = new QLabel(tr("Load Data Files"));
    label->setBuddy(bar_);
    bar_->setAccessibleName(label->text());
    bar_->setAccessibleDescription(tr("How much of all files is loaded, and how many are not yet"));
    bar_->setOrientation(Qt::Horizontal);
    bar_->setRange(0, 100);
    bar_->setFormat(barFormat(0));
    // Nothing is left to load until the first report comes.
    bar_->setValue(100);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(bar_);
    layout->addStretch();
}

void FileLoadProgressWidget::OnProgress(const QString &fileName, int percent, qint64 fileSize) {
    const Report report(percent, fileSize);
    const auto known = reports_.find(fileName);
    if (known == reports_.end()) {
        reports_.insert(fileName, report);
    } else {
        count(*known, -1);
        *known = report;
    }
    count(report, +1);

    // Empty files alone make no bytes: there is nothing to wait for.
    bar_->setValue(totalBytes_ == 0 ? 100 : static_cast<int>(doneBytes_ * 100 / totalBytes_));
    bar_->setFormat(barFormat(remainingFiles_));
}

void FileLoadProgressWidget::count(const Report &report, int sign) {
    const auto [percent, bytes] = report;
    totalBytes_ += sign * bytes;
    doneBytes_ += sign * (percent * bytes / 100);
    remainingFiles_ += percent < 100 ? sign : 0;
}

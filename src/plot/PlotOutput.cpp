#include "plot/PlotOutput.h"

#include "loading/QDataSet.h"
#include "plot/PlotPicture.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <qwt_plot.h>

#include <algorithm>
#include <set>
#include <string>

PlotOutput::PlotOutput(QWidget &window, QwtPlot &plot, const QDataSet &dataSet)
    : window_(window), plot_(plot), dataSet_(dataSet) {}

PlotOutput::~PlotOutput() = default;

void PlotOutput::print() {
    if (!printer_) {
        printer_ = std::make_unique<QPrinter>(QPrinter::ScreenResolution);
        printer_->setColorMode(QPrinter::Color);
        printer_->setPageOrientation(QPageLayout::Landscape);
        printer_->setPageSize(QPageSize(QPageSize::Letter));
        printDialog_ = new QPrintDialog(printer_.get(), &window_);
    }
    if (printDialog_->exec() == QDialog::Accepted) {
        tell(tr("Print"), printPicture(plot_, *printer_));
    }
}

void PlotOutput::copyPicture() {
    constexpr double pixelRatio = 2; // sharp in documents
    QApplication::clipboard()->setImage(pictureOf(plot_, plot_.size(), pixelRatio));
}

void PlotOutput::savePicture() {
    QString filter;
    QString path = QFileDialog::getSaveFileName(&window_, tr("Save picture"), {},
                                                tr("PNG (*.png);;SVG (*.svg);;PDF (*.pdf)"), &filter);
    if (path.isEmpty()) {
        return;
    }
    if (!isPictureName(path)) {
        path += QLatin1Char('.') + filter.left(3).toLower();
        if (QFileInfo::exists(path) && !mayReplace(path)) {
            return;
        }
    }
    if (isLoaded(path)) {
        tell(tr("Save picture"), path + QStringLiteral(": This file is loaded; it is left alone"));
        return;
    }
    const QString problem = writePicture(plot_, path, plot_.size());
    tell(tr("Save picture"), problem.isEmpty() ? problem : path + QStringLiteral(": ") + problem);
}

// The file dialog has asked about the name as it was typed only.
bool PlotOutput::mayReplace(const QString &path) {
    return QMessageBox::question(&window_, tr("Save picture"),
                                 tr("%1 already exists. Do you want to replace it?").arg(path)) ==
           QMessageBox::Yes;
}

bool PlotOutput::isLoaded(const QString &path) const {
    const QString canonical = QFileInfo(path).canonicalFilePath(); // empty when there is no such file
    const std::set<std::string> files = dataSet_.fileNames();
    return !canonical.isEmpty() && std::any_of(files.begin(), files.end(), [&](const std::string &file) {
        return QFileInfo(QString::fromStdString(file)).canonicalFilePath() == canonical;
    });
}

void PlotOutput::tell(const QString &title, const QString &problem) {
    if (!problem.isEmpty()) {
        QMessageBox::warning(&window_, title, problem);
    }
}

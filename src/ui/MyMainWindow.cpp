#include "ui/MyMainWindow.h"

#include "ui/MyFrame.h"

#include <QCloseEvent>
#include <QFile>
#include <QScreen>
#include <QSettings>

namespace {

constexpr char organisation[] = "Ombrix";
constexpr char application[] = "fvqa300";
constexpr char geometryKey[] = "geometry";
constexpr char timeColumnsKey[] = "timecols";

} // namespace

MyMainWindow::MyMainWindow(const QString &displayName, const QString &applicationPath, int argumentCount,
                           const char *const *arguments)
    : frame_(new MyFrame(displayName, applicationPath, this)) {
    setCentralWidget(frame_);

    QStringList files;
    for (int i = 1; i < argumentCount; ++i) {
        if (arguments[i][0] != '-') {
            files += QFile::decodeName(arguments[i]);
        }
    }
    frame_->AddFiles(files);

    resize(QSize(1000, 650).boundedTo(screen()->availableSize() * 9 / 10));
    readSettings();
}

void MyMainWindow::closeEvent(QCloseEvent *event) {
    if (frame_ && !frame_->endExport()) {
        event->ignore();
        return;
    }
    writeSettings();
    QMainWindow::closeEvent(event);
}

void MyMainWindow::readSettings() {
    const QSettings settings(organisation, application);
    restoreGeometry(settings.value(geometryKey).toByteArray());
    frame_->setTimeColumns(settings.value(timeColumnsKey).toUInt());
}

void MyMainWindow::writeSettings() const {
    QSettings settings(organisation, application);
    settings.setValue(geometryKey, saveGeometry());
    if (frame_) {
        settings.setValue(timeColumnsKey, frame_->timeColumns());
    }
}

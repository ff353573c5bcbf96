#pragma once

#include "ui/MyFrame.h"

#include <QMainWindow>
#include <QPointer>

// The main window. Keeps its place on the screen and the export's time columns from one run to the next.
class MyMainWindow : public QMainWindow {
    Q_OBJECT

public:
    // Adds every argument behind the first that does not begin with "-" as a file.
    MyMainWindow(const QString &displayName, const QString &applicationPath, int argumentCount,
                 const char *const *arguments);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void readSettings();
    void writeSettings() const;

    QPointer<MyFrame> frame_; // deleted when it is closed by itself
};

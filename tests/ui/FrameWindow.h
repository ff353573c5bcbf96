#pragma once

#include "ui/AboutWidget.h"
#include "ui/FileItemModel.h"
#include "ui/FileItemView.h"
#include "ui/FileWidget.h"
#include "ui/MyFrame.h"

#include <QMainWindow>
#include <QPushButton>
#include <QStackedWidget>
#include <QTextEdit>
#include <QToolButton>

// A shown window with the frame in it, and its parts by name.
struct FrameWindow {
    explicit FrameWindow(const QString &applicationPath = "/nowhere/viewer")
        : frame(new MyFrame("Viewer", applicationPath, &window)) {
        window.setCentralWidget(frame);
        window.show();
    }

    template <typename Button>
    Button *button(const QString &name) const {
        for (auto *candidate : frame->findChildren<Button *>()) {
            if (candidate->text() == name || candidate->toolTip() == name) {
                return candidate;
            }
        }
        return nullptr;
    }
    QPushButton *pushButton(const QString &text) const { return button<QPushButton>(text); }
    QToolButton *toolButton(const QString &toolTip) const { return button<QToolButton>(toolTip); }

    FileItemView *view() const { return frame->findChild<FileItemView *>(); }
    FileItemModel *model() const { return frame->findChild<FileItemModel *>(); }
    FileWidget *tabs() const { return frame->findChild<FileWidget *>(); }
    AboutWidget *about() const { return frame->findChild<AboutWidget *>(); }
    // The stack that holds the about page; the tabs have one of their own.
    QStackedWidget *pages() const { return qobject_cast<QStackedWidget *>(about()->parentWidget()); }
    QString messages() const { return frame->findChild<QTextEdit *>()->toPlainText(); }

    QMainWindow window;
    MyFrame *frame;
};

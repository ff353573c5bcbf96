#include "ui/WindowKeys.h"

#include "ui/FileItemView.h"
#include "ui/MyFrame.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QShortcut>

namespace {

template <typename Action>
QShortcut *addKey(QWidget &to, const QKeySequence &keys, Action act) {
    auto *key = new QShortcut(keys, &to);
    QObject::connect(key, &QShortcut::activated, &to, act);
    return key;
}

// Queued: the dialog that had the key leaves first.
void closeMainWindow(const MyFrame &frame) {
    QMetaObject::invokeMethod(frame.window(), "close", Qt::QueuedConnection);
}

// A dialog may have been asked for by another one.
void closeModalWindows(QWidget *last) {
    for (QWidget *window = last; window != nullptr && window->isModal();) {
        QWidget *parent = window->parentWidget();
        window->close();
        window = parent == nullptr ? nullptr : parent->window();
    }
}

void addKeysOfDialog(QDialog &dialog, MyFrame &frame) {
    addKey(dialog, QStringLiteral("Ctrl+W"), [&dialog] { dialog.close(); });
    addKey(dialog, QStringLiteral("Ctrl+Q"), [&dialog, &frame] {
        closeModalWindows(&dialog);
        closeMainWindow(frame);
    });
    addKey(dialog, QKeySequence::HelpContents, [&frame] { frame.OnHelp(); });
}

// Gives every modal dialog its keys when it is first shown, whoever asks for it: keys of other windows do not
// reach it.
class DialogKeys : public QObject {
public:
    explicit DialogKeys(MyFrame &frame) : QObject(&frame), frame_(frame) {}

    bool eventFilter(QObject *watched, QEvent *event) override {
        constexpr const char *hasKeys = "hasKeysOfDialog";
        if (event->type() != QEvent::Show) {
            return false;
        }
        auto *dialog = qobject_cast<QDialog *>(watched);
        if (dialog != nullptr && dialog->isModal() && !dialog->property(hasKeys).toBool()) {
            dialog->setProperty(hasKeys, true);
            addKeysOfDialog(*dialog, frame_);
        }
        return false;
    }

private:
    MyFrame &frame_;
};

} // namespace

void addKeysOfFrame(MyFrame &frame, FileItemView &list) {
    addKey(frame, QStringLiteral("Ctrl+O"), [&frame] { frame.OnOpenFile(); });
    addKey(frame, QStringLiteral("Ctrl+E"), [&frame] { frame.OnExportFile(); });
    addKey(frame, QStringLiteral("Ctrl+W"), [&frame] { closeMainWindow(frame); });
    // Of the list alone: elsewhere the key is for texts, and nobody would expect a file to go.
    addKey(list, Qt::Key_Delete, [&frame] { frame.OnCloseFile(); })->setContext(Qt::WidgetShortcut);
    for (QShortcut *key : {addKey(frame, QStringLiteral("Ctrl+Q"), [&frame] { closeMainWindow(frame); }),
                           addKey(frame, QKeySequence::HelpContents, [&frame] { frame.OnHelp(); })}) {
        key->setContext(Qt::ApplicationShortcut);
    }
    qApp->installEventFilter(new DialogKeys(frame));
}

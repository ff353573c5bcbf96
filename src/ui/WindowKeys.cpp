#include "ui/WindowKeys.h"

#include "ui/FileItemView.h"
#include "ui/MyFrame.h"

#include <QDialog>
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
}

void addKeysOfDialog(QDialog &dialog, MyFrame &frame) {
    addKey(dialog, QStringLiteral("Ctrl+W"), [&dialog] { dialog.close(); });
    addKey(dialog, QStringLiteral("Ctrl+Q"), [&dialog, &frame] {
        dialog.close();
        closeMainWindow(frame);
    });
    addKey(dialog, QKeySequence::HelpContents, [&frame] { frame.OnHelp(); });
}

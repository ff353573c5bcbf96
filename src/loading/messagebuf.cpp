#include "loading/messagebuf.h"

#include <QByteArray>
#include <QThread>

messagebuf::messagebuf(QObject *parent) : QObject(parent) {}

void messagebuf::output(const char *line) {
    if (QThread::currentThread() == thread()) {
        Q_EMIT Message(line);
        return;
    }
    // A queued connection would keep the pointer only, so the text itself is carried to the receivers'
    // thread.
    QMetaObject::invokeMethod(
        this, [this, text = QByteArray(line)] { Q_EMIT Message(text.constData()); }, Qt::QueuedConnection);
}

#pragma once

#include "loading/debugbuf.h"

#include <QObject>

// Turns every line written to a stream into a signal, so that the interface can show it.
class messagebuf : public QObject, public debugbuf {
    Q_OBJECT

public:
    explicit messagebuf(QObject *parent = nullptr);

Q_SIGNALS:
    // `line` is valid during the call only: receivers must be connected directly and copy it.
    void Message(const char *line);

protected:
    void output(const char *line) override;
};

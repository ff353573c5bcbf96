#pragma once

#include <QString>
#include <QtGlobal>

#include <string>

// Takes the lines that Qt and the libraries above it print by its means while it lives. One at a time.
class CapturedQtMessages {
public:
    CapturedQtMessages() : before_(qInstallMessageHandler(take)) { lines().clear(); }
    ~CapturedQtMessages() { qInstallMessageHandler(before_); }
    CapturedQtMessages(const CapturedQtMessages &) = delete;
    CapturedQtMessages &operator=(const CapturedQtMessages &) = delete;

    std::string text() const { return lines(); }

private:
    static std::string &lines() {
        static std::string kept;
        return kept;
    }
    static void take(QtMsgType, const QMessageLogContext &, const QString &line) {
        lines() += line.toStdString() + '\n';
    }

    QtMessageHandler before_;
};

#pragma once

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <functional>

// Lets `act` work the next modal dialog of the test once it is shown; the timer lives as long as `context`.
inline void onNextDialog(QObject *context, const std::function<void(QDialog *)> &act) {
    auto *timer = new QTimer(context);
    QObject::connect(timer, &QTimer::timeout, context, [timer, act] {
        if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
            timer->stop();
            timer->deleteLater();
            act(dialog);
        }
    });
    timer->start(0);
}

#pragma once

#include <QWidget>

class QLabel;

// The page shown until files are added: what the program is, and a way to open files.
class AboutWidget : public QWidget {
    Q_OBJECT

public:
    explicit AboutWidget(QWidget *parent = nullptr);

Q_SIGNALS:
    // The page was clicked, or Return or Space pressed on it.
    void OpenFile();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QLabel *label_;
};

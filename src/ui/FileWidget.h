#pragma once

#include <QTabWidget>

class QDataSet;
class QTextEdit;

// The tabs about all loaded files: how loading goes, their variables, and messages. `dataSet` must outlive
// it.
class FileWidget : public QTabWidget {
    Q_OBJECT

public:
    explicit FileWidget(QWidget *parent, QDataSet *dataSet);

public Q_SLOTS:
    // Adds the UTF-8 text to the messages as a paragraph; an empty one for a null pointer.
    void OnMessage(const char *text);
    void OnDataSetMessage(const QString &fileName, const QString &text);

private:
    void appendMessage(const QString &text);
    void keepNewestMessageInView();

    QTextEdit *messages_;
    bool isReadingEarlierMessages_ = false; // scrolled up: new messages must not move the text away
};

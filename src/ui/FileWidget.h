#pragma once

#include <QTabWidget>

class QDataSet;
class QTextEdit;

// The tabs about all loaded files: how loading goes, their variables, and messages. `dataSet` must outlive
// it.
//
// While there are messages that came when their tab was not shown, the tab has a warning sign. The newest
// messages are kept, within both bounds; a longer one is cut.
class FileWidget : public QTabWidget {
    Q_OBJECT

public:
    static constexpr int mostMessages = 20'000;
    static constexpr int mostCharacters = 2'000'000; // of all messages
    static constexpr int longestMessage = 12'000; // characters: an unbroken text takes time with its square

    explicit FileWidget(QWidget *parent, QDataSet *dataSet);

public Q_SLOTS:
    // Adds the UTF-8 text to the messages as a paragraph; an empty one for a null pointer.
    void OnMessage(const char *text);
    void OnDataSetMessage(const QString &fileName, const QString &text);

private:
    void appendMessage(const QString &text);
    void dropOldestMessages();
    void markUnseenMessages();
    void forgetMark();
    void keepNewestMessageInView();

    QTextEdit *messages_;
    bool isReadingEarlierMessages_ = false; // scrolled up: new messages must not move the text away
};

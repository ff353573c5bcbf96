#include "ui/FileWidget.h"

#include "loading/QDataSet.h"
#include "ui/FileLoadProgressWidget.h"
#include "ui/SummaryWidget.h"

#include <QScrollBar>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>

FileWidget::FileWidget(QWidget *parent, QDataSet *dataSet) : QTabWidget(parent), messages_(new QTextEdit) {
    auto *progress = new FileLoadProgressWidget;
    messages_->setReadOnly(true);
    messages_->setUndoRedoEnabled(false);
    // With a cursor, which the keyboard and a screen reader can move over the lines.
    messages_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    messages_->setPlaceholderText(tr("What is wrong with a file or an export shows here"));
    messages_->setAccessibleName(tr("Messages"));
    messages_->setAccessibleDescription(tr("What was wrong with files and exports, the newest last"));
    keepNewestMessageInView();

    addTab(progress, tr("Progress"));
    addTab(new SummaryWidget(nullptr, dataSet), tr("Variables"));
    addTab(messages_, tr("Messages"));

    setAccessibleName(tr("All files"));
    setAccessibleDescription(tr("Pages about all files together; the arrow keys change the page"));

    connect(dataSet, SIGNAL(Message(QString, QString)), SLOT(OnDataSetMessage(QString, QString)));
    connect(dataSet, SIGNAL(Progress(QString, int, qint64)), progress,
            SLOT(OnProgress(QString, int, qint64)));
}

void FileWidget::OnMessage(const char *text) {
    appendMessage(QString::fromUtf8(text));
}

void FileWidget::OnDataSetMessage(const QString &fileName, const QString &text) {
    appendMessage(fileName + QStringLiteral(": ") + text);
}

// Not QTextEdit::append, which would take a message that quotes "<b>" out of a file for rich text.
void FileWidget::appendMessage(const QString &text) {
    QTextCursor end(messages_->document());
    end.movePosition(QTextCursor::End);
    if (!messages_->document()->isEmpty()) {
        end.insertBlock();
    }
    end.insertText(text);
}

// By the range, as it changes also when the tab is first shown or the window resized.
void FileWidget::keepNewestMessageInView() {
    QScrollBar *bar = messages_->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this,
            [this, bar](int value) { isReadingEarlierMessages_ = value < bar->maximum(); });
    connect(bar, &QScrollBar::rangeChanged, this, [this, bar](int, int maximum) {
        if (!isReadingEarlierMessages_) {
            bar->setValue(maximum);
        }
    });
}

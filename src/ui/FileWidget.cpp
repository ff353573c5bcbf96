#include "ui/FileWidget.h"

#include "loading/QDataSet.h"
#include "ui/FileLoadProgressWidget.h"
#include "ui/SummaryWidget.h"

#include <QScrollBar>
#include <QStyle>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>

FileWidget::FileWidget(QWidget *parent, QDataSet *dataSet) : QTabWidget(parent), messages_(new QTextEdit) {
    auto *progress = new FileLoadProgressWidget;
    messages_->setReadOnly(true);
    messages_->setUndoRedoEnabled(false);
    messages_->document()->setMaximumBlockCount(mostMessages);
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

    connect(this, &QTabWidget::currentChanged, this, &FileWidget::forgetMark);
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
    end.insertText(text.size() <= longestMessage ? text : text.left(longestMessage) + QStringLiteral("…"));
    dropOldestMessages();
    markUnseenMessages();
}

void FileWidget::dropOldestMessages() {
    const QTextDocument *document = messages_->document();
    const int excess = document->characterCount() - mostCharacters;
    if (excess <= 0) {
        return;
    }
    QTextCursor oldest(messages_->document());
    oldest.setPosition(excess, QTextCursor::KeepAnchor);
    oldest.movePosition(QTextCursor::NextBlock, QTextCursor::KeepAnchor);
    oldest.removeSelectedText();
}

void FileWidget::markUnseenMessages() {
    const int tab = indexOf(messages_);
    if (tab == currentIndex() || !tabIcon(tab).isNull()) {
        return;
    }
    setTabIcon(tab, style()->standardIcon(QStyle::SP_MessageBoxWarning));
    setTabToolTip(tab, tr("There are new messages"));
}

void FileWidget::forgetMark() {
    const int tab = indexOf(messages_);
    if (tab == currentIndex()) {
        setTabIcon(tab, {});
        setTabToolTip(tab, {});
    }
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

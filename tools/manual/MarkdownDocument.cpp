#include "MarkdownDocument.h"

#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>

namespace {

// Words that stand behind the code's opening mark.
QString languageOf(const QTextBlock &block) {
    return block.blockFormat().stringProperty(QTextFormat::BlockCodeLanguage);
}

void removeEmptyEndsOfCode(QTextDocument &document) {
    for (QTextBlock block = document.lastBlock(); block.isValid(); block = block.previous()) {
        if (isCode(block) && block.text().isEmpty() && isFollowedByItsCode(block.previous()) &&
            !isFollowedByItsCode(block)) {
            QTextCursor cursor(block);
            cursor.deletePreviousChar();
            block = cursor.block();
        }
    }
}

void removeEmptyBeginsOfTables(QTextDocument &document) {
    for (QTextFrame *frame : document.rootFrame()->childFrames()) {
        auto *table = qobject_cast<QTextTable *>(frame);
        if (table == nullptr) {
            continue;
        }
        const QTextTableCell cell = table->cellAt(0, 0);
        QTextCursor cursor = cell.firstCursorPosition();
        if (cursor.block().text().isEmpty() && cell.lastCursorPosition() != cursor) {
            cursor.deleteChar();
        }
    }
}

} // namespace

void readMarkdown(QTextDocument &document, const QString &markdown) {
    document.setMarkdown(markdown, QTextDocument::MarkdownDialectGitHub);
    removeEmptyEndsOfCode(document);
    removeEmptyBeginsOfTables(document);
}

// A table behind code has the code's property, too.
bool isCode(const QTextBlock &block) {
    return block.isValid() && block.blockFormat().hasProperty(QTextFormat::BlockCodeFence) &&
           QTextCursor(block).currentTable() == nullptr;
}

bool isFollowedByItsCode(const QTextBlock &block) {
    return isCode(block) && isCode(block.next()) && languageOf(block) == languageOf(block.next());
}

bool isPicture(const QTextBlock &block) {
    return block.text() == QString(QChar::ObjectReplacementCharacter);
}

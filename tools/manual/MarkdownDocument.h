#pragma once

#include <QString>
#include <QTextBlock>

class QTextDocument;

// Reading Markdown into a document, and telling what its blocks are.

// Without the empty lines that Qt's reader leaves behind code, and in the first cell of a table there.
void readMarkdown(QTextDocument &document, const QString &markdown);

bool isCode(const QTextBlock &block);
// A line of code that another one of the same listing follows.
bool isFollowedByItsCode(const QTextBlock &block);
bool isPicture(const QTextBlock &block);

#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// The manual's Markdown: one file a chapter, in the order in which they are given.
class ManualSource {
public:
    struct Heading {
        int level = 0;
        QString text;
        QString address; // as links name it: "03-files.md" for a chapter, "03-files.md#folders" for a section
    };

    // Throws std::runtime_error when a file cannot be read.
    explicit ManualSource(const QStringList &chapterFiles);

    // All chapters, one behind the other. A picture on a line of its own has its text below it as a caption.
    const QString &markdown() const { return markdown_; }
    // In the order of the text; those of every level.
    const QVector<Heading> &headings() const { return headings_; }

private:
    void addLine(const QString &fileName, const QString &line);

    QString markdown_;
    QVector<Heading> headings_;
    bool isInCode_ = false;
};

// What a heading is called in links: lower case, words joined by hyphens, without other marks.
QString anchorOf(const QString &heading);

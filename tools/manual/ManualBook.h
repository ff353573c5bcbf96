#pragma once

#include <QString>
#include <QStringList>

// What the manual is made of.
struct ManualBook {
    QString title;
    QString subtitle;
    QString version;
    QString titlePicture; // path; may be empty
    QStringList chapterFiles;
};

// The manual as PDF: title page, contents, chapters with numbered pages. Throws std::runtime_error when a
// chapter, a picture or a font is missing, or when a link leads nowhere.
QByteArray makePdf(const ManualBook &book);

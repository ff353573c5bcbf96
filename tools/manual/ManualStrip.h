#pragma once

#include "ManualSource.h"
#include "Pagination.h"

#include <QHash>
#include <QTextDocument>

#include <memory>

class QPagedPaintDevice;
class QPainter;

// The chapters laid out on one long strip, and where it is cut into pages.
//
// Links to chapters and sections, which paper cannot follow, tell the page.
class ManualStrip {
public:
    // `firstPage` is the number of the first page of chapters. Throws std::runtime_error when a picture is
    // missing, a link leads nowhere or a line of code is too long.
    ManualStrip(const ManualSource &source, const QString &pictureFolder, QPagedPaintDevice &paper,
                int firstPage);
    ~ManualStrip();

    int pageCount() const { return static_cast<int>(pages_.size()); }
    // Of each heading of the source.
    const QVector<int> &pagesOfHeadings() const { return pagesOfHeadings_; }

    // The page's text, its upper left corner at the origin. Counted from 0.
    void draw(QPainter &painter, int page) const;

private:
    void layOut(const ManualSource &source, const QString &pictureFolder, QPagedPaintDevice &paper);
    void keepOptionsWhole();
    void requireRoomForCode() const;
    void tellPages(const ManualSource &source);
    void cut();
    QVector<int> findHeadings(int firstPage) const;

    std::unique_ptr<QTextDocument> document_;
    std::vector<StripPage> pages_;
    QVector<int> pagesOfHeadings_;
};

#include "ManualStrip.h"

#include "ManualLook.h"
#include "MarkdownDocument.h"
#include "StripParts.h"

#include <QAbstractTextDocumentLayout>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextLayout>
#include <QTextOption>
#include <QUrl>

#include <algorithm>
#include <stdexcept>

namespace {

constexpr double endless = 1e9; // dots

struct Link {
    int end;
    QString address;
};

QVector<Link> linksOf(const QTextDocument &document) {
    QVector<Link> links;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto at = block.begin(); !at.atEnd(); ++at) {
            const QTextFragment fragment = at.fragment();
            const QString address = fragment.charFormat().anchorHref();
            const int end = fragment.position() + fragment.length();
            if (address.isEmpty()) {
                continue;
            }
            // A link whose text is partly code has several fragments.
            if (!links.isEmpty() && links.back().end == fragment.position()) {
                links.back().end = end;
            } else {
                links.append({end, address});
            }
        }
    }
    return links;
}

int indexOf(const ManualSource &source, const QString &address) {
    const auto &headings = source.headings();
    const auto *const found = std::find_if(headings.begin(), headings.end(),
                                           [&](const auto &heading) { return heading.address == address; });
    if (found == headings.end()) {
        throw std::runtime_error(address.toStdString() + ": The link leads nowhere");
    }
    return static_cast<int>(found - headings.begin());
}

// Of the word of code that a line, which begins at `lineBegin`, tears behind a hyphen; -1 when it does not.
int tornWordBegin(const QTextBlock &block, int lineBegin) {
    const QString text = block.text();
    QTextCursor cursor(block);
    cursor.setPosition(block.position() + lineBegin); // its format is that of the letter in front
    const bool isTorn = lineBegin > 0 && text.at(lineBegin - 1) == QLatin1Char('-') && !isCode(block) &&
                        ManualLook::isCodeFormat(cursor.charFormat());
    int begin = lineBegin;
    while (isTorn && begin > 0 && !text.at(begin - 1).isSpace()) {
        --begin;
    }
    return isTorn ? begin : -1;
}

} // namespace

ManualStrip::ManualStrip(const ManualSource &source, const QString &pictureFolder, QPagedPaintDevice &paper,
                         int firstPage)
    : pagesOfHeadings_(source.headings().size(), 0) {
    // The number of a page may have a digit more than the one before, and so move what follows.
    constexpr int mostRounds = 5;
    for (int round = 0; round < mostRounds; ++round) {
        layOut(source, pictureFolder, paper);
        cut();
        const QVector<int> found = findHeadings(firstPage);
        if (found == pagesOfHeadings_) {
            return;
        }
        pagesOfHeadings_ = found;
    }
    throw std::runtime_error("The pages of the manual do not settle");
}

ManualStrip::~ManualStrip() = default;

void ManualStrip::layOut(const ManualSource &source, const QString &pictureFolder, QPagedPaintDevice &paper) {
    document_ = std::make_unique<QTextDocument>();
    document_->documentLayout()->setPaintDevice(&paper);
    document_->setDocumentMargin(0);
    document_->setDefaultFont(ManualLook::textFont());
    QTextOption tabs;
    tabs.setTabStopDistance(ManualLook::tabDistance());
    document_->setDefaultTextOption(tabs);
    document_->setIndentWidth(6 * ManualLook::pixelsPerMillimetre);
    document_->setBaseUrl(QUrl::fromLocalFile(pictureFolder + QLatin1Char('/')));
    readMarkdown(*document_, source.markdown());
    tellPages(source);
    ManualLook::apply(*document_);
    document_->setPageSize(QSizeF(ManualLook::textWidth, endless));
    document_->documentLayout()->documentSize(); // lays out
    keepOptionsWhole();
    requireRoomForCode();
}

// A line must not end behind a hyphen of an option or a file's name.
void ManualStrip::keepOptionsWhole() {
    for (QTextBlock block = document_->begin(); block.isValid(); block = block.next()) {
        for (int i = 1; i < block.layout()->lineCount(); ++i) {
            const int begin = tornWordBegin(block, block.layout()->lineAt(i).textStart());
            if (begin > block.layout()->lineAt(i - 1).textStart()) {
                QTextCursor cursor(block);
                cursor.setPosition(block.position() + begin);
                cursor.insertText(QString(QChar::LineSeparator));
                document_->documentLayout()->documentSize();
            }
        }
    }
}

void ManualStrip::requireRoomForCode() const {
    for (QTextBlock block = document_->begin(); block.isValid(); block = block.next()) {
        const double left = block.blockFormat().leftMargin() * ManualLook::dotsPerPixel;
        if (isCode(block) && left + block.layout()->lineAt(0).naturalTextWidth() > ManualLook::textWidth) {
            throw std::runtime_error(block.text().toStdString() +
                                     ": The line of code is too long for the paper");
        }
    }
}

void ManualStrip::tellPages(const ManualSource &source) {
    QVector<Link> links = linksOf(*document_);
    std::reverse(links.begin(), links.end()); // so that positions in front stay as they are
    for (const Link &link : links) {
        if (link.address.contains(QLatin1String("://"))) {
            continue;
        }
        const int page = pagesOfHeadings_[indexOf(source, link.address)];
        QTextCursor cursor(document_.get());
        cursor.setPosition(link.end);
        cursor.insertText(QStringLiteral(" (page %1)").arg(page), QTextCharFormat());
    }
}

void ManualStrip::cut() {
    pages_ = paginate(partsOf(*document_), ManualLook::textHeight);
}

QVector<int> ManualStrip::findHeadings(int firstPage) const {
    QVector<int> found;
    for (QTextBlock block = document_->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 0) {
            continue;
        }
        const double top = document_->documentLayout()->blockBoundingRect(block).top();
        const auto page = std::find_if(pages_.begin(), pages_.end(),
                                       [top](const StripPage &ranges) { return top < ranges.back().bottom; });
        found.append(firstPage + static_cast<int>(page - pages_.begin()));
    }
    return found;
}

void ManualStrip::draw(QPainter &painter, int page) const {
    double y = 0;
    for (const StripRange &range : pages_.at(static_cast<std::size_t>(page))) {
        QAbstractTextDocumentLayout::PaintContext context;
        context.palette.setColor(QPalette::Text, Qt::black);
        context.clip = QRectF(0, range.top, ManualLook::textWidth, range.bottom - range.top);
        painter.save();
        painter.translate(0, y - range.top);
        painter.setClipRect(context.clip);
        document_->documentLayout()->draw(&painter, context);
        painter.restore();
        y += range.bottom - range.top;
    }
}

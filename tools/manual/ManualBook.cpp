#include "ManualBook.h"

#include "ManualLook.h"
#include "ManualSource.h"
#include "ManualStrip.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>
#include <stdexcept>

namespace {

using ManualLook::dotsPerMillimetre;

constexpr int titleAndContents = 2; // pages

void setUp(QPdfWriter &pdf, const ManualBook &book) {
    pdf.setTitle(book.title + QStringLiteral(" ") + book.version + QStringLiteral(": ") + book.subtitle);
    pdf.setCreator(book.title + QStringLiteral(" ") + book.version);
    pdf.setResolution(ManualLook::dotsPerInch);
    pdf.setPageSize(QPageSize(QPageSize::A4));
    pdf.setPageMargins(QMarginsF());
}

class Binder {
public:
    Binder(const ManualBook &book, QPdfWriter &pdf)
        : book_(book),
          source_(book.chapterFiles),
          strip_(source_, QFileInfo(book.chapterFiles.front()).absolutePath(), pdf, titleAndContents + 1),
          pdf_(pdf),
          painter_(&pdf) {
        // Screenshots must not be blurred.
        painter_.setRenderHint(QPainter::LosslessImageRendering);
    }

    void run() {
        drawTitlePage();
        pdf_.newPage();
        drawContents();
        for (int page = 0; page < strip_.pageCount(); ++page) {
            pdf_.newPage();
            painter_.save();
            painter_.translate(ManualLook::sideMargin, ManualLook::topMargin);
            strip_.draw(painter_, page);
            painter_.restore();
            drawFooter(page + titleAndContents + 1);
        }
    }

private:
    void write(const QRectF &rect, int flags, const QString &text, double points, const QColor &colour,
               bool isBold = false) {
        QFont font(ManualLook::textFont(points), &pdf_);
        font.setBold(isBold);
        painter_.setFont(font);
        painter_.setPen(colour);
        painter_.drawText(rect, flags, text);
    }

    static QRectF line(double top, double height) {
        return {ManualLook::sideMargin, top * dotsPerMillimetre, ManualLook::textWidth,
                height * dotsPerMillimetre};
    }

    void drawTitlePage() {
        write(line(52, 20), Qt::AlignLeft, book_.title, 40, ManualLook::accent, true);
        write(line(76, 12), Qt::AlignLeft, book_.subtitle, 15, Qt::black);
        write(line(88, 10), Qt::AlignLeft, QStringLiteral("Manual"), 15, Qt::black);
        write(line(262, 8), Qt::AlignLeft, QStringLiteral("Version ") + book_.version, 10.5,
              ManualLook::quiet);
        if (book_.titlePicture.isEmpty()) {
            return;
        }
        const QImage picture(book_.titlePicture);
        if (picture.isNull()) {
            throw std::runtime_error(book_.titlePicture.toStdString() + ": There is no such picture");
        }
        const double height = ManualLook::textWidth * picture.height() / picture.width();
        const QRectF rect(ManualLook::sideMargin, 120 * dotsPerMillimetre, ManualLook::textWidth, height);
        painter_.drawImage(rect, picture);
    }

    // Chapters and sections in two columns; a chapter is not torn.
    void drawContents() {
        write(line(22, 14), Qt::AlignLeft, QStringLiteral("Contents"), 18, ManualLook::accent, true);
        const auto &headings = source_.headings();
        double half = 0;
        for (const auto &heading : headings) {
            half += heightOf(heading.level) / 2;
        }
        constexpr double top = 34; // mm
        constexpr double bottom = 272;
        double y = 0;
        bool isRight = false;
        for (int i = 0; i < headings.size(); ++i) {
            if (headings[i].level == 1 && !isRight && y > half * 0.9) {
                isRight = true;
                y = 0;
            }
            y += heightOf(headings[i].level);
            if (top + y > bottom) {
                throw std::runtime_error("The contents need more than a page");
            }
            if (headings[i].level <= 2) {
                drawEntry(top + y, isRight, headings[i], strip_.pagesOfHeadings()[i]);
            }
        }
    }

    static double heightOf(int level) { return level == 1 ? 9.5 : level == 2 ? 5.2 : 0; }

    void drawEntry(double baseline, bool isRight, const ManualSource::Heading &heading, int page) {
        constexpr double gap = 10 * dotsPerMillimetre;
        const bool isChapter = heading.level == 1;
        const double width = (ManualLook::textWidth - gap) / 2;
        QRectF rect = line(baseline - 5, 5);
        rect.setWidth(width);
        rect.translate(isRight ? width + gap : 0, 0);
        rect.setLeft(rect.left() + (isChapter ? 0 : 4 * dotsPerMillimetre));
        const double points = isChapter ? 10 : 8.5;
        const QColor colour = isChapter ? ManualLook::accent : QColor(Qt::black);
        QString text = heading.text;
        write(rect, Qt::AlignBottom | Qt::AlignLeft, text.remove(QLatin1Char('`')), points, colour,
              isChapter);
        const double begin = rect.left() + painter_.fontMetrics().horizontalAdvance(text);
        write(rect, Qt::AlignBottom | Qt::AlignRight, QString::number(page), points, colour, isChapter);
        painter_.setPen(QPen(ManualLook::quiet, 0.2 * dotsPerMillimetre, Qt::DotLine));
        const double y = rect.bottom() - 1.2 * dotsPerMillimetre;
        const double end = rect.right() - 6 * dotsPerMillimetre;
        if (const double from = begin + 2 * dotsPerMillimetre; from < end) {
            painter_.drawLine(QPointF(from, y), QPointF(end, y));
        }
    }

    void drawFooter(int page) {
        const QRectF footer = line(282, 6);
        write(footer, Qt::AlignLeft, book_.title + QLatin1Char(' ') + book_.version, 8, ManualLook::quiet);
        write(footer, Qt::AlignRight, QString::number(page), 8, ManualLook::quiet);
    }

    const ManualBook &book_;
    ManualSource source_;
    ManualStrip strip_;
    QPdfWriter &pdf_;
    QPainter painter_;
};

} // namespace

QByteArray makePdf(const ManualBook &book) {
    ManualLook::requireFonts();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter pdf(&buffer);
    setUp(pdf, book);
    Binder(book, pdf).run();
    return bytes;
}

#include "ManualLook.h"

#include "MarkdownDocument.h"

#include <QAbstractTextDocumentLayout>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace {

using ManualLook::pixelsPerMillimetre;

constexpr char textFamily[] = "DejaVu Sans";
constexpr char codeFamily[] = "DejaVu Sans Mono";
constexpr double codePoints = 8;
constexpr double tablePoints = 8.3;
constexpr double captionPoints = 8.5;

struct HeadingLook {
    double points;
    double above; // mm
    double below;
};
constexpr std::array<HeadingLook, 3> headingLooks{{{18, 10, 3.5}, {12.5, 5.5, 2}, {10.5, 4, 1.5}}};

QTextBlockFormat margins(double above, double below) {
    QTextBlockFormat format;
    format.setTopMargin(above * pixelsPerMillimetre);
    format.setBottomMargin(below * pixelsPerMillimetre);
    return format;
}

// Pictures are screenshots: all at the same scale, so that their texts are equally large.
void setPictureSize(QTextDocument &document, const QTextBlock &block) {
    constexpr double scale = 0.142 * pixelsPerMillimetre;
    const QTextFragment fragment = block.begin().fragment();
    QTextImageFormat format = fragment.charFormat().toImageFormat();
    const QImage image(document.baseUrl().resolved(QUrl(format.name())).toLocalFile());
    if (image.isNull()) {
        throw std::runtime_error(format.name().toStdString() + ": There is no such picture");
    }
    const double width = std::min(image.width() * scale, ManualLook::textWidth / ManualLook::dotsPerPixel);
    format.setWidth(width);
    format.setHeight(width * image.height() / image.width());
    QTextCursor cursor(&document);
    cursor.setPosition(fragment.position());
    cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
    cursor.setCharFormat(format);
}

bool isLastOfList(const QTextBlock &block) {
    return QTextCursor(block.next()).currentList() == nullptr;
}

class Styler {
public:
    explicit Styler(QTextDocument &document) : document_(document) {}

    void run() {
        QTextCursor all(&document_);
        all.beginEditBlock(); // laid out once, at the end
        for (QTextBlock block = document_.begin(); block.isValid(); block = block.next()) {
            styleText(block);
            styleBlock(block);
        }
        for (QTextFrame *frame : document_.rootFrame()->childFrames()) {
            if (auto *table = qobject_cast<QTextTable *>(frame)) {
                styleTable(*table);
            }
        }
        all.endEditBlock();
    }

private:
    static double pointsOf(const QTextBlock &block) {
        if (const int level = block.blockFormat().headingLevel(); level > 0) {
            return headingLooks.at(static_cast<std::size_t>(std::min(level, 3)) - 1).points;
        }
        if (isCode(block)) {
            return codePoints;
        }
        if (isPicture(block.previous())) {
            return captionPoints;
        }
        return QTextCursor(block).currentTable() != nullptr ? tablePoints
                                                            : ManualLook::textFont().pointSizeF();
    }

    void styleText(const QTextBlock &block) {
        const double points = pointsOf(block);
        struct Piece {
            int begin;
            int end;
            QTextCharFormat format;
        };
        std::vector<Piece> pieces;
        for (auto at = block.begin(); !at.atEnd(); ++at) {
            const QTextFragment fragment = at.fragment();
            pieces.push_back(
                {fragment.position(), fragment.position() + fragment.length(), fragment.charFormat()});
        }
        for (Piece &piece : pieces) {
            if (piece.format.isImageFormat()) {
                continue;
            }
            styleLetters(piece.format, block, points);
            QTextCursor cursor(&document_);
            cursor.setPosition(piece.begin);
            cursor.setPosition(piece.end, QTextCursor::KeepAnchor);
            cursor.setCharFormat(piece.format);
        }
    }

    static void styleLetters(QTextCharFormat &format, const QTextBlock &block, double points) {
        // The reader of Markdown names a family for code alone.
        const bool isCodeText = isCode(block) || format.hasProperty(QTextFormat::FontFamily);
        format.clearProperty(QTextFormat::FontSizeAdjustment);
        format.setFontFamily(QString::fromLatin1(isCodeText ? codeFamily : textFamily));
        format.setFontPointSize(isCodeText && points > codePoints ? points * 0.93 : points);
        format.setForeground(Qt::black);
        format.setFontUnderline(false);
        if (block.blockFormat().headingLevel() > 0) {
            format.setForeground(ManualLook::accent);
        } else if (isPicture(block.previous())) {
            format.setForeground(ManualLook::quiet);
        }
    }

    void styleBlock(const QTextBlock &block) {
        QTextBlockFormat format = margins(0, 2.2);
        QTextCursor cursor(block);
        if (const int level = block.blockFormat().headingLevel(); level > 0) {
            const HeadingLook &look = headingLooks.at(static_cast<std::size_t>(std::min(level, 3)) - 1);
            format = margins(look.above, look.below);
        } else if (isCode(block)) {
            format = margins(0, isFollowedByItsCode(block) ? 0 : 3);
            // What the programs print is told from what is typed.
            const bool isOutput =
                block.blockFormat().stringProperty(QTextFormat::BlockCodeLanguage) == QLatin1String("text");
            format.setBackground(isOutput ? QColor(247, 247, 247) : QColor(232, 238, 246));
            format.setLeftMargin(4 * pixelsPerMillimetre);
            format.setNonBreakableLines(true);
        } else if (cursor.currentTable() != nullptr) {
            format = margins(0, 0);
            format.setLeftMargin(0);
        } else if (isPicture(block)) {
            setPictureSize(document_, block);
            format = margins(1.5, 1);
        } else if (isPicture(block.previous())) {
            format = margins(0, 4);
        } else if (cursor.currentList() != nullptr) {
            format = margins(0, isLastOfList(block) ? 2.2 : 1.2);
        }
        if (!isCode(block)) {
            format.setLineHeight(115, QTextBlockFormat::ProportionalHeight);
        }
        if (isPicture(block)) {
            format.setLineHeight(100, QTextBlockFormat::SingleHeight);
        } else if (block.text().isEmpty() && !isCode(block)) {
            // Stands behind a table and shows nothing.
            format = margins(0, 0);
            format.setLineHeight(1, QTextBlockFormat::FixedHeight);
        }
        cursor.mergeBlockFormat(format);
    }

    // What a column needs for its longest text on one line, in dots.
    static double neededWidth(const QTextTable &table, int column, const QFontMetricsF &metrics) {
        double needed = 0;
        for (int row = 0; row < table.rows(); ++row) {
            QTextCursor text = table.cellAt(row, column).firstCursorPosition();
            text.setPosition(table.cellAt(row, column).lastPosition(), QTextCursor::KeepAnchor);
            needed = std::max(needed, metrics.horizontalAdvance(text.selectedText()));
        }
        return needed;
    }

    // The columns in front are as wide as they need to be, within reason; the last one has the rest.
    QVector<QTextLength> columnWidths(const QTextTable &table) const {
        // Letters of code are the widest.
        QFont font(QString::fromLatin1(codeFamily));
        font.setPointSizeF(tablePoints);
        const QFontMetricsF metrics(font, document_.documentLayout()->paintDevice());
        constexpr double most = 42; // percent
        constexpr double padding = 5;
        QVector<QTextLength> widths;
        double rest = 100;
        for (int column = 0; column + 1 < table.columns(); ++column) {
            const double needed = neededWidth(table, column, metrics) * 100 / ManualLook::textWidth + padding;
            const double width = std::min(needed, most / std::max(1, table.columns() - 2));
            widths.append(QTextLength(QTextLength::PercentageLength, width));
            rest -= width;
        }
        widths.append(QTextLength(QTextLength::PercentageLength, rest));
        return widths;
    }

    void styleTable(QTextTable &table) const {
        QTextTableFormat format = table.format();
        format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
        format.setColumnWidthConstraints(columnWidths(table));
        format.setBorder(1);
        format.setBorderCollapse(true);
        format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        format.setBorderBrush(QColor(196, 203, 213));
        format.setCellPadding(0.7 * pixelsPerMillimetre);
        format.setCellSpacing(0);
        // A margin below code does not reach a table.
        const bool isBehindCode = isCode(document_.findBlock(table.firstPosition() - 1));
        format.setTopMargin((isBehindCode ? 3 : 1) * pixelsPerMillimetre);
        format.setBottomMargin(3 * pixelsPerMillimetre);
        table.setFormat(format);
        for (int column = 0; column < table.columns(); ++column) {
            QTextTableCell cell = table.cellAt(0, column);
            QTextCharFormat look = cell.format();
            look.setBackground(QColor(228, 234, 242));
            cell.setFormat(look);
            QTextCursor text = cell.firstCursorPosition();
            text.setPosition(cell.lastPosition(), QTextCursor::KeepAnchor);
            QTextCharFormat bold;
            bold.setFontWeight(QFont::Bold);
            text.mergeCharFormat(bold);
        }
    }

    QTextDocument &document_;
};

} // namespace

void ManualLook::requireFonts() {
    const QStringList families = QFontDatabase().families();
    for (const char *family : {textFamily, codeFamily}) {
        if (!families.contains(QString::fromLatin1(family))) {
            throw std::runtime_error(std::string("The font ") + family +
                                     " is not installed: Debian has it in fonts-dejavu-core");
        }
    }
}

QFont ManualLook::textFont(double points) {
    QFont font(QString::fromLatin1(textFamily));
    font.setPointSizeF(points);
    return font;
}

bool ManualLook::isCodeFormat(const QTextCharFormat &format) {
    return format.fontFamily() == QLatin1String(codeFamily);
}

double ManualLook::tabDistance() {
    constexpr double letterWidth = 0.62; // of its height in the font for code, with what rounding adds
    constexpr double pointsPerInch = 72;
    return 8 * letterWidth * codePoints * pixelsPerInch / pointsPerInch;
}

void ManualLook::apply(QTextDocument &document) {
    Styler(document).run();
}

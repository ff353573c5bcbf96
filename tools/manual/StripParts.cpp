#include "StripParts.h"

#include "ManualLook.h"
#include "MarkdownDocument.h"

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <QTextTable>

#include <algorithm>
#include <cmath>

namespace {

constexpr int linesKeptTogether = 22; // of code
constexpr int rowsKeptTogether = 6;

class Collector {
public:
    explicit Collector(const QTextDocument &document)
        : document_(document), layout_(*document.documentLayout()) {}

    std::vector<StripPart> run() {
        const QTextFrame *root = document_.rootFrame();
        for (auto at = root->begin(); !at.atEnd(); ++at) {
            if (auto *table = qobject_cast<QTextTable *>(at.currentFrame())) {
                addTable(*table);
            } else if (at.currentBlock().isValid() && !isPlaceOfTable(at.currentBlock())) {
                addBlock(at.currentBlock());
            }
        }
        return std::move(parts_);
    }

private:
    // Each table has an empty paragraph behind it.
    static bool isPlaceOfTable(const QTextBlock &block) { return block.text().isEmpty() && !isCode(block); }

    void addBlock(const QTextBlock &block) {
        const QRectF rect = layout_.blockBoundingRect(block);
        const int count = std::max(1, block.layout()->lineCount());
        for (int i = 0; i < count; ++i) {
            StripPart part;
            part.top = i == 0 ? rect.top() : rect.top() + block.layout()->lineAt(i).y();
            part.bottom = i + 1 == count ? rect.bottom() : rect.top() + block.layout()->lineAt(i + 1).y();
            part.keepsWithNext = staysWithNext(block, i, count);
            part.wantedRoom = i == 0 ? wantedRoom(block) : 0;
            parts_.push_back(part);
        }
    }

    static double wantedRoom(const QTextBlock &block) {
        constexpr double chapter = 55; // mm
        constexpr double section = 30;
        const int level = block.blockFormat().headingLevel();
        return (level == 1 ? chapter : level > 1 ? section : 0) * ManualLook::dotsPerMillimetre;
    }

    // Two lines of a paragraph at least stay together; what leads to something stays with it.
    static bool staysWithNext(const QTextBlock &block, int line, int lineCount) {
        if (block.blockFormat().headingLevel() > 0) {
            return true;
        }
        if (isCode(block)) {
            // Also what is typed and what is printed then.
            return isCode(block.next()) && linesOfCode(block) <= linesKeptTogether;
        }
        const bool isLast = line + 1 == lineCount;
        const bool leadsOn = block.text().endsWith(QLatin1Char(':')) || isCode(block.next()) ||
                             QTextCursor(block.next()).currentTable() != nullptr;
        return isPicture(block) || (isLast && leadsOn) || (!isLast && (line == 0 || line + 2 == lineCount));
    }

    static int linesOfCode(QTextBlock block) {
        while (isFollowedByItsCode(block.previous())) {
            block = block.previous();
        }
        int count = 1;
        for (; isFollowedByItsCode(block); block = block.next()) {
            ++count;
        }
        return count;
    }

    void addTable(const QTextTable &table) {
        const QTextTableFormat format = table.format();
        const double border = format.border() * ManualLook::dotsPerPixel;
        const double edge = format.cellPadding() * ManualLook::dotsPerPixel + border;
        const QRectF rect = layout_.frameBoundingRect(const_cast<QTextTable *>(&table));
        const std::size_t header = parts_.size();
        for (int row = 0; row < table.rows(); ++row) {
            StripPart part;
            part.top = topOf(table, row) - edge;
            part.bottom = row + 1 < table.rows()
                              ? topOf(table, row + 1) - edge + border
                              : rect.bottom() - format.bottomMargin() * ManualLook::dotsPerPixel;
            part.keepsWithNext = row == 0 || row + 2 == table.rows() ||
                                 (table.rows() <= rowsKeptTogether && row + 1 < table.rows());
            if (row > 0) {
                part.repeatedHeader = header;
            }
            parts_.push_back(part);
        }
    }

    double topOf(const QTextTable &table, int row) const {
        double top = HUGE_VAL;
        for (int column = 0; column < table.columns(); ++column) {
            const QTextBlock block = table.cellAt(row, column).firstCursorPosition().block();
            top = std::min(top, layout_.blockBoundingRect(block).top());
        }
        return top;
    }

    const QTextDocument &document_;
    QAbstractTextDocumentLayout &layout_;
    std::vector<StripPart> parts_;
};

} // namespace

std::vector<StripPart> partsOf(const QTextDocument &document) {
    return Collector(document).run();
}

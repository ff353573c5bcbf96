#pragma once

#include <QColor>
#include <QFont>

class QTextCharFormat;
class QTextDocument;

// How the manual looks on paper. Lengths are in the paper's dots; those of text formats in pixels, which the
// layout makes dots of.
namespace ManualLook {

constexpr int dotsPerInch = 600;
constexpr double dotsPerMillimetre = dotsPerInch / 25.4;
constexpr int pixelsPerInch = 96;
constexpr double pixelsPerMillimetre = pixelsPerInch / 25.4;
constexpr double dotsPerPixel = double{dotsPerInch} / pixelsPerInch;

constexpr double pageWidth = 210 * dotsPerMillimetre; // A4
constexpr double pageHeight = 297 * dotsPerMillimetre;
constexpr double sideMargin = 23 * dotsPerMillimetre;
constexpr double topMargin = 19 * dotsPerMillimetre;
constexpr double bottomMargin = 22 * dotsPerMillimetre;
constexpr double textWidth = pageWidth - 2 * sideMargin;
constexpr double textHeight = pageHeight - topMargin - bottomMargin;

const QColor accent(24, 62, 112);
const QColor quiet(96, 96, 96);

// Throws std::runtime_error where the fonts are not installed: the text would look anyhow.
void requireFonts();
QFont textFont(double points = 9.3);
// Of code: eight letters, in pixels.
double tabDistance();

// Of a document that has its look.
bool isCodeFormat(const QTextCharFormat &format);

// Sizes, margins and colours of headings, paragraphs, code, tables and pictures.
void apply(QTextDocument &document);

} // namespace ManualLook

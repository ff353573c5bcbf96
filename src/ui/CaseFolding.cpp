#include "ui/CaseFolding.h"

// QString::compare folds each code point by itself ("ß" is not "ss") and compares surrogates unit by unit:
// the high one as it stands, the low one as the folded code point of the pair. QString::toCaseFolded does
// neither.
std::u32string caseFolded(const QString &text) {
    std::u32string folded;
    folded.reserve(static_cast<std::size_t>(text.size()));
    QChar previous;
    for (const QChar unit : text) {
        const bool isPair = unit.isLowSurrogate() && previous.isHighSurrogate();
        const uint codePoint = isPair ? QChar::surrogateToUcs4(previous, unit) : unit.unicode();
        folded.push_back(QChar::toCaseFolded(codePoint));
        previous = unit;
    }
    return folded;
}

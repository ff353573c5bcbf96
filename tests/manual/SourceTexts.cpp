#include "manual/SourceTexts.h"

#include <QRegularExpression>

namespace {

QString unescaped(QString text) {
    return text.replace(QLatin1String("\\\""), QLatin1String("\""))
        .replace(QLatin1String("\\n"), QLatin1String("\n"))
        .replace(QLatin1String("\\t"), QLatin1String("\t"))
        .replace(QLatin1String("\\\\"), QLatin1String("\\"));
}

} // namespace

QStringList textsOf(const QString &source) {
    // What is no text is matched, too, lest its quotation marks be taken for the begin of one.
    static const QRegularExpression piece(
        QStringLiteral("(?<skipped>//[^\\n]*|#include[^\\n]*|'(?:[^'\\\\\\n]|\\\\.)'|R\"\\((?:.|\\n)*?\\)\")"
                       "|\"(?<text>(?:[^\"\\\\]|\\\\.)*)\"|(?<code>[^\\s])"));
    QStringList texts;
    bool goesOn = false;
    for (auto at = piece.globalMatch(source); at.hasNext();) {
        const auto match = at.next();
        if (match.capturedStart(QStringLiteral("text")) >= 0) {
            const QString text = unescaped(match.captured(QStringLiteral("text")));
            if (goesOn) {
                texts.back() += text;
            } else {
                texts += text;
            }
            goesOn = true;
        } else {
            goesOn = goesOn && match.capturedStart(QStringLiteral("skipped")) >= 0;
        }
    }
    return texts;
}

#include "ManualSource.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <stdexcept>

namespace {

QStringList linesOf(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error((path + QStringLiteral(": ") + file.errorString()).toStdString());
    }
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
}

} // namespace

ManualSource::ManualSource(const QStringList &chapterFiles) {
    for (const QString &path : chapterFiles) {
        const QString fileName = QFileInfo(path).fileName();
        for (const QString &line : linesOf(path)) {
            addLine(fileName, line);
        }
        markdown_ += QLatin1Char('\n');
    }
}

void ManualSource::addLine(const QString &fileName, const QString &line) {
    static const QRegularExpression heading(QStringLiteral("^(#+) +(.*)$"));
    static const QRegularExpression picture(QStringLiteral("^!\\[(.*)\\]\\(.*\\)$"));
    markdown_ += line + QLatin1Char('\n');
    if (line.startsWith(QLatin1String("```"))) {
        isInCode_ = !isInCode_;
    }
    if (isInCode_) {
        return;
    }
    if (const auto match = heading.match(line); match.hasMatch()) {
        const int level = match.captured(1).size();
        const QString text = match.captured(2).trimmed();
        const QString anchor = level == 1 ? QString() : QLatin1Char('#') + anchorOf(text);
        headings_.append({level, text, fileName + anchor});
    } else if (const auto caption = picture.match(line); caption.hasMatch()) {
        markdown_ += QStringLiteral("\n*%1*\n").arg(caption.captured(1));
    }
}

QString anchorOf(const QString &heading) {
    QString anchor;
    for (const QChar character : heading.toLower()) {
        if (character.isLetterOrNumber() || character == QLatin1Char('-')) {
            anchor += character;
        } else if (character == QLatin1Char(' ')) {
            anchor += QLatin1Char('-');
        }
    }
    return anchor;
}

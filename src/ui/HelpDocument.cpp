#include "ui/HelpDocument.h"

#include <algorithm>

QString helpDocumentPath(const QString &applicationPath) {
    const int lastSeparator = std::max(applicationPath.lastIndexOf('/'), applicationPath.lastIndexOf('\\'));
    const int lastDot = applicationPath.lastIndexOf('.');
    const QString stem = lastDot > lastSeparator ? applicationPath.left(lastDot) : applicationPath;
    return stem + QStringLiteral(".pdf");
}

#pragma once

#include <QString>

// Path of the help document of the program at `applicationPath`: the same with its extension, if it has one,
// replaced by ".pdf". Both "/" and "\" separate folders.
QString helpDocumentPath(const QString &applicationPath);

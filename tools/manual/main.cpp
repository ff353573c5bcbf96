// Makes the manual: fvqa300-manual VERSION TITLE-PICTURE OUTPUT.pdf CHAPTER.md...
//
// The chapters' folder is the one that their pictures' paths start from. Needs no display.

#include "ManualBook.h"

#include <QGuiApplication>
#include <QSaveFile>

#include <iostream>
#include <stdexcept>

namespace {

void write(const QString &path, const QByteArray &bytes) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        throw std::runtime_error((path + QStringLiteral(": ") + file.errorString()).toStdString());
    }
}

} // namespace

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    constexpr int fewest = 5;
    if (arguments.size() < fewest) {
        std::cerr << "Usage: fvqa300-manual VERSION TITLE-PICTURE OUTPUT.pdf CHAPTER.md...\n";
        return 2;
    }
    try {
        write(arguments[3], makePdf({QStringLiteral("fvqa300"),
                                     QStringLiteral("File Viewer for QA-310, QA-320A, QA-330, and QA-34xx"),
                                     arguments[1], arguments[2], arguments.mid(4)}));
    } catch (const std::exception &error) {
        std::cerr << "fvqa300-manual: " << error.what() << '\n';
        return 1;
    }
    return 0;
}

// Makes the manual: fvqa300-manual VERSION TITLE-PICTURE OUTPUT.pdf CHAPTER.md...
//
// The chapters' folder is the one that their pictures' paths start from. Needs no display.

#include "ManualBook.h"

#include <QDateTime>
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

// Builders of packages tell which time to name, so that the same sources give the same bytes.
QByteArray withDateOfSources(QByteArray pdf) {
    const QByteArray key("/CreationDate (D:");
    bool isNumber = false;
    const qint64 epoch = qgetenv("SOURCE_DATE_EPOCH").toLongLong(&isNumber);
    const int at = pdf.indexOf(key);
    if (isNumber && at >= 0) {
        const QDateTime date = QDateTime::fromSecsSinceEpoch(epoch, Qt::UTC);
        const QByteArray text = date.toString(QStringLiteral("yyyyMMddhhmmss")).toLatin1() + "Z)";
        pdf.replace(at + key.size(), text.size(), text);
    }
    return pdf;
}

// Where a desktop would keep its sockets is of no interest where there is none.
void showQtMessage(QtMsgType, const QMessageLogContext &, const QString &message) {
    if (!message.startsWith(QLatin1String("QStandardPaths: "))) {
        std::cerr << "fvqa300-manual: " << message.toStdString() << '\n';
    }
}

} // namespace

int main(int argc, char **argv) {
    qInstallMessageHandler(showQtMessage);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_HASH_SEED", "0"); // else the objects of the PDF have another order each time
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    constexpr int fewest = 5;
    if (arguments.size() < fewest) {
        std::cerr << "Usage: fvqa300-manual VERSION TITLE-PICTURE OUTPUT.pdf CHAPTER.md...\n";
        return 2;
    }
    try {
        const ManualBook book{QStringLiteral("fvqa300"),
                              QStringLiteral("File Viewer for QA-310, QA-320A, QA-330, and QA-34xx"),
                              arguments[1], arguments[2], arguments.mid(4)};
        write(arguments[3], withDateOfSources(makePdf(book)));
    } catch (const std::exception &error) {
        std::cerr << "fvqa300-manual: " << error.what() << '\n';
        return 1;
    }
    return 0;
}

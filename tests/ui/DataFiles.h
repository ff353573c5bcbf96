#pragma once

#include <QFile>
#include <QTemporaryDir>

#include <stdexcept>

// A folder of data files for one test.
class DataFiles {
public:
    // Writes the file and returns its path.
    QString write(const QString &name, const QByteArray &content) const {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            throw std::runtime_error("cannot write " + path(name).toStdString());
        }
        return file.fileName();
    }

    // A file with `records` records, one a second, of the tab-separated value columns `columns`.
    QString writeData(const QString &name, const QByteArray &instrument, const QByteArray &columns,
                      int records = 2) const {
        QByteArray text = "Instrument:\t" + instrument + "\nTimezone:\tUTC\n";
        text += "DATAH\tSECONDS\tNANOSECONDS\t" + columns + "\n";
        const int values = columns.count('\t') + 1;
        for (int i = 0; i < records; ++i) {
            text += "DATA\t" + QByteArray::number(1600000000 + i) + "\t0";
            for (int value = 0; value < values; ++value) {
                text += "\t" + QByteArray::number(value) + ".25";
            }
            text += "\n";
        }
        return write(name, text);
    }

    QString path(const QString &name) const { return dir_.filePath(name); }

private:
    QTemporaryDir dir_;
};

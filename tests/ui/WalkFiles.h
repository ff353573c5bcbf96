#pragma once

#include "loading/support/ZipWriting.h"
#include "ui/DataFiles.h"

#include <QMap>
#include <QStringList>

#include <set>
#include <string>
#include <vector>

// Small files to add and remove at will: plain ones and archives, some of one analyser, some with variables
// of their own, and some that are no data files.
class WalkFiles {
public:
    static constexpr int recordsOfFile = 1500;

    WalkFiles() {
        for (int i = 0; i < 9; ++i) {
            const QByteArray instrument = "QA" + QByteArray::number(330 + i / 3);
            const QByteArray own = "OWN" + QByteArray::number(i);
            note(files_.writeData(QString("plain-%1.data").arg(i), instrument, "CH4\tTEMP\t" + own,
                                  recordsOfFile),
                 instrument, {"CH4", "TEMP", own});
        }
        for (int i = 0; i < 4; ++i) {
            addArchive(i);
        }
        note(files_.write("no-data.data", "nothing of use\n"), "", {});
        note(files_.write("empty.data", ""), "", {});
        note(files_.write("broken.ghg", "PK\3\4 and no more"), "", {});
        missing_ = files_.path("missing.data");
    }

    // Those that are there.
    QStringList paths() const { return variables_.keys(); }
    const QString &missing() const { return missing_; }
    // The variable keys that a file brings.
    const std::set<std::string> &variablesOf(const QString &path) const {
        static const std::set<std::string> none;
        const auto found = variables_.constFind(path);
        return found == variables_.constEnd() ? none : *found;
    }
    QString target(int number) const { return files_.path(QString("export-%1.txt").arg(number)); }

private:
    void addArchive(int number) {
        const QByteArray instrument = "QA34" + QByteArray::number(number / 2);
        const QString text = files_.writeData("member", instrument, "CO2\tH2O", recordsOfFile);
        QFile member(text);
        member.open(QIODevice::ReadOnly);
        const std::string bytes = member.readAll().toStdString();
        const QString path = files_.path(QString("archive-%1.ghg").arg(number));
        writeZip(path, {{"one.metadata", "site"}, {"one.data", bytes}, {"two.data", bytes}});
        note(path, instrument, {"CO2", "H2O"});
    }
    void note(const QString &path, const QByteArray &instrument, const std::vector<QByteArray> &names) {
        std::set<std::string> &keys = variables_[path];
        for (const QByteArray &name : names) {
            keys.insert((instrument + ":DATA:" + name).toStdString());
        }
    }

    DataFiles files_;
    QMap<QString, std::set<std::string>> variables_;
    QString missing_;
};

#include "benchmarks/BenchmarkFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <quazip.h>
#include <quazipfile.h>
#include <quazipnewinfo.h>

#include <stdexcept>

namespace {

int numberFromEnvironment(const char *name, int fallback) {
    bool isSet = false;
    const int number = qEnvironmentVariableIntValue(name, &isSet);
    return isSet && number > 0 ? number : fallback;
}

QDir folder() {
    const QString named = qEnvironmentVariable("FVQA_BENCHMARK_FOLDER");
    QDir folder(named.isEmpty() ? QDir::temp().filePath("fvqa300-benchmarks") : named);
    if (!folder.mkpath(".")) {
        throw std::runtime_error("cannot make the folder " + folder.path().toStdString());
    }
    return folder;
}

// Makes `path` by the generator unless an earlier run has. A file appears under its name only when it is
// whole.
void generateOnce(const QString &path, const QStringList &arguments) {
    if (QFileInfo::exists(path)) {
        return;
    }
    const QString unfinished = path + ".unfinished";
    const int status = QProcess::execute(FVQA_GENERATOR, arguments + QStringList{"--output", unfinished});
    if (status != 0 || !QFile::rename(unfinished, path)) {
        throw std::runtime_error("cannot make " + path.toStdString());
    }
}

std::string plainFile(const char *kind) {
    const int megabytes = numberFromEnvironment("FVQA_BENCHMARK_MEGABYTES", 100);
    const QString path = folder().filePath(QStringLiteral("%1-%2MB.data").arg(kind).arg(megabytes));
    generateOnce(path, {"--kind", kind, "--seed", "1", "--megabytes", QString::number(megabytes)});
    return path.toStdString();
}

} // namespace

std::string methaneFile() {
    return plainFile("qa330");
}

std::string fastFile() {
    return plainFile("qa34xx");
}

std::vector<std::string> halfHourArchives() {
    const int count = numberFromEnvironment("FVQA_BENCHMARK_FILES", 60);
    const QString path = folder().filePath(QStringLiteral("archives-%1").arg(count));
    generateOnce(
        path, {"--kind", "archives", "--seed", "1", "--compression", "1", "--count", QString::number(count)});
    std::vector<std::string> files;
    for (const QFileInfo &file : QDir(path).entryInfoList(QDir::Files, QDir::Name)) {
        files.push_back(file.filePath().toStdString());
    }
    return files;
}

std::string manyBlocksArchive() {
    const QString path = folder().filePath("blocks.ghg");
    QuaZip archive(path);
    QuaZipFile member(&archive);
    std::string text = "Instrument:\tQA3401\n";
    for (int i = 0; i < 2000; ++i) {
        text.append("DATAH\tSECONDS\tA\tB\nDATA\t").append(std::to_string(1600000000 + i)).append("\t1\t2\n");
    }
    const auto size = static_cast<qint64>(text.size());
    if (!archive.open(QuaZip::mdCreate) || !member.open(QIODevice::WriteOnly, QuaZipNewInfo("blocks.data")) ||
        member.write(text.data(), size) != size) {
        throw std::runtime_error("cannot make " + path.toStdString());
    }
    return path.toStdString();
}

double fileSize(const std::string &path) {
    return static_cast<double>(QFileInfo(QString::fromStdString(path)).size());
}

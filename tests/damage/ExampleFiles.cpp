#include "damage/ExampleFiles.h"

#include "damage/MemoryFolder.h"
#include "loading/lines/Archive.h"

#include <QString>
#include <quazip.h>
#include <quazipfile.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

std::string bytesOfFile(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path);
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

ExampleFile exampleFile(const std::string &name) {
    const std::string path = FVQA_EXAMPLES_DIR "/" + name;
    ExampleFile example{name, bytesOfFile(path), {}};
    if (!isArchiveName(QString::fromStdString(name))) {
        return example;
    }
    QuaZip archive(QString::fromStdString(path));
    if (!archive.open(QuaZip::mdUnzip)) {
        throw std::runtime_error("cannot open " + path);
    }
    for (bool more = archive.goToFirstFile(); more; more = archive.goToNextFile()) {
        QuaZipFile member(&archive);
        if (!member.open(QIODevice::ReadOnly)) {
            throw std::runtime_error("cannot read all of " + path);
        }
        example.members.push_back({archive.getCurrentFileName(), member.readAll().toStdString()});
    }
    return example;
}

std::string packed(const std::vector<ZipEntry> &members) {
    const MemoryFolder folder;
    const std::string path = folder.pathOf("packed.zip");
    writeZip(QString::fromStdString(path), members);
    return bytesOfFile(path);
}

std::string firstLines(const std::string &text, std::size_t length) {
    return text.size() <= length ? text : text.substr(0, text.rfind('\n', length - 1) + 1);
}

#pragma once

#include "loading/lines/ChunkLineReader.h"

#include <QString>
#include <quazip.h>

#include <cstdint>
#include <string>

// A file whose members are read one after the other. An archive is opened once.
class SourceFile {
public:
    // Opens nothing yet. `name` is UTF-8.
    explicit SourceFile(const std::string &name);

    // Opens a member, or the plain file when it is empty, so that no line is lost that begins at the true
    // offset `offset` or behind it; what is left of the line before may come first. False when it cannot be
    // opened: the reader's problem() says why. `lines` must be closed before the file goes.
    bool open(ChunkLineReader &lines, const std::string &member, std::uint64_t offset);

private:
    bool openArchive();

    QString name_;
    QuaZip archive_;
};

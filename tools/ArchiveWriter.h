#pragma once

#include "tools/DataFileWriter.h"

#include <cstdint>
#include <string>

// What decides a row of archives besides the recording.
struct ArchiveOptions {
    std::uint64_t count = 1;
    std::uint64_t namelessEvery = 0; // every so many-th archive lacks the instrument's name; 0: none does
    int compression = 6;             // 1 (quick) to 9 (small)
};

// Writes consecutive archives of half an hour each into a folder, which is made when it is missing: a ".data"
// member from `recorder`, whose start should be a half-hour, and a ".metadata" member that describes the
// site. Members are the same bytes everywhere; the packed bytes also depend on the version of zlib. Throws
// WriteError.
void writeArchives(DataFileWriter &recorder, const RecordingOptions &recording,
                   const ArchiveOptions &archives, const std::string &folder);

#pragma once

#include "independent/IndependentZone.h"
#include "support/RandomNumbers.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Draws data files of the worst kind that instruments and disks may leave: blocks of all tags whose columns,
// names and zones change, clocks that repeat an hour, stand at 0 or jump, fields that are no numbers, wrong
// checksums, cut and changed lines. What is drawn depends on the seed alone.
class HostileDataFile {
public:
    HostileDataFile(std::uint64_t seed, const std::string &zoneDirectory);

    // The bytes of a source of about `lines` lines. The next call goes on where this one ended, as the next
    // member of an archive does.
    std::string source(int lines);

private:
    void addLine(std::string line);
    void addKey();
    void addHeader();
    void addDiagnosticNames();
    void addRecord();
    void addNoise();
    void stepClock();
    std::vector<std::string> drawColumns();
    std::string field(const std::string &column, const std::string &fieldsSoFar, const std::string &tag);
    std::string clockField(const std::string &column);
    std::string dateField();
    std::string timeField();
    std::string number();
    std::string checksum(const std::string &fieldsSoFar, const std::string &tag);
    void damage(std::string &line);

    RandomNumbers random_;
    std::string zoneName_;
    IndependentZone wall_;
    bool isDirty_;            // many bad fields, not few
    std::uint64_t usualStep_; // s between records, at most
    std::int64_t seconds_;
    std::uint32_t nanoseconds_ = 0;
    std::array<std::vector<std::string>, 3> columns_; // of each tag
    std::string text_;
};

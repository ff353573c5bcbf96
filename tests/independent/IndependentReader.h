#pragma once

#include "independent/IndependentZone.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// A second reader of data files, written for the tests alone, slow and plain: every record is kept, every
// number goes through the C library. Shares no code with the programs.

struct IndependentRecord {
    std::uint32_t seconds = 0; // UTC
    std::uint32_t nanoseconds = 0;
    std::vector<double> values;
    std::uint32_t diagnostics = 0;
    std::int32_t offset = 0; // seconds east of UTC
    std::uint16_t year = 0;  // local, as are the others
    std::uint8_t month = 0;
    std::uint8_t day = 0;
    std::uint8_t hour = 0;
    std::uint8_t minute = 0;
    std::uint8_t second = 0;

    double time() const { return seconds + nanoseconds / 1e9; }
};

// What one header line and the records behind it give.
struct IndependentBlock {
    std::string tag;
    std::string instrument;
    std::string softwareVersion;
    std::vector<std::string> columns;
    std::vector<std::string> valueNames;
    std::vector<std::string> units;
    std::vector<std::string> diagnosticNames;
    std::vector<IndependentRecord> records;
    std::uint32_t wrongChecksums = 0;
    std::shared_ptr<IndependentZone> zone;
    bool hasColumnsSetUp = false;

    // The time that blocks are ordered by.
    double firstTime() const;
};

using IndependentBlocks = std::vector<std::shared_ptr<IndependentBlock>>;

// Reads the lines of one file, that is of all its members.
class IndependentReader {
public:
    IndependentReader(const std::string &path, std::string zoneDirectory);

    void read(const std::string &line);
    const IndependentBlocks &blocks() const { return blocks_; }

private:
    bool readHeader(const std::string &line);
    bool readDiagnosticNames(const std::string &line);
    void readKey(const std::string &line);
    void setUp(IndependentBlock &block) const;

    std::string zoneDirectory_;
    std::string instrument_;
    std::string softwareVersion_ = "Unknown";
    std::string timezone_ = "Unknown";
    std::vector<std::string> diagnosticNames_;
    IndependentBlocks blocks_;
    std::map<std::string, std::shared_ptr<IndependentBlock>> current_; // by tag
};

// The record of one line, from behind the tag's tab on; none when a field is bad. A wrong checksum counts.
std::optional<IndependentRecord> readIndependentRecord(IndependentBlock &block, const std::string &fields);

// The blocks with records of all files, as the programs order them.
IndependentBlocks readIndependently(const std::vector<std::string> &paths, const std::string &zoneDirectory);

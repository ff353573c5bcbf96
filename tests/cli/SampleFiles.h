#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// Texts of small data files.

// The lines that open a file of instrument `name`: columns SECONDS, NANOSECONDS, CH4D and TEMP of tag DATA.
std::string sampleHeader(const std::string &name);

// A record line for that header.
std::string sampleRecord(std::uint32_t seconds, const std::string &methane,
                         const std::string &temperature = "20");

// A whole file: records one second apart, with CH4D 0, 1, 2, ... and TEMP 20.
std::string sampleData(const std::string &name, std::uint32_t firstSecond, std::uint32_t records);

// A file with one record, whose checksum is wrong.
std::string sampleWithBadChecksum();

// A file that names a zone which does not exist, so that its header line is an error.
std::string sampleWithUnknownZone();

// Writes a zip archive of members (name, content).
void writeArchive(const std::string &path, const std::vector<std::pair<std::string, std::string>> &members);

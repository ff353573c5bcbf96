#pragma once

#include "time/ZoneRules.h"

#include <istream>
#include <string>

// Readers of compiled zone files (TZif, RFC 8536). Only the version-1 block is read: what follows it (leap
// seconds, indicators, 64-bit data, the footer) is ignored. Memory grows with the bytes that a file holds,
// never with the counts that its header claims. Both throw Timezone::Error.

// The zone `name` in the folder `directory`; "Unknown" stands for "UTC". A name cannot lead out of the
// folder, and only regular files are opened.
ZoneRules loadZone(const std::string &directory, const std::string &name);

// The zone in an open file; `path` is used in messages only.
ZoneRules readZoneFile(std::istream &file, const std::string &path);

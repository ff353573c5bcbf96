#pragma once

#include "time/ZoneRules.h"

#include <cstdint>
#include <ctime>
#include <memory>
#include <stdexcept>
#include <string>

// Folder of compiled zone files. Set once at program start, before any thread exists; only read afterwards.
extern std::string zoneDirectory;

// What a UTC-to-local lookup can tell besides the calendar fields.
struct TimezoneInfo {
    std::uint32_t isDst = 0;
    std::int32_t utcOffset = 0;         // seconds east of UTC
    const char *abbreviation = nullptr; // valid while the Timezone lives
    // Seconds to the other instant with the same local time: negative when it came before a transition,
    // positive when it comes again after one, 0 when there is none. Says nothing where offsets are negative.
    std::int64_t fold = 0;
};

// One time zone, read from a compiled zone file (TZif, RFC 8536; the version-1 block only).
//
// Converts between UTC seconds since 1970 and local calendar time. Conversions allocate nothing and never
// fail, but each writes the caches, so a Timezone belongs to one thread at a time; copies are independent.
class Timezone {
public:
    class Error : public std::runtime_error {
    public:
        using std::runtime_error::runtime_error;
    };

    // Loads the zone `name` from `directory`; "Unknown" loads the zone "UTC". Throws Error.
    Timezone(std::string directory, const std::string &name);
    // The same from `zoneDirectory`.
    explicit Timezone(const std::string &name);

    // Fills the nine standard fields of `local` with the local time of `utcSeconds` and returns it; returns
    // null for a null `local`. A time whose year does not fit comes back zeroed.
    std::tm *localTime(std::int64_t utcSeconds, std::tm *local, TimezoneInfo *info = nullptr);

    // UTC seconds of the local time in `local`, whose DST flag (1, 0, or -1 for "either") decides in a
    // repeated hour. A local time that was skipped, or has fields out of range, gives a near instant. Writes
    // back DST flag, weekday and day of year.
    std::int64_t makeTime(std::tm &local, TimezoneInfo *info = nullptr);

    // Abbreviation ("CET") of the last lookup's kind of time; empty when there is none.
    std::string currentAbbreviation() const;

    // A copy that converts as a newly loaded zone does.
    Timezone fresh() const;

    const std::string &name() const { return name_; }
    // True when the data file named no zone, so that its clock is taken as UTC.
    bool isUnknown() const { return isUnknown_; }

private:
    const TimezoneType &findType(std::int64_t utcSeconds);
    std::int64_t foldAt(std::int64_t utcSeconds, std::int32_t offset) const;

    std::string directory_;
    std::string name_;
    bool isUnknown_;
    std::shared_ptr<const ZoneRules> rules_; // never null; copies share them
    std::uint32_t cachedIndex_ = 0;          // transition of the last UTC-to-local lookup
    std::int64_t cachedOffset_ = 0; // naive estimate minus result of the last local-to-UTC conversion
};

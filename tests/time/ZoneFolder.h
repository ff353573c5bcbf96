#pragma once

#include "time/Timezone.h"
#include "time/ZoneFileBuilder.h"

#include <string>
#include <string_view>

// A zone folder of a test's own, removed with everything in it at the end.
class ZoneFolder {
public:
    ZoneFolder();
    ~ZoneFolder();
    ZoneFolder(const ZoneFolder &) = delete;
    ZoneFolder &operator=(const ZoneFolder &) = delete;

    const std::string &path() const { return path_; }
    std::string pathOf(std::string_view name) const { return path_ + "/" + std::string(name); }

    void write(std::string_view name, std::string_view bytes) const;

    // What loading the zone throws; empty when it loads.
    std::string errorOf(const std::string &name) const;

private:
    std::string path_;
};

// The zone that a file of these contents gives.
Timezone zoneOf(const ZoneFileBuilder &file);

// Clock of central Europe from 2019-10-27 on: summer time from 2020-03-29 to 2020-10-25 and from 2021-03-28
// on, 01:00 UTC. Real files begin with a transition at the 32-bit limit, and so does this one.
ZoneFileBuilder easternClock();
inline constexpr std::int64_t easternSummerBegins = 1585443600;
inline constexpr std::int64_t easternSummerEnds = 1603587600;
inline constexpr std::int64_t easternLastTransition = 1616893200;

// The same for New York from 2019-11-03 on: summer time from 2020-03-08 to 2020-11-01 and from 2021-03-14 on.
ZoneFileBuilder westernClock();
inline constexpr std::int64_t westernSummerBegins = 1583650800;
inline constexpr std::int64_t westernSummerEnds = 1604210400;

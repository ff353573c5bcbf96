#pragma once

#include "time/Timezone.h"

#include <cstdint>
#include <string>
#include <string_view>

// The time columns of one second in the analyser's zone, written once and used by all records of that second.
class LocalClock {
public:
    explicit LocalClock(Timezone zone);

    void moveTo(std::int64_t utcSeconds);

    std::int64_t utc() const { return utc_; }
    std::string_view seconds() const { return seconds_; } // UTC, decimal
    std::string_view date() const { return date_; }       // local, "2019-06-01"
    std::string_view time() const { return time_; }       // local, "13:05:59:"
    // Local date and time as file names hold it: "2019-06-01T130559".
    std::string fileStamp() const;

    // Fraction of the day, 0 at midnight, in the zone's time at the first moveTo: the sun knows no
    // daylight saving.
    double dayFraction() const;

    const std::string &zoneName() const { return zone_.name(); }

private:
    Timezone zone_;
    std::int64_t utc_ = 0;
    std::int64_t sunOffset_ = 0; // seconds east of UTC
    bool started_ = false;
    std::string seconds_;
    std::string date_;
    std::string time_;
};

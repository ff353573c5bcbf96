#pragma once

#include "support/RandomNumbers.h"
#include "time/Timezone.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

// Draws data files with blocks of all tags, changing columns, key lines, damaged lines and check sums of
// every kind. What is drawn depends on the options alone.
class RandomDataFile {
public:
    struct Options {
        std::uint64_t seed = 1;
        std::string timezone;   // for the "Timezone:" line; empty leaves it out
        std::string wallZone;   // of the clock that DATE and TIME show
        std::int64_t start = 0; // UTC seconds
        int lines = 1000;
        bool isPlain = false; // only good UTC times that never step back
        std::size_t longestRemark = 12;
    };

    explicit RandomDataFile(Options options);

    std::string text();

private:
    void addLine(const std::string &line);
    void addHeader(const std::string &tag);
    void addRecord(const std::string &tag);
    void addOther();
    void stepClock();
    std::vector<std::string> drawColumns();
    std::string field(const std::string &column, const std::string &lineSoFar);
    std::string clockField(const std::string &column);
    std::string number();
    std::string checksum(const std::string &lineSoFar);

    Options options_;
    RandomNumbers random_;
    Timezone wall_;
    std::int64_t seconds_;
    std::int64_t nanoseconds_ = 0;
    std::string lineEnd_;
    std::array<std::vector<std::string>, 3> columns_;
    std::string text_;
};

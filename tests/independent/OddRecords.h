#pragma once

#include "independent/IndependentReader.h"
#include "independent/IndependentZone.h"
#include "plot/PlotData.h"
#include "support/RandomNumbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <set>
#include <string>

// Files of few records over much time, for plots, and what is odd about them.

// What makes the files of a seed hard.
struct Oddities {
    explicit Oddities(int seed)
        : hasWildValues(seed % 2 == 0 || seed % 3 == 0),
          clockStepsBack(seed % 3 == 0),
          filesOverlap(seed % 4 == 2),
          hourComesTwice(seed % 5 == 3) {}

    bool hasWildValues;  // infinite, with nine digits behind the point, and diagnostic words beyond 2^24
    bool clockStepsBack; // within a block
    bool filesOverlap;   // in time
    bool hourComesTwice; // local times alone, through the end of summer time
};

// Blocks of records in bursts, so that few of them fill much time.
class RandomRecords {
public:
    RandomRecords(int seed, double days)
        : random_(static_cast<std::uint64_t>(seed)),
          odd_(seed),
          days_(days),
          start_(odd_.hourComesTwice ? endOfSummer - static_cast<std::int64_t>(days * 43200) : plotStart),
          seconds_(start_),
          wall_(FVQA_ZONEINFO_DIR, zone) {}

    std::string file() {
        if (odd_.filesOverlap) {
            seconds_ = start_ + random_.between(0, static_cast<std::int64_t>(days_ * 43200));
        }
        std::string text = "Instrument:\tGA\nTimezone:\t" + std::string(zone) + '\n';
        const std::string clock = odd_.hourComesTwice ? "DATE\tTIME" : "SECONDS\tNANOSECONDS";
        const int blocks = static_cast<int>(random_.between(1, 3));
        for (int block = 0; block < blocks; ++block) {
            text += "DATAH\t" + clock + (random_.oneIn(2) ? "\tDIAG\tA\tB\n" : "\tDIAG\tB\tA\tC\n");
            const bool isShort = random_.oneIn(3);
            addRecords(text, isShort ? 30 : 900, days_ / blocks);
        }
        return text;
    }

private:
    static constexpr const char *zone = "Europe/Berlin";
    static constexpr std::int64_t endOfSummer = 1603587600; // 2020-10-25 01:00 UTC

    void addRecords(std::string &text, int count, double days) {
        const auto longestGap = static_cast<std::int64_t>(days * 86400 / count * 40);
        for (int i = 0; i < count; ++i) {
            seconds_ += random_.between(0, random_.oneIn(20) ? longestGap + 1 : 9);
            // Exactly on the end of a period now and then.
            seconds_ += random_.oneIn(30) ? (60 - seconds_ % 60) % 60 : 0;
            if (odd_.clockStepsBack && i > 0 && random_.oneIn(100)) {
                seconds_ -= random_.between(1, random_.oneIn(2) ? 4000 : 100);
            }
            text += "DATA\t" + clockFields() + '\t' + diagnosticWord();
            for (int column = 0; column < 3; ++column) {
                text += '\t' + value();
            }
            text += '\n';
            seconds_ += 1; // but for the steps, no record lies before the one before it
        }
    }

    std::string clockFields() {
        const bool isWhole = random_.oneIn(3);
        if (!odd_.hourComesTwice) {
            return std::to_string(seconds_) + '\t' + (isWhole ? "0" : "500000000");
        }
        const IndependentZone::Fields local = wall_.localTime(seconds_).fields;
        std::array<char, 80> text{};
        std::snprintf(text.data(), text.size(), "%04d-%02d-%02d\t%02d:%02d:%02d%s",
                      static_cast<int>(local[0]), static_cast<int>(local[1]), static_cast<int>(local[2]),
                      static_cast<int>(local[3]), static_cast<int>(local[4]), static_cast<int>(local[5]),
                      isWhole ? "" : ":500");
        return text.data();
    }

    std::string diagnosticWord() {
        // From 2^24 on single precision leaves out every other one.
        return odd_.hasWildValues && random_.oneIn(4) ? std::to_string(random_.between(16777215, 4294967295))
                                                      : std::to_string(random_.below(1024));
    }

    std::string value() {
        if (random_.oneIn(300)) {
            return "nan";
        }
        const std::string whole = std::to_string(random_.between(-9999, 9999));
        if (!odd_.hasWildValues) {
            return whole;
        }
        return random_.oneIn(400) ? random_.pick(std::array{"inf", "-inf", "3e38", "-3e38", "1e-40"})
                                  : whole + '.' + std::to_string(random_.between(100000000, 999999999));
    }

    RandomNumbers random_;
    Oddities odd_;
    double days_;
    std::int64_t start_;
    std::int64_t seconds_;
    IndependentZone wall_;
};

// What the records really hold of it.
inline std::set<std::string> odditiesIn(const IndependentBlocks &blocks) {
    std::set<std::string> found;
    double latest = 0;
    for (const auto &block : blocks) {
        double before = 0;
        for (const IndependentRecord &record : block->records) {
            if (record.time() < before) {
                found.insert("a clock that steps back");
            }
            if (before == 0 && record.time() < latest) {
                found.insert("blocks over the same time");
            }
            before = record.time();
            for (const double value : record.values) {
                if (std::isinf(value)) {
                    found.insert("infinity");
                } else if (!std::isnan(value) && static_cast<double>(static_cast<float>(value)) != value) {
                    found.insert("a word beyond single precision");
                }
            }
        }
        latest = std::max(latest, before);
        if (!block->columns.empty() && block->columns.front() == "DATE" &&
            block->records.front().offset != block->records.back().offset) {
            found.insert("an hour that comes twice");
        }
    }
    return found;
}

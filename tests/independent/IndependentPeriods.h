#pragma once

#include "independent/IndependentReader.h"

#include <array>
#include <cstdint>
#include <vector>

// The records behind each point of one block's averaged series, put together record by record. A period
// takes its records as they come and ends with the first one behind its end; a longer period takes shorter
// ones whole.
class IndependentPeriods {
public:
    static constexpr std::array<std::int64_t, 4> lengths{60, 300, 1800, 7200}; // s

    struct Point {
        std::int64_t time = 0; // end of the period, UTC seconds
        std::vector<const IndependentRecord *> records;
    };

    explicit IndependentPeriods(const IndependentBlock &block) {
        for (const IndependentRecord &record : block.records) {
            if (&record == &block.records.front()) {
                for (std::size_t i = 0; i < lengths.size(); ++i) {
                    open_[i].time = record.seconds / lengths[i] * lengths[i];
                }
            }
            close(record);
            open_[0].records.push_back(&record);
        }
    }

    // Of the periods of lengths[level], in their order.
    const std::vector<Point> &points(std::size_t level) const { return points_[level]; }

private:
    void close(const IndependentRecord &record) {
        for (std::size_t i = 0; i < lengths.size(); ++i) {
            Point &open = open_[i];
            const bool isBehind =
                open.time < record.seconds || (open.time == record.seconds && record.nanoseconds > 0);
            if (!isBehind) {
                return;
            }
            if (!open.records.empty()) {
                points_[i].push_back(open);
                if (i + 1 < lengths.size()) {
                    auto &longer = open_[i + 1].records;
                    longer.insert(longer.end(), open.records.begin(), open.records.end());
                }
                open.records.clear();
            }
            open.time = (record.seconds / lengths[i] + 1) * lengths[i];
        }
    }

    std::array<Point, 4> open_;
    std::array<std::vector<Point>, 4> points_;
};

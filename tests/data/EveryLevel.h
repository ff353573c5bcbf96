#pragma once

#include "data/VectorLevel.h"

#include <vector>

// Every level of vectors that can be tested on this machine; the present one comes back at the end.
class EveryLevel {
public:
    EveryLevel() = default;
    ~EveryLevel() { useVectorLevel(before_); }
    EveryLevel(const EveryLevel &) = delete;
    EveryLevel &operator=(const EveryLevel &) = delete;

    static std::vector<VectorLevel> available() {
        std::vector<VectorLevel> levels;
        for (const VectorLevel level :
             {VectorLevel::plain, VectorLevel::bits128, VectorLevel::bits256, VectorLevel::bits512}) {
            if (isAvailable(level)) {
                levels.push_back(level);
            }
        }
        return levels;
    }

private:
    VectorLevel before_ = vectorLevel();
};

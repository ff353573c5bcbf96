#pragma once

#include "data/BlockPoints.h"
#include "data/SourceComplaints.h"

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

// Reads sources once for any number of blocks in them, in whatever order the blocks were added.
//
// A source is opened only when a block in it was added, and read from the first line that one of its blocks
// needs to the last one, except for stretches that none needs. One that has changed since it was loaded, or
// cannot be opened or read to the end any more, gives what it can and one line on standard error.
class SourcePass {
public:
    // Adds a block, which must outlive the pass.
    void add(BlockPoints &block);
    // Gives all blocks their lines.
    void run();

private:
    // Archive members in the order in which a block may run over them.
    struct Place {
        std::string fileName;
        std::uint32_t memberNumber = 0;
        std::string member;

        bool operator<(const Place &other) const {
            return std::tie(fileName, memberNumber, member) <
                   std::tie(other.fileName, other.memberNumber, other.member);
        }
    };

    void readFile(const std::string &fileName);
    void addNextMembersOf(const std::vector<BlockPoints *> &blocks);

    SourceComplaints complaints_;
    std::map<Place, std::vector<BlockPoints *>> waiting_;
};

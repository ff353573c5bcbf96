#pragma once

#include "data/DataFragment.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// A fragment whose lines follow each other in its source.
class FragmentBlock {
public:
    explicit FragmentBlock(std::vector<std::string> columns, std::vector<std::string> flags = {},
                           const std::string &tag = "DATA", const std::string &zone = "UTC")
        : fragment_({"file.data", "", "QA330", "SN-1", "1.0", zone}, tag, std::move(columns),
                    std::move(flags)),
          prefix_(tag + '\t') {}

    // The offset of the line.
    std::uint64_t take(const std::string &fields) {
        const std::uint64_t offset = nextOffset_;
        const std::string line = prefix_ + fields;
        fragment_.acceptRecord(offset, line);
        nextOffset_ += line.size() + 1;
        return offset;
    }

    DataFragment &operator*() { return fragment_; }
    DataFragment *operator->() { return &fragment_; }

private:
    DataFragment fragment_;
    std::string prefix_;
    std::uint64_t nextOffset_ = 100;
};

#pragma once

#include "data/SourceComplaints.h"
#include "data/SourceReader.h"

#include <cstddef>
#include <memory>
#include <vector>

// The readers of a pass over blocks of many sources. The last few sources stay open, each in a reader of its
// own: where the times of two files overlap, their blocks take turns.
class SourceReaders {
public:
    // The reader that has `source` open; if none has, one that opens it when it is told where to go. It is
    // for that source until three others have been asked for since; `source` must live as long.
    SourceReader &readerFor(const SourceHeader &source);

    void close();

private:
    static constexpr std::size_t mostOpen = 4; // with 9 MiB each

    SourceComplaints complaints_;
    std::vector<std::unique_ptr<SourceReader>> readers_; // the one used last comes first
};

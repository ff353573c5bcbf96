#pragma once

#include "data/SeriesPoints.h"
#include "data/SeriesQuery.h"

#include <vector>

class FragmentList;

// The points of several series between the same two times.
//
// Made under the lock of the data set that owns the list, read without it: the fragments are shared.
class SeriesBatch {
public:
    // `start` and `end` are UTC seconds or the whole-range bounds, which each key resolves for itself.
    SeriesBatch(const FragmentList &fragments, const std::vector<SeriesRequest> &requests, double start,
                double end);

    // The points of each request, in their order: exactly those that its SeriesQuery gives.
    std::vector<SeriesPoints> read() const;

private:
    struct Part {
        SeriesQuery query;
        std::string selector;
    };

    std::vector<Part> parts_;
};

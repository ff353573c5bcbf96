#include "data/SeriesBatch.h"

#include "data/FragmentList.h"

SeriesBatch::SeriesBatch(const FragmentList &fragments, const std::vector<SeriesRequest> &requests,
                         double start, double end) {
    parts_.reserve(requests.size());
    for (const SeriesRequest &request : requests) {
        parts_.push_back({SeriesQuery(fragments, request.key, start, end), request.selector});
    }
}

std::vector<SeriesPoints> SeriesBatch::read() const {
    std::vector<SeriesPoints> all;
    all.reserve(parts_.size());
    for (const Part &part : parts_) {
        auto times = std::make_shared<std::vector<double>>();
        auto values = std::make_shared<std::vector<double>>();
        part.query.read(part.selector, *times, *values);
        all.push_back({std::move(times), std::move(values)});
    }
    return all;
}

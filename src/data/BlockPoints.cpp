#include "data/BlockPoints.h"

#include <algorithm>

BlockPoints::Reading::Reading(const DataFragment &fragment, std::span<const std::uint32_t> columns)
    : prefix(fragment.tag() + '\t'), selection(fragment.layout(), columns), clock(fragment.timezone()) {
    record.values.resize(selection.valueCount());
}

BlockPoints::BlockPoints(const DataFragment &fragment, std::vector<std::uint32_t> columns, double start,
                         double end)
    : fragment_(fragment),
      columns_(std::move(columns)),
      bounds_(narrowedTo(fragment, start, end)),
      values_(columns_.size()) {}

std::uint64_t BlockPoints::linesBegin() const {
    return ::linesBegin(fragment_, member_, bounds_.start);
}

std::uint64_t BlockPoints::linesEnd() const {
    return ::linesEnd(fragment_, member_);
}

bool BlockPoints::takeLine(std::string_view line) {
    if (!reading_) {
        reading_.emplace(fragment_, columns_);
    }
    if (!line.starts_with(reading_->prefix) ||
        !fragment_.readRecord(line, reading_->selection.readers(), reading_->clock, reading_->record)) {
        return true;
    }
    const double time = timeOf(reading_->record);
    if (time > bounds_.end) {
        member_ = fragment_.members().size();
        reading_.reset();
        return false;
    }
    hasBegun_ = hasBegun_ || !(time < bounds_.start);
    if (hasBegun_) {
        takeRecord(time);
    }
    return true;
}

void BlockPoints::takeRecord(double time) {
    times_.push_back(time);
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        values_[i].push_back(reading_->record.values[reading_->selection.placeOf(i)]);
    }
}

bool BlockPoints::goToNextMember() {
    member_ = std::min(member_ + 1, fragment_.members().size());
    if (member_ < fragment_.members().size()) {
        return true;
    }
    reading_.reset();
    return false;
}

#include "data/RecordCursor.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>

namespace {

// `utcSeconds` as whole seconds, held to the range of a record's time; 0 for what is not a number.
std::uint32_t wholeSeconds(double utcSeconds) {
    constexpr double latest = std::numeric_limits<std::uint32_t>::max();
    return utcSeconds > 0 ? static_cast<std::uint32_t>(std::min(std::floor(utcSeconds), latest)) : 0;
}

// The bounds as they limit one fragment's reading. A clock may have stood at zero for the first records,
// whose time the fragment does not keep, or beyond the end marker for some: the markers limit nothing.
double narrowedStart(const DataFragment &fragment, double start) {
    return start <= wholeRangeStart ? wholeRangeStart : std::max(start, fragment.firstTime());
}
double narrowedEnd(const DataFragment &fragment, double end) {
    return end == wholeRangeEnd ? fragment.latestTime() : std::min(end, fragment.latestTime());
}

} // namespace

std::uint64_t startOffsetFor(const DataFragment &fragment, double start) {
    std::uint64_t offset = fragment.firstOffset();
    if (start != wholeRangeStart) {
        offset = fragment.halfHourIndex().offsetFor(wholeSeconds(start), offset);
    }
    return std::min(offset, fragment.endOffset());
}

std::uint64_t endOffsetFor(const DataFragment &fragment, double end) {
    std::uint64_t offset = fragment.endOffset();
    if (end != wholeRangeEnd) {
        offset = fragment.halfHourIndex().offsetBehind(std::ceil(end), offset);
    }
    return std::max(offset, fragment.firstOffset());
}

DataFragment::_ContextType::_ContextType(const DataFragment &fragment, double start, double end)
    : fragment_(fragment),
      end_(narrowedEnd(fragment, end)),
      prefix_(fragment.tag() + '\t'),
      clock_(fragment.timezone()) {
    record_.values.resize(fragment.valueCount());
    const double narrowed = narrowedStart(fragment, start);
    if (record_.values.empty() || !(narrowed <= end_) || !open(narrowed)) {
        exhaust();
        return;
    }
    do {
        advance();
    } while (!isExhausted() && timeOf(record_) < narrowed);
}

bool DataFragment::_ContextType::open(double start) {
    // The index speaks of one member only.
    if (fragment_.members().size() > 1) {
        return openMember(0, fragment_.blockBegin());
    }
    return openMember(0, startOffsetFor(fragment_, fragment_.timesDependOnOrder() ? wholeRangeStart : start));
}

bool DataFragment::_ContextType::openMember(std::size_t index, std::uint64_t offset) {
    member_ = index;
    const SourceHeader &header = fragment_.header();
    // An offset that falls short may lie within a line, whose rest must not pass for a whole one. Reading one
    // byte earlier and passing over the first line end loses nothing when the offset is true.
    const bool isBehindLine = offset > 0;
    if (lines_.open(QString::fromStdString(header.fileName),
                    QString::fromStdString(fragment_.members()[index]),
                    static_cast<qint64>(isBehindLine ? offset - 1 : offset))) {
        return !isBehindLine || lines_.nextLine();
    }
    std::cerr << header.fileName + ": " + lines_.problem().toStdString() + '\n' << std::flush;
    return false;
}

void DataFragment::_ContextType::advance() {
    if (!isExhausted() && (!readNext() || timeOf(record_) > end_)) {
        exhaust();
    }
}

bool DataFragment::_ContextType::readNext() {
    do {
        while (lines_.nextLine()) {
            if (isBehindBlock()) {
                return false;
            }
            if (isOwnLine() && fragment_.readRecord(lines_.line(), clock_, record_)) {
                return true;
            }
        }
    } while (member_ + 1 < fragment_.members().size() && openMember(member_ + 1, 0));
    return false;
}

// Offsets in the index fall short, so the first lines may be another block's.
bool DataFragment::_ContextType::isOwnLine() const {
    const bool isBeforeBlock =
        member_ == 0 && lines_.lineOffset() + lines_.shortfall() < fragment_.blockBegin();
    return !isBeforeBlock && lines_.line().starts_with(prefix_);
}

bool DataFragment::_ContextType::isBehindBlock() const {
    return member_ + 1 == fragment_.members().size() &&
           lines_.lineOffset() + lines_.shortfall() >= fragment_.blockEnd();
}

void DataFragment::_ContextType::exhaust() {
    record_.values.clear();
    lines_.close();
}

DataSet::_ContextType::_ContextType(const DataSet &dataSet, std::string_view instrument, std::string_view tag,
                                    double start, double end)
    : _ContextType(dataSet.fragmentsOf(instrument, tag), start, end) {}

DataSet::_ContextType::_ContextType(std::vector<std::shared_ptr<const DataFragment>> fragments, double start,
                                    double end)
    : fragments_(std::move(fragments)), start_(start), end_(end) {
    passOverExhausted();
}

void DataSet::_ContextType::advance() {
    if (reader_) {
        reader_->advance();
        passOverExhausted();
    }
}

void DataSet::_ContextType::passOverExhausted() {
    while (!reader_ || reader_->isExhausted()) {
        reader_.reset();
        if (nextFragment_ == fragments_.size()) {
            return;
        }
        reader_ = std::make_unique<DataFragment::_ContextType>(*fragments_[nextFragment_], start_, end_);
        ++nextFragment_;
    }
}

#include "data/RecordCursor.h"

DataFragment::_ContextType::_ContextType(const DataFragment &fragment, double start, double end)
    : _ContextType(fragment, start, end, ownComplaints_) {}

DataFragment::_ContextType::_ContextType(const DataFragment &fragment, double start, double end,
                                         SourceComplaints &complaints)
    : complaints_(complaints),
      fragment_(fragment),
      bounds_(narrowedTo(fragment, start, end)),
      prefix_(fragment.tag() + '\t'),
      clock_(fragment.timezone()) {
    record_.values.resize(fragment.valueCount());
    if (record_.values.empty() || bounds_.areEmpty() || !open()) {
        exhaust();
        return;
    }
    do {
        advance();
    } while (!isExhausted() && timeOf(record_) < bounds_.start);
}

bool DataFragment::_ContextType::open() {
    // The index speaks of one member only.
    if (fragment_.members().size() > 1) {
        return openMember(0, fragment_.blockBegin());
    }
    const double from = fragment_.timesDependOnOrder() ? wholeRangeStart : bounds_.start;
    return openMember(0, startOffsetFor(fragment_, from));
}

bool DataFragment::_ContextType::openMember(std::size_t index, std::uint64_t offset) {
    closeMember();
    member_ = index;
    const SourceHeader &header = fragment_.header();
    complaints_.checkForChange(header);
    // An offset that falls short may lie within a line, whose rest must not pass for a whole one. Reading one
    // byte earlier and passing over the first line end loses nothing when the offset is true.
    const bool isBehindLine = offset > 0;
    return lines_.open(QString::fromStdString(header.fileName),
                       QString::fromStdString(fragment_.members()[index].name),
                       static_cast<qint64>(isBehindLine ? offset - 1 : offset)) &&
           (!isBehindLine || lines_.nextLine());
}

void DataFragment::_ContextType::advance() {
    if (!isExhausted() && (!readNext() || timeOf(record_) > bounds_.end)) {
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
    closeMember();
}

void DataFragment::_ContextType::closeMember() {
    lines_.close();
    complaints_.tell(fragment_.header(), lines_.problem());
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
        reader_ = std::make_unique<DataFragment::_ContextType>(*fragments_[nextFragment_], start_, end_,
                                                               *complaints_);
        ++nextFragment_;
    }
}

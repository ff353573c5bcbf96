#include "data/RecordCursor.h"

DataFragment::_ContextType::_ContextType(const DataFragment &fragment, double start, double end)
    : _ContextType(fragment, start, end, ownSources_) {}

DataFragment::_ContextType::_ContextType(const DataFragment &fragment, double start, double end,
                                         SourceReaders &sources)
    : source_(sources.readerFor(fragment.header())),
      fragment_(fragment),
      bounds_(narrowedTo(fragment, start, end)),
      prefix_(fragment.tag() + '\t'),
      clock_(fragment.timezone()) {
    record_.values.resize(fragment.valueCount());
    if (record_.values.empty() || bounds_.areEmpty() || !openMember(0)) {
        exhaust();
        return;
    }
    do {
        advance();
    } while (!isExhausted() && timeOf(record_) < bounds_.start);
}

bool DataFragment::_ContextType::openMember(std::size_t index) {
    member_ = index;
    linesEnd_ = linesEnd(fragment_, index);
    return source_.goTo(fragment_.header(), fragment_.members()[index].name,
                        linesBegin(fragment_, index, bounds_.start));
}

void DataFragment::_ContextType::advance() {
    if (!isExhausted() && (!readNext() || timeOf(record_) > bounds_.end)) {
        exhaust();
    }
}

bool DataFragment::_ContextType::readNext() {
    ChunkLineReader &lines = source_.lines();
    do {
        while (lines.nextLine()) {
            if (lines.lineOffset() + lines.shortfall() >= linesEnd_) {
                return false;
            }
            if (lines.line().starts_with(prefix_) && fragment_.readRecord(lines.line(), clock_, record_)) {
                return true;
            }
        }
    } while (member_ + 1 < fragment_.members().size() && openMember(member_ + 1));
    return false;
}

void DataFragment::_ContextType::exhaust() {
    record_.values.clear();
    source_.pause();
    ownSources_.close();
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
            sources_->close();
            return;
        }
        reader_ =
            std::make_unique<DataFragment::_ContextType>(*fragments_[nextFragment_], start_, end_, *sources_);
        ++nextFragment_;
    }
}

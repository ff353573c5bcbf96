#pragma once

#include "ReferenceFragment.h"
#include "data/RecordCursor.h"
#include "support/LoadedSource.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// The records of one block as they come while it is loaded.
struct LoadedBlock {
    explicit LoadedBlock(const DataFragment &loaded) : fragment(&loaded), clock(loaded.timezone()) {}

    const DataFragment *fragment;
    RecordClock clock;
    std::vector<Record> records;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> lines; // offset and length
};

// Loads a file and reads every record line alongside, with a clock for each block.
class WatchedLoading {
public:
    explicit WatchedLoading(const std::string &path)
        : source_(loadSource(path, [this](const DataSet &source, std::uint64_t offset,
                                          std::string_view line) { watch(source, offset, line); })) {}

    const std::vector<std::unique_ptr<LoadedBlock>> &blocks() const { return blocks_; }

private:
    void watch(const DataSet &source, std::uint64_t offset, std::string_view line) {
        if (source.fragments().size() > blocks_.size()) {
            blocks_.push_back(std::make_unique<LoadedBlock>(source.fragments().back()));
            current_[blocks_.back()->fragment->tag()] = blocks_.back().get();
            return;
        }
        const std::string tag(line.substr(0, line.find('\t')));
        const auto block = current_.find(tag);
        if (tag.size() == line.size() || block == current_.end()) {
            return;
        }
        LoadedBlock &target = *block->second;
        Record record;
        record.values.resize(target.fragment->valueCount());
        if (target.fragment->readRecord(line, target.clock, record)) {
            target.records.push_back(record);
            target.lines.emplace_back(offset, line.size());
        }
    }

    std::vector<std::unique_ptr<LoadedBlock>> blocks_;
    std::map<std::string, LoadedBlock *> current_;
    DataSet source_;
};

inline ReferenceFragment referenceOf(const LoadedBlock &block) {
    ReferenceFragment reference(block.fragment->valueCount());
    for (std::size_t i = 0; i < block.records.size(); ++i) {
        reference.take(block.records[i], block.lines[i].first, block.lines[i].second);
    }
    return reference;
}

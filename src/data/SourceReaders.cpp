#include "data/SourceReaders.h"

#include <algorithm>
#include <iterator>

SourceReader &SourceReaders::readerFor(const SourceHeader &source) {
    auto reader = std::find_if(readers_.begin(), readers_.end(),
                               [&source](const auto &each) { return each->hasOpen(source); });
    if (reader == readers_.end()) {
        if (readers_.size() < mostOpen) {
            readers_.push_back(std::make_unique<SourceReader>(complaints_));
        }
        reader = std::prev(readers_.end());
    }
    std::rotate(readers_.begin(), reader, std::next(reader));
    return *readers_.front();
}

void SourceReaders::close() {
    for (const auto &reader : readers_) {
        reader->close();
    }
}

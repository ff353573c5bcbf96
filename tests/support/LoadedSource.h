#pragma once

#include "data/DataSet.h"
#include "data/RecordCursor.h"
#include "loading/lines/ChunkLineReader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// Gives `dataSet` the lines of `text`, with the offsets that they have there.
inline void parseText(DataSet &dataSet, std::string_view text) {
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t feed = std::min(text.find('\n', begin), text.size());
        dataSet.parseLine(begin, text.substr(begin, feed - begin));
        begin = feed + 1;
    }
}

// Called with a source, a line's offset as the line reader reports it, and the line.
using LineObserver = std::function<void(const DataSet &, std::uint64_t, std::string_view)>;

// Reads a plain file the way the loader does. `afterLine` sees every line when it has been parsed.
inline DataSet loadSource(const std::string &path, const LineObserver &afterLine = {}) {
    DataSet source(path);
    ChunkLineReader reader;
    if (!reader.open(QString::fromStdString(path), QString())) {
        throw std::runtime_error("cannot open " + path);
    }
    while (reader.nextLine()) {
        source.parseLine(reader.lineOffset(), reader.line(), reader.shortfall());
        if (afterLine) {
            afterLine(source, reader.lineOffset(), reader.line());
        }
    }
    source.finishLoading();
    return source;
}

inline const DataFragment &fragmentAt(const DataSet &dataSet, std::size_t index) {
    return **std::next(dataSet.fragments().begin(), static_cast<std::ptrdiff_t>(index));
}

template <typename Cursor>
std::vector<Record> drain(Cursor &&cursor) {
    std::vector<Record> records;
    for (; !cursor.isExhausted(); cursor.advance()) {
        records.push_back(cursor.record());
    }
    return records;
}

inline std::vector<Record> readAgain(const DataFragment &fragment, double start = wholeRangeStart,
                                     double end = wholeRangeEnd) {
    return drain(DataFragment::_ContextType(fragment, start, end));
}

inline std::vector<Record> readAgain(const DataSet &dataSet, std::string_view instrument,
                                     std::string_view tag, double start = wholeRangeStart,
                                     double end = wholeRangeEnd) {
    return drain(DataSet::_ContextType(dataSet, instrument, tag, start, end));
}

// The points of one query.
struct Points {
    std::vector<double> times;
    std::vector<double> values;
};

inline Points pointsOf(const DataSet &dataSet, std::string_view key, std::string_view selector, double start,
                       double end) {
    Points points;
    dataSet.series(key, selector, start, end, points.times, points.values);
    return points;
}

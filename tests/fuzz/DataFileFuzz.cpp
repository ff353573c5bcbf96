// Any bytes as a data file: no line is left by a byte, and every question about what was read has an answer
// that holds together.

#include "FuzzCheck.h"
#include "FuzzFiles.h"
#include "MemoryFile.h"
#include "data/FragmentSummary.h"
#include "data/PlainSeries.h"
#include "support/HeapText.h"
#include "support/LoadedSource.h"
#include "support/RandomNumbers.h"

#include <algorithm>
#include <numeric>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

const MemoryFile &file() {
    static const MemoryFile made;
    return made;
}

// Each line from a heap block of its own, so that no byte outside it can be read unseen.
DataSet parsedLineByLine(const std::string &path, std::string_view bytes) {
    DataSet source(path);
    for (std::size_t begin = 0, feed = 0; (feed = bytes.find('\n', begin)) != std::string_view::npos;
         begin = feed + 1) {
        std::string_view line = bytes.substr(begin, feed - begin);
        line.remove_suffix(line.ends_with('\r') ? 1 : 0);
        source.parseLine(begin, HeapText(line).view());
    }
    source.finishLoading();
    return source;
}

std::string summaryOf(const DataSet &data) {
    std::ostringstream stream;
    writeSummary(data, stream);
    return stream.str();
}

// Where a point lies is told by the time range, where its value by the value range.
void checkRanges(const DataSet &data) {
    for (const std::string &key : data.variableKeys()) {
        const auto parts = splitVariableKey(key);
        require(parts.has_value(), "a variable key can be split");
        double first = 1e300;
        double last = -1e300;
        data.timeRangeOfInstrument(parts->instrument, first, last);
        // The last record may be earlier than the first, when a clock steps back.
        const bool hasRange = first < 1e300 && last > -1e300;
        // A colon in an instrument's name ends it in its keys, so that they name none.
        require(hasRange == (data.instruments().count(std::string(parts->instrument)) > 0),
                "an instrument with records has a time range");
        double low = emptyMinimum;
        double high = emptyMaximum;
        data.valueRange(key, low, high);
        for (const char *const selector : {"", "min", "max"}) {
            const Points points = pointsOf(data, key, selector, -1, 1e10);
            require(points.times.size() == points.values.size(), "each point has a time and a value");
            for (const double value : points.values) {
                // Sums of infinities, and of numbers near the largest one, go astray.
                require(*selector == '\0' || !(value < low || value > high) || value == emptyMinimum ||
                            value == emptyMaximum,
                        "no extreme lies outside the variable's range");
            }
        }
    }
}

// Points as the plain way gives them, over all and about one record.
void checkSeries(const DataSet &data, std::size_t seed) {
    RandomNumbers random(seed);
    std::vector<SeriesRequest> requests = randomRequests(data, random);
    requests.resize(std::min<std::size_t>(requests.size(), 1));
    if (requests.empty() || data.fragments().empty()) {
        return;
    }
    const DataFragment &fragment = fragmentAt(data, random.below(data.fragments().size()));
    const double start = fragment.firstTime() - 1;
    require(sameAsPlain(data, requests, wholeRangeStart, wholeRangeEnd), "whole series are the plain ones");
    require(sameAsPlain(data, requests, start, start + 4000), "short series are the plain ones");
    require(sameAsPlain(data, requests, start, start + 400000), "long series are the plain ones");
}

void checkMetadata(const DataSet &data) {
    std::size_t keys = 0;
    for (const std::string &instrument : data.instruments()) {
        keys += data.variableKeysOfInstrument(instrument).size();
        data.versionOfInstrument(instrument);
        for (const std::string &tag : data.tagsOfInstrument(instrument)) {
            require(!data.fragmentsOf(instrument, tag).empty(), "a tag that is named has fragments");
            require(data.valueNamesOfInstrumentAndTag(instrument, tag).size() ==
                        data.unitsOfInstrumentAndTag(instrument, tag).size(),
                    "each value column has a unit");
            data.diagnosticNamesOfInstrumentAndTag(instrument, tag);
        }
    }
    // An instrument's name may hold colons, and then its keys are also those of a shorter name.
    require(keys >= data.variableKeys().size() || data.fragments().empty(), "every key is an instrument's");
    for (const auto &[key, unit] : data.variableUnits()) {
        data.timeZoneNameOfKey(key);
    }
    require(data.messageText().size() < 9999 + 10000, "the message text is capped");
}

// What is read from the file itself. Opening it takes longer than all else, so that most inputs go without.
void checkReading(std::string_view text, const std::string &summary, const DataSet &merged) {
    file().hold(text);
    require(summary == summaryOf(loadSource(file().path())), "a file gives what its lines give");
    checkSeries(merged, text.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
    prepareForFiles();
    const std::string_view text(reinterpret_cast<const char *>(bytes), size);
    const DataSet source = parsedLineByLine(file().path(), text);
    const std::string summary = summaryOf(source);
    checkMetadata(source);

    DataSet merged;
    merged.merge(source);
    for (const auto &fragment : merged.fragments()) {
        require(fragment->recordCount() > 0, "a block without records is not merged");
        require(fragment->firstOffset() <= fragment->endOffset() && fragment->endOffset() <= size,
                "a block lies within its file");
    }
    checkMetadata(merged);
    checkRanges(merged);
    if (std::accumulate(bytes, bytes + size, 0U) % 8 == 0) {
        checkReading(text, summary, merged);
    }
    merged.removeFile(file().path());
    require(merged.fragments().empty() && merged.variableKeys().empty(), "a file is removed whole");
    return 0;
}

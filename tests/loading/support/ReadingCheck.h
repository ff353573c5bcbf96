#pragma once

#include "loading/lines/ChunkLineReader.h"
#include "loading/support/ReferenceLines.h"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <string_view>
#include <vector>

// Reads to the end and compares every line, its reported offset and its true offset with the reference.
inline testing::AssertionResult readsByTheRules(ChunkLineReader &reader, std::string_view bytes,
                                                std::uint64_t startOffset = 0) {
    const ReferenceReading expected = referenceReading(bytes, startOffset);
    for (std::size_t i = 0; i < expected.lines.size(); ++i) {
        const ReferenceLine &line = expected.lines[i];
        if (!reader.nextLine()) {
            return testing::AssertionFailure()
                   << "the reading ended before line " << i << " of " << expected.lines.size() << " at byte "
                   << line.trueOffset << ": " << reader.problem().toStdString();
        }
        if (reader.line() != line.text) {
            return testing::AssertionFailure()
                   << "line " << i << " at byte " << line.trueOffset << " has " << reader.line().size()
                   << " bytes and not the " << line.text.size() << " expected, or others";
        }
        if (reader.lineOffset() != line.reportedOffset) {
            return testing::AssertionFailure() << "line " << i << " is reported at " << reader.lineOffset()
                                               << " instead of " << line.reportedOffset;
        }
        if (reader.lineOffset() + reader.shortfall() != line.trueOffset) {
            return testing::AssertionFailure() << "line " << i << " falls short by " << reader.shortfall()
                                               << " instead of " << line.trueOffset - line.reportedOffset;
        }
    }
    if (reader.nextLine()) {
        return testing::AssertionFailure() << "a line came behind the last, of " << reader.line().size()
                                           << " bytes, at " << reader.lineOffset();
    }
    if (reader.problem().isEmpty() == expected.endsAtLongLine) {
        return testing::AssertionFailure()
               << "a line that is too long is " << (expected.endsAtLongLine ? "" : "not ")
               << "there; the problem is \"" << reader.problem().toStdString() << '"';
    }
    return testing::AssertionSuccess() << expected.lines.size() << " lines were the same";
}

inline std::uint64_t trueOffset(const ChunkLineReader &reader) {
    return reader.lineOffset() + reader.shortfall();
}

// From `offset` on exactly the lines of the reference come.
inline testing::AssertionResult
givesAllLinesFrom(ChunkLineReader &reader, const std::vector<ReferenceLine> &lines, std::uint64_t offset) {
    auto expected = std::find_if(lines.begin(), lines.end(),
                                 [=](const ReferenceLine &line) { return line.trueOffset >= offset; });
    while (reader.nextLine()) {
        if (trueOffset(reader) < offset) {
            continue;
        }
        if (expected == lines.end()) {
            return testing::AssertionFailure() << "a line too many at " << trueOffset(reader);
        }
        if (trueOffset(reader) != expected->trueOffset || reader.line() != expected->text) {
            return testing::AssertionFailure()
                   << "a line at " << trueOffset(reader) << " instead of " << expected->trueOffset;
        }
        ++expected;
    }
    if (expected != lines.end()) {
        return testing::AssertionFailure() << "the line at " << expected->trueOffset << " is missing";
    }
    return testing::AssertionSuccess();
}

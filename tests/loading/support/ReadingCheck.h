#pragma once

#include "loading/lines/ChunkLineReader.h"
#include "loading/support/ReferenceLines.h"

#include <gtest/gtest.h>
#include <string_view>

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

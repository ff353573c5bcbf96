// Going to and fro within a source that stays open.

#include "loading/lines/ChunkLineReader.h"
#include "loading/support/ReaderBytes.h"
#include "loading/support/ReadingCheck.h"
#include "loading/support/ReferenceLines.h"
#include "support/SanitizerBuild.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace {

// The line that comes next is the one that begins at `offset`.
testing::AssertionResult comesNext(ChunkLineReader &reader, const ReferenceLine &line, std::uint64_t offset) {
    if (offset > 0 && !reader.nextLine()) {
        return testing::AssertionFailure() << "nothing came: " << reader.problem().toStdString();
    }
    if (!reader.nextLine() || trueOffset(reader) != line.trueOffset || reader.line() != line.text) {
        return testing::AssertionFailure() << "the line at " << line.trueOffset << " did not come next";
    }
    return testing::AssertionSuccess();
}

} // namespace

TEST(ChunkLineReaderReturns, ToAnyLineGiveItAndAllBehindItOrAreRefused) {
    std::mt19937 random(1);
    const std::string bytes = clusteredLines(random);
    const ReferenceReading reference = referenceReading(bytes);
    ASSERT_GT(reference.lines.size(), 20U);
    std::size_t there = 0;
    std::size_t refused = 0;
    for (const auto &behaviour : {randomAccess, sequential}) {
        ChunkLineReader reader;
        ASSERT_TRUE(openBytes(reader, bytes, behaviour));
        for (std::size_t step = 0; step < scaledDown(300); ++step) {
            const ReferenceLine &line = reference.lines[random() % reference.lines.size()];
            if (!reader.goTo(line.trueOffset)) {
                ++refused;
                ASSERT_TRUE(
                    openBytes(reader, bytes, behaviour, std::max(line.trueOffset, std::uint64_t{1}) - 1));
            } else {
                ++there;
            }
            ASSERT_TRUE(comesNext(reader, line, line.trueOffset)) << step;
            for (std::size_t more = random() % 3; more > 0 && reader.nextLine(); --more) {
            }
        }
        ASSERT_TRUE(reader.goTo(reference.lines.back().trueOffset) || openBytes(reader, bytes, behaviour));
        EXPECT_TRUE(givesAllLinesFrom(reader, reference.lines, reference.lines.back().trueOffset));
    }
    EXPECT_GT(there, scaledDown(300) / 4);
    EXPECT_GT(refused, scaledDown(300) / 20);
}

TEST(ChunkLineReaderReturns, FromTheEndAreReadFromMemory) {
    const std::string bytes = filler(100'000);
    const ReferenceReading reference = referenceReading(bytes);
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, bytes, sequential));
    for (int round = 0; round < 3; ++round) {
        while (reader.nextLine()) {
        }
        ASSERT_TRUE(reader.goTo(0));
        ASSERT_TRUE(givesAllLinesFrom(reader, reference.lines, 0));
        ASSERT_TRUE(reader.goTo(50'000));
        ASSERT_TRUE(givesAllLinesFrom(reader, reference.lines, 50'000));
    }
    EXPECT_EQ(reader.problem(), "");
}

TEST(ChunkLineReaderReturns, ToBytesThatAreHeldNoLongerAreRefusedAndChangeNothing) {
    const std::string bytes = filler(3 * piece);
    const ReferenceReading reference = referenceReading(bytes);
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, bytes, sequential));
    ASSERT_TRUE(reader.goTo(2 * piece));
    ASSERT_TRUE(reader.nextLine());
    const std::uint64_t offset = trueOffset(reader);
    EXPECT_FALSE(reader.goTo(piece));
    EXPECT_TRUE(givesAllLinesFrom(reader, reference.lines, offset + 1));
}

TEST(ChunkLineReaderReturns, BehindAFailureAreRefused) {
    const std::string bytes = filler(3 * piece);
    PiecewiseDevice::Behaviour fails = randomAccess;
    fails.failsAt = static_cast<qint64>(piece) + 5000;
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, bytes, fails));
    while (reader.nextLine()) {
    }
    EXPECT_FALSE(reader.problem().isEmpty());
    EXPECT_FALSE(reader.goTo(piece + 1000));
    EXPECT_FALSE(reader.goTo(2 * piece));
    EXPECT_FALSE(reader.nextLine());
}

TEST(ChunkLineReaderReturns, WithoutAnOpenSourceAreRefused) {
    ChunkLineReader reader;
    EXPECT_FALSE(reader.goTo(0));
    EXPECT_FALSE(reader.nextLine());
}

// Leaving out what nobody needs between two stretches of a source.

#include "loading/lines/ChunkLineReader.h"
#include "loading/support/ReaderBytes.h"
#include "loading/support/ReadingCheck.h"
#include "loading/support/ReferenceLines.h"
#include "support/SanitizerBuild.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>
#include <vector>

TEST(ChunkLineReaderJumps, LoseNoLineThatBeginsAtTheirOffsetOrBehindIt) {
    std::mt19937 random(1);
    const std::string bytes = clusteredLines(random);
    const ReferenceReading reference = referenceReading(bytes);
    ASSERT_GT(reference.lines.size(), 20U);
    for (const ReferenceLine &line : reference.lines) {
        if (isSanitizerBuild && random() % 8 != 0) {
            continue;
        }
        for (const int before : {1, 0, -1}) {
            const std::uint64_t offset = line.trueOffset - static_cast<std::uint64_t>(before);
            for (const auto &behaviour : {randomAccess, sequential}) {
                if (line.trueOffset == 0 || (behaviour.isSequential && random() % 8 != 0)) {
                    continue;
                }
                ChunkLineReader reader;
                ASSERT_TRUE(openBytes(reader, bytes, behaviour));
                const auto linesBefore = static_cast<std::size_t>(&line - reference.lines.data());
                for (auto lines = std::min<std::size_t>(random() % 3, linesBefore); lines > 0; --lines) {
                    ASSERT_TRUE(reader.nextLine());
                }
                reader.jumpTo(offset);
                ASSERT_TRUE(givesAllLinesFrom(reader, reference.lines, offset)) << offset;
            }
        }
    }
}

TEST(ChunkLineReaderJumps, LeaveOutWhatLiesBetween) {
    const std::string bytes = filler(5 * piece);
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, bytes));
    reader.jumpTo(4 * piece);
    ASSERT_TRUE(reader.nextLine());
    EXPECT_GE(trueOffset(reader), 4 * piece - 1);
    EXPECT_LE(trueOffset(reader), 4 * piece);
}

TEST(ChunkLineReaderJumps, BehindTheEndGiveNoLine) {
    const std::string bytes = filler(10000);
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, bytes));
    reader.jumpTo(bytes.size() + 5000);
    EXPECT_FALSE(reader.nextLine());
    EXPECT_FALSE(reader.nextLine());
}

TEST(ChunkLineReaderJumps, ThatTheDeviceRefusesEndTheReadingWithAProblem) {
    const std::string bytes = filler(2 * piece);
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, bytes, {.refusesToSeek = true}));
    ASSERT_TRUE(reader.nextLine());
    reader.jumpTo(2 * piece - 5000);
    EXPECT_FALSE(reader.nextLine());
    EXPECT_FALSE(reader.problem().isEmpty());
}

TEST(ChunkLineReaderJumps, WithoutAnOpenSourceDoNothing) {
    ChunkLineReader reader;
    reader.jumpTo(100);
    EXPECT_FALSE(reader.nextLine());
}

// Lines, offsets and ends of the reading.

#include "loading/lines/ChunkLineReader.h"

#include "loading/support/ReaderBytes.h"
#include "loading/support/ReadingCheck.h"
#include "loading/support/ReferenceLines.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

Lines linesOf(std::string_view bytes) {
    ChunkLineReader reader;
    openBytes(reader, bytes);
    Lines lines;
    while (reader.nextLine()) {
        lines.emplace_back(reader.line());
    }
    return lines;
}

} // namespace

TEST(ChunkLineReader, AFileEndingWithoutALineFeedLosesItsLastLine) {
    EXPECT_EQ(linesOf("first\nsecond\nlost"), (Lines{"first", "second"}));
    EXPECT_EQ(linesOf("lost"), Lines{});
    EXPECT_EQ(linesOf("first\nlost\r"), Lines{"first"});
}

TEST(ChunkLineReader, CarriageReturnsBeforeLineFeedsGiveTheSameLinesAsLineFeedsAlone) {
    const Lines expected{"DATAH\tA", "", "DATA\t1", "\t"};
    EXPECT_EQ(linesOf("DATAH\tA\n\nDATA\t1\n\t\n"), expected);
    EXPECT_EQ(linesOf("DATAH\tA\r\n\r\nDATA\t1\r\n\t\r\n"), expected);
}

TEST(ChunkLineReader, ALineThatIsOnlyCarriageReturnAndLineFeedIsEmpty) {
    EXPECT_EQ(linesOf("\r\n"), Lines{""});
    EXPECT_EQ(linesOf("\n\r\n\n"), (Lines{"", "", ""}));
}

TEST(ChunkLineReader, OnlyTheCarriageReturnDirectlyBeforeTheLineFeedIsDropped) {
    EXPECT_EQ(linesOf("a\rb\n\r\r\n\rc\n"), (Lines{"a\rb", "\r", "\rc"}));
}

TEST(ChunkLineReader, ACarriageReturnBeforeTheFirstByteReadIsNotOfTheLine) {
    // The last: where the bytes before the start offset are read and thrown away.
    for (const std::size_t start : {std::size_t{1}, std::size_t{2}, limit}) {
        const std::string bytes = std::string(start - 1, 'x') + "\r\nnext\n";
        for (const PiecewiseDevice::Behaviour &behaviour : {randomAccess, sequential}) {
            ChunkLineReader reader;
            ASSERT_TRUE(openBytes(reader, bytes, behaviour, start));
            EXPECT_TRUE(readsByTheRules(reader, bytes, start)) << start;
        }
        ChunkLineReader reader;
        ASSERT_TRUE(openBytes(reader, bytes));
        ASSERT_TRUE(reader.skip(static_cast<qint64>(start)));
        ASSERT_TRUE(reader.nextLine());
        EXPECT_EQ(reader.line().size(), 0U);
    }
}

TEST(ChunkLineReader, NulBytesAndHighBytesAreBytesOfTheLine) {
    using namespace std::string_literals;
    EXPECT_EQ(linesOf("a\0b\n\xff\xc3\n"s), (Lines{"a\0b"s, "\xff\xc3"}));
}

TEST(ChunkLineReader, AnEmptySourceOpensAndHasNoLine) {
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, ""));
    EXPECT_EQ(reader.size(), 0);
    EXPECT_FALSE(reader.nextLine());
    EXPECT_TRUE(reader.problem().isEmpty());
}

TEST(ChunkLineReader, AReaderThatWasNeverOpenedOrWasClosedHasNoLine) {
    ChunkLineReader reader;
    EXPECT_FALSE(reader.nextLine());
    EXPECT_FALSE(reader.skip(1));
    reader.close();
    ASSERT_TRUE(openBytes(reader, "a\nb\n"));
    EXPECT_TRUE(reader.nextLine());
    reader.close();
    EXPECT_FALSE(reader.nextLine());
    EXPECT_FALSE(reader.skip(1));
}

TEST(ChunkLineReader, TheEndOfTheReadingIsFinal) {
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, "a\nlost"));
    EXPECT_TRUE(reader.nextLine());
    EXPECT_FALSE(reader.nextLine());
    EXPECT_FALSE(reader.nextLine());
    EXPECT_FALSE(reader.nextLine());
}

TEST(ChunkLineReader, AReaderOpenedAgainStartsAfresh) {
    const std::string tooLong = filler(piece - 100) + std::string(limit + 101, 'x') + "\n";
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, tooLong));
    EXPECT_TRUE(readsByTheRules(reader, tooLong));
    ASSERT_FALSE(reader.problem().isEmpty());

    const std::string plain = "a\nb\n";
    ASSERT_TRUE(openBytes(reader, plain));
    EXPECT_TRUE(readsByTheRules(reader, plain));
    EXPECT_EQ(reader.shortfall(), 0U);
    EXPECT_EQ(reader.size(), 4);
}

TEST(ChunkLineReader, ALineAcrossTheReadBoundaryIsDeliveredWhole) {
    const std::string line = "DATA\t1600000000\t250000000\t412.345";
    for (const std::string end : {"\n", "\r\n"}) {
        // From a line that ends with the piece to one that begins with the next.
        for (std::size_t before = 0; before <= line.size() + end.size(); ++before) {
            const std::string bytes = filler(piece - before).append(line).append(end).append("last\n");
            ChunkLineReader reader;
            ASSERT_TRUE(openBytes(reader, bytes));
            EXPECT_TRUE(readsByTheRules(reader, bytes)) << before << " bytes before the boundary";
        }
    }
}

TEST(ChunkLineReader, ALineUpToOneMebibyteIsDeliveredWhereverTheReadBoundaryFalls) {
    for (const std::string end : {"\n", "\r\n"}) {
        for (const std::size_t length : {limit - 1, limit}) {
            const std::size_t whole = length + end.size();
            for (const std::size_t before :
                 {std::size_t{0}, std::size_t{1}, length / 2, limit - 1, limit, length, length + 1, whole}) {
                const std::string bytes =
                    filler(piece - before) + std::string(length, 'x') + end + "next\nlast\n";
                ASSERT_EQ(referenceReading(bytes).endsAtLongLine, false);
                ChunkLineReader reader;
                ASSERT_TRUE(openBytes(reader, bytes));
                EXPECT_TRUE(readsByTheRules(reader, bytes))
                    << length << " bytes and " << end.size() << ", " << before << " before the boundary";
            }
        }
    }
}

TEST(ChunkLineReader, ALineLongerThanOneMebibyteStopsTheReadingWhereverTheReadBoundaryFalls) {
    for (const std::string end : {"\n", "\r\n"}) {
        const std::size_t length = limit + 1;
        const std::size_t whole = length + end.size();
        for (const std::size_t before : {std::size_t{0}, std::size_t{1}, length / 2, limit - 1, limit, length,
                                         length + 1, whole, whole + 1, 2 * limit}) {
            const std::string head = filler(piece - before);
            std::string bytes = head;
            bytes.append(length, 'x').append(end).append("never\n");
            ChunkLineReader reader;
            ASSERT_TRUE(openBytes(reader, bytes));
            EXPECT_TRUE(readsByTheRules(reader, bytes))
                << "end of " << end.size() << ", " << before << " before the boundary";
            EXPECT_TRUE(reader.problem().contains(QString::number(head.size())))
                << qPrintable(reader.problem());
        }
    }
}

TEST(ChunkLineReader, ALineLongerThanOneMebibyteStopsTheReadingWhenItIsTheFirst) {
    const std::string bytes = std::string(limit + 1, 'x') + "\nnever\n";
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, bytes));
    EXPECT_FALSE(reader.nextLine());
    EXPECT_FALSE(reader.nextLine());
    EXPECT_FALSE(reader.problem().isEmpty());
}

TEST(ChunkLineReader, ALineLongerThanTheWholeBlockIsReportedToo) {
    for (const std::size_t before : {std::size_t{0}, std::size_t{10}, limit, limit + 1}) {
        const std::string bytes = filler(piece - before) + std::string(piece + 3 * limit, 'x') + "\nnever\n";
        ChunkLineReader reader;
        ASSERT_TRUE(openBytes(reader, bytes));
        EXPECT_TRUE(readsByTheRules(reader, bytes)) << before << " bytes before the boundary";
    }
}

TEST(ChunkLineReader, ALastLineWithoutALineFeedIsAProblemOnlyWhenItIsTooLong) {
    for (const std::size_t before : {std::size_t{0}, std::size_t{10}, limit}) {
        for (const std::size_t length : {limit - 1, limit, limit + 1, 3 * limit}) {
            const std::string bytes = filler(piece - before) + std::string(length, 'x');
            ChunkLineReader reader;
            ASSERT_TRUE(openBytes(reader, bytes));
            EXPECT_TRUE(readsByTheRules(reader, bytes))
                << length << " bytes, " << before << " before the boundary";
        }
    }
}

TEST(ChunkLineReader, ReportedOffsetsFallShortByTheCarriedBytesAndTheShortfallsAddUp) {
    // Lines of 1000 bytes: the pieces end 608, 216 and 824 bytes behind a line's begin.
    const std::string bytes = filler(3 * piece + 5000);
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, bytes));
    std::vector<std::uint64_t> shortfalls;
    std::uint64_t trueOffset = 0;
    while (reader.nextLine()) {
        const std::uint64_t shortfall = trueOffset - reader.lineOffset();
        ASSERT_EQ(reader.shortfall(), shortfall);
        if (shortfalls.empty() || shortfalls.back() != shortfall) {
            shortfalls.push_back(shortfall);
        }
        trueOffset += reader.line().size() + 1;
    }
    EXPECT_EQ(shortfalls, (std::vector<std::uint64_t>{0, 608, 608 + 216, 608 + 216 + 824}));
    EXPECT_EQ(trueOffset, bytes.size());
}

TEST(ChunkLineReader, ARefillThatCarriesNothingLeavesTheOffsetsTrue) {
    const std::string bytes = filler(2 * piece + 4096, 4096);
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, bytes));
    EXPECT_TRUE(readsByTheRules(reader, bytes));
    EXPECT_EQ(reader.shortfall(), 0U);
}

TEST(ChunkLineReader, RandomLinesRoundTheBoundariesAreReadByTheRules) {
    for (std::uint32_t seed = 1; seed <= 30; ++seed) {
        std::mt19937 random(seed);
        const std::string bytes = clusteredLines(random);
        ChunkLineReader reader;
        ASSERT_TRUE(openBytes(reader, bytes, seed % 2 == 0 ? sequential : randomAccess));
        EXPECT_TRUE(readsByTheRules(reader, bytes)) << "seed " << seed;
    }
}

TEST(ChunkLineReader, RandomBytesAreReadByTheRules) {
    for (std::uint32_t seed = 1; seed <= 300; ++seed) {
        std::mt19937 random(seed);
        std::string bytes(random() % 200, '\0');
        std::generate(bytes.begin(), bytes.end(), [&random] { return "\n\n\r\rab\t\0"[random() % 8]; });
        const std::size_t start = random() % (bytes.size() + 3);
        ChunkLineReader reader;
        ASSERT_TRUE(openBytes(reader, bytes, seed % 2 == 0 ? sequential : randomAccess, start));
        EXPECT_TRUE(readsByTheRules(reader, bytes, start)) << "seed " << seed;
    }
}

TEST(ChunkLineReader, WithTwoBlocksLinesAndOffsetsAreTheSameAndHoldUntilTheRefillAfterNext) {
    std::string bytes;
    for (std::size_t i = 0; bytes.size() < static_cast<std::size_t>(4 * ChunkLineReader::readSize); ++i) {
        bytes.append(i % 5000, static_cast<char>('a' + i % 26)).append(i % 3 == 0 ? "\r\n" : "\n");
    }
    const ReferenceReading expected = referenceReading(bytes);
    for (const PiecewiseDevice::Behaviour &behaviour : {randomAccess, sequential}) {
        ChunkLineReader reader;
        ASSERT_TRUE(openBytes(reader, bytes, behaviour));
        reader.addBlock();
        std::vector<std::string_view> held; // of the present block of bytes and the one before
        std::size_t before = 0;
        std::size_t line = 0;
        int refills = 0;
        while (true) {
            if (!reader.nextLineOfBlock()) {
                for (std::size_t i = 0; i < held.size(); ++i) {
                    ASSERT_EQ(held[i], expected.lines[line - held.size() + i].text);
                }
                held.erase(held.begin(), held.begin() + static_cast<std::ptrdiff_t>(before));
                before = held.size();
                if (!reader.refill()) {
                    break;
                }
                ++refills;
            }
            ASSERT_LT(line, expected.lines.size());
            ASSERT_EQ(reader.lineOffset(), expected.lines[line].reportedOffset);
            ASSERT_EQ(reader.lineOffset() + reader.shortfall(), expected.lines[line].trueOffset);
            held.push_back(reader.line());
            ++line;
        }
        EXPECT_EQ(line, expected.lines.size());
        EXPECT_EQ(refills, 4);
    }
}

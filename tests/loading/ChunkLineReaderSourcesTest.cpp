// Devices that behave badly, plain files, start offsets and skips.

#include "loading/lines/ChunkLineReader.h"
#include "loading/support/ReaderBytes.h"
#include "loading/support/ReadingCheck.h"
#include "loading/support/TempFolder.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

TEST(ChunkLineReader, DevicesThatGiveLessThanAskedForGiveTheSameLinesAndOffsets) {
    std::mt19937 random(7);
    const std::string bytes = filler(piece + 5000, 777) + clusteredLines(random).substr(piece);
    for (const bool isSequential : {false, true}) {
        for (const qint64 largestPiece : {qint64{50}, qint64{4096}, qint64{100'000}, qint64{5'000'000}}) {
            const PiecewiseDevice::Behaviour behaviour{.isSequential = isSequential,
                                                       .largestPiece = largestPiece};
            ChunkLineReader reader;
            ASSERT_TRUE(openBytes(reader, bytes, behaviour));
            EXPECT_TRUE(readsByTheRules(reader, bytes)) << "pieces of up to " << largestPiece;
        }
    }
}

TEST(ChunkLineReader, DevicesThatGiveSingleBytesGiveTheSameLines) {
    const std::string bytes = "DATAH\tA\r\n\r\nDATA\t1\n\nlast\r\nlost";
    for (const bool isSequential : {false, true}) {
        for (std::size_t start = 0; start <= bytes.size() + 1; ++start) {
            ChunkLineReader reader;
            ASSERT_TRUE(openBytes(reader, bytes, {.isSequential = isSequential, .largestPiece = 1}, start));
            EXPECT_TRUE(readsByTheRules(reader, bytes, start)) << "from " << start;
        }
    }
}

TEST(ChunkLineReader, ReadingFromAnOffsetGivesTheLinesBehindItAtTheirOffsets) {
    const std::string bytes = filler(2 * piece + 70'000);
    for (const PiecewiseDevice::Behaviour &behaviour :
         {randomAccess, sequential,
          PiecewiseDevice::Behaviour{.isSequential = true, .largestPiece = 70'000}}) {
        // The last but one is more than the whole block holds.
        for (const std::size_t start : {std::size_t{1}, std::size_t{999}, std::size_t{1000}, piece - 1, piece,
                                        piece + 1, piece + limit + 5, bytes.size() - 1000}) {
            ChunkLineReader reader;
            ASSERT_TRUE(openBytes(reader, bytes, behaviour, start));
            EXPECT_TRUE(readsByTheRules(reader, bytes, start)) << "from " << start;
        }
    }
}

TEST(ChunkLineReader, ReadingFromAnOffsetAtOrBehindTheEndGivesNoLine) {
    const std::string bytes = "a\nb\n";
    for (const PiecewiseDevice::Behaviour &behaviour : {randomAccess, sequential}) {
        for (const std::size_t start : {std::size_t{4}, std::size_t{5}, std::size_t{1000}}) {
            ChunkLineReader reader;
            ASSERT_TRUE(openBytes(reader, bytes, behaviour, start));
            EXPECT_FALSE(reader.nextLine());
            EXPECT_TRUE(reader.problem().isEmpty());
        }
    }
}

TEST(ChunkLineReader, SkippingPassesOverBytes) {
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, "a\nbcd\nef\n"));
    EXPECT_TRUE(reader.skip(0));
    EXPECT_TRUE(reader.skip(3));
    ASSERT_TRUE(reader.nextLine());
    EXPECT_EQ(reader.line(), "cd");
    EXPECT_EQ(reader.lineOffset(), 3U);
    EXPECT_TRUE(reader.skip(3));
    EXPECT_FALSE(reader.nextLine());
}

TEST(ChunkLineReader, SkippingOverTheReadBoundaryRefillsOnce) {
    const std::string bytes = filler(3 * piece);
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, bytes));
    while (reader.nextLine() && reader.lineOffset() < piece - 5000) {
    }
    const std::uint64_t next = reader.lineOffset() + 1000;
    const qint64 count = 6'000'000;
    ASSERT_TRUE(reader.skip(count));
    ASSERT_TRUE(reader.nextLine());
    EXPECT_EQ(reader.lineOffset() + reader.shortfall(), next + static_cast<std::uint64_t>(count));
    EXPECT_EQ(reader.shortfall(), piece - next);
    EXPECT_EQ(reader.line(), std::string_view(bytes).substr(next + 6'000'000, 999));
}

TEST(ChunkLineReader, SkippingMoreThanIsLeftFails) {
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, "a\nb\n"));
    EXPECT_FALSE(reader.skip(5));
    ASSERT_TRUE(openBytes(reader, "a\nb\n"));
    EXPECT_TRUE(reader.skip(4));
    EXPECT_FALSE(reader.skip(1));
    EXPECT_TRUE(reader.problem().isEmpty());
}

TEST(ChunkLineReader, ASkipThatFailsLeavesTheReadingWhereItWas) {
    const std::string bytes = filler(2 * piece);
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, bytes));
    // More is buffered than a refill can carry over.
    EXPECT_FALSE(reader.skip(static_cast<qint64>(piece) + 1));
    EXPECT_TRUE(reader.problem().isEmpty()) << qPrintable(reader.problem());
    EXPECT_TRUE(readsByTheRules(reader, bytes));
}

TEST(ChunkLineReader, SkipsThatFailBehindARefillLeaveTheReadingWhereItWas) {
    const std::string bytes = filler(8'391'600, 100);
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, bytes));
    while (reader.nextLine() && reader.lineOffset() < piece - 800) {
    }
    const std::uint64_t next = reader.lineOffset() + 100;
    EXPECT_FALSE(reader.skip(10'000));
    EXPECT_FALSE(reader.skip(10'000));
    EXPECT_FALSE(reader.skip(20'000));
    EXPECT_TRUE(reader.problem().isEmpty()) << qPrintable(reader.problem());
    for (std::uint64_t offset = next; offset < bytes.size(); offset += 100) {
        ASSERT_TRUE(reader.nextLine()) << offset;
        ASSERT_EQ(reader.lineOffset() + reader.shortfall(), offset);
        ASSERT_EQ(reader.line(), std::string_view(bytes).substr(offset, 99));
    }
    EXPECT_FALSE(reader.nextLine());
}

TEST(ChunkLineReader, ADeviceThatFailsGivesTheLinesBeforeAndAProblem) {
    const std::string bytes = filler(16'790'000);
    for (const bool isSequential : {false, true}) {
        for (const std::size_t failure : {std::size_t{0}, std::size_t{1}, std::size_t{999}, std::size_t{1000},
                                          piece - 1, piece, piece + 1, 2 * piece, bytes.size() - 1}) {
            ChunkLineReader reader;
            ASSERT_TRUE(openBytes(reader, bytes,
                                  {.isSequential = isSequential,
                                   .largestPiece = 60'000,
                                   .failsAt = static_cast<qint64>(failure)}));
            std::size_t lines = 0;
            while (reader.nextLine()) {
                ASSERT_EQ(reader.line(), std::string_view(bytes).substr(lines * 1000, 999));
                ++lines;
            }
            EXPECT_EQ(lines, failure / 1000) << "failure at " << failure;
            EXPECT_TRUE(reader.problem().contains("the cable was pulled")) << "failure at " << failure;
        }
    }
}

TEST(ChunkLineReader, ADeviceThatFailsBeforeTheStartOffsetGivesNoLineAndAProblem) {
    const std::string bytes = filler(10'000);
    ChunkLineReader reader;
    openBytes(reader, bytes, {.isSequential = true, .largestPiece = 100, .failsAt = 3000}, 5000);
    EXPECT_FALSE(reader.nextLine());
    EXPECT_TRUE(reader.problem().contains("the cable was pulled"));
}

TEST(ChunkLineReader, ADeviceThatRefusesToSeekGivesNoLineAndAProblem) {
    const std::string bytes = filler(10'000);
    ChunkLineReader reader;
    openBytes(reader, bytes, {.refusesToSeek = true}, 5000);
    EXPECT_FALSE(reader.nextLine());
    EXPECT_FALSE(reader.problem().isEmpty());
}

TEST(ChunkLineReader, ASourceThatEndsBeforeItsSizeGivesItsLinesAndAProblem) {
    const std::string bytes = filler(16'790'000);
    for (const bool isSequential : {false, true}) {
        for (const std::size_t end :
             {std::size_t{0}, std::size_t{500}, std::size_t{1000}, piece, piece + 1, bytes.size() - 1}) {
            ChunkLineReader reader;
            ASSERT_TRUE(
                openBytes(reader, bytes, {.isSequential = isSequential, .endsAt = static_cast<qint64>(end)}));
            std::size_t lines = 0;
            while (reader.nextLine()) {
                ++lines;
            }
            EXPECT_EQ(lines, end / 1000) << "end at " << end;
            EXPECT_FALSE(reader.problem().isEmpty()) << "end at " << end;
        }
    }
}

TEST(ChunkLineReader, ADeviceThatFailsInALineThatIsTooLongHasFailedFirst) {
    const std::string bytes = "a\n" + std::string(3 * limit, 'x') + "\nb\n";
    ChunkLineReader reader;
    ASSERT_TRUE(openBytes(reader, bytes, {.failsAt = static_cast<qint64>(2 * limit)}));
    EXPECT_TRUE(reader.nextLine());
    EXPECT_FALSE(reader.nextLine());
    EXPECT_TRUE(reader.problem().contains("the cable was pulled")) << qPrintable(reader.problem());
}

TEST(ChunkLineReader, APlainFileIsReadByTheRules) {
    const TempFolder folder;
    std::mt19937 random(11);
    const std::string bytes = clusteredLines(random);
    const QString path = folder.write("plain.data", bytes);
    for (const std::size_t start : {std::size_t{0}, std::size_t{12'345}}) {
        ChunkLineReader reader;
        ASSERT_TRUE(reader.open(path, QString(), static_cast<qint64>(start)));
        EXPECT_EQ(reader.size(), static_cast<qint64>(bytes.size()));
        EXPECT_TRUE(readsByTheRules(reader, bytes, start));
    }
}

TEST(ChunkLineReader, AFileThatIsCutShortWhileItIsReadGivesItsLinesAndAProblem) {
    const TempFolder folder;
    const QString path = folder.write("shrinking.data", filler(2 * piece));
    ChunkLineReader reader;
    ASSERT_TRUE(reader.open(path, QString()));
    ASSERT_TRUE(QFile::resize(path, static_cast<qint64>(piece + 100'000)));
    std::size_t lines = 0;
    while (reader.nextLine()) {
        ++lines;
    }
    EXPECT_EQ(lines, (piece + 100'000) / 1000);
    EXPECT_FALSE(reader.problem().isEmpty());
}

TEST(ChunkLineReader, AFileThatGrowsWhileItIsReadGivesWhatItHeldAtFirst) {
    const TempFolder folder;
    const std::string bytes = filler(5000);
    const QString path = folder.write("growing.data", bytes);
    ChunkLineReader reader;
    ASSERT_TRUE(reader.open(path, QString()));
    folder.write("growing.data", bytes + "more\n");
    EXPECT_TRUE(readsByTheRules(reader, bytes));
}

TEST(ChunkLineReader, AMissingFileDoesNotOpen) {
    const TempFolder folder;
    ChunkLineReader reader;
    EXPECT_FALSE(reader.open(folder.path("missing.data"), QString()));
    EXPECT_FALSE(reader.problem().isEmpty());
    EXPECT_FALSE(reader.nextLine());
    EXPECT_FALSE(reader.open(folder.path("missing.ghg"), "a.data"));
    EXPECT_FALSE(reader.problem().isEmpty());
}

TEST(ChunkLineReader, AFileThatVanishedDoesNotOpenAgain) {
    const TempFolder folder;
    const QString path = folder.write("gone.data", "a\n");
    ChunkLineReader reader;
    ASSERT_TRUE(reader.open(path, QString()));
    EXPECT_TRUE(reader.nextLine());
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_FALSE(reader.open(path, QString()));
    EXPECT_FALSE(reader.nextLine());
}

TEST(ChunkLineReader, AFolderDoesNotOpen) {
    const TempFolder folder;
    ChunkLineReader reader;
    EXPECT_FALSE(reader.open(folder.path("."), QString()));
    EXPECT_FALSE(reader.problem().isEmpty());
    EXPECT_FALSE(reader.open(folder.path("."), "a.data"));
    EXPECT_FALSE(reader.problem().isEmpty());
}

TEST(ChunkLineReader, ANamedPipeDoesNotOpenAndIsNotWaitedFor) {
    const TempFolder folder;
    const QString path = folder.makePipe("pipe.data");
    ChunkLineReader reader;
    EXPECT_FALSE(reader.open(path, QString()));
    EXPECT_FALSE(reader.problem().isEmpty());
    EXPECT_FALSE(reader.open(path, "a.data"));
    EXPECT_FALSE(reader.problem().isEmpty());
}

// Lines, offsets and ends of the reading, over devices in memory and plain files.

#include "loading/lines/ChunkLineReader.h"

#include "loading/support/PiecewiseDevice.h"
#include "loading/support/ReadingCheck.h"
#include "loading/support/TempFolder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::size_t piece = 8'388'608; // read at a time
constexpr std::size_t limit = 1'048'576; // of a line

const PiecewiseDevice::Behaviour randomAccess{};
const PiecewiseDevice::Behaviour sequential{.isSequential = true};

bool openBytes(ChunkLineReader &reader, std::string_view bytes, PiecewiseDevice::Behaviour behaviour = {},
               std::size_t startOffset = 0) {
    return reader.openDevice(std::make_unique<PiecewiseDevice>(bytes, behaviour),
                             static_cast<qint64>(startOffset));
}

std::vector<std::string> linesOf(std::string_view bytes) {
    ChunkLineReader reader;
    openBytes(reader, bytes);
    std::vector<std::string> lines;
    while (reader.nextLine()) {
        lines.emplace_back(reader.line());
    }
    return lines;
}

using Lines = std::vector<std::string>;

// Lines of `length` bytes, the line feed included, until there are `total` bytes; the last may be longer.
std::string filler(std::size_t total, std::size_t length = 1000) {
    std::string text;
    text.reserve(total + length);
    while (text.size() + 2 * length <= total) {
        text.append(length - 1, static_cast<char>('a' + text.size() / length % 26)).push_back('\n');
    }
    if (text.size() < total) {
        text.append(total - text.size() - 1, 'z').push_back('\n');
    }
    return text;
}

// Lines of many lengths up to some MiB, whose ends lie thick round the ends of the pieces that are read.
std::string clusteredLines(std::mt19937 &random) {
    const auto upTo = [&random](std::size_t most) { return std::size_t{random()} % (most + 1); };
    std::string text;
    const std::size_t pieces = 1 + upTo(2);
    for (std::size_t k = 1; k <= pieces; ++k) {
        // Long lines first, so that few bytes of any line are left to the piece's end.
        const std::size_t near = k * piece - upTo(1) * (limit - 3 + upTo(6)) - upTo(40);
        if (near > text.size()) {
            text += filler(near - text.size(), 1 + upTo(300'000));
        }
        while (text.size() < k * piece + 200) {
            const bool isLong = upTo(60) == 0;
            const std::size_t length = isLong ? limit - 2 + upTo(2) : upTo(30);
            text.append(length, static_cast<char>(upTo(5) == 0 ? '\r' : 'x'));
            text.append(upTo(1) == 0 ? "\n" : "\r\n");
        }
    }
    if (upTo(3) == 0) {
        text.append(limit + 1 + upTo(3), 'L').push_back('\n');
    }
    text.append(upTo(50), 'u'); // no line feed behind it
    return text;
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

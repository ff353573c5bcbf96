// A file that is loaded on several threads: everything comes out as with one, to the last bit.

#include "loading/ParsingThreads.h"

#include "data/RandomDataFile.h"
#include "independent/HostileDataFile.h"
#include "loading/support/DataText.h"
#include "loading/support/EverythingLoaded.h"
#include "loading/support/TempFolder.h"
#include "loading/support/ZipWriting.h"
#include "support/FaultyReads.h"
#include "support/HostileInputs.h"
#include "support/LoadedSource.h"
#include "support/RecordComparison.h"
#include "support/Repeated.h"
#include "support/SanitizerBuild.h"

#include <QFile>

#include <array>
#include <filesystem>
#include <gtest/gtest.h>
#include <span>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr std::uint32_t start = 1'600'000'000;
// The first two where each load takes very long.
constexpr std::array<unsigned, 4> threadCounts{2, 8, 1, 3};
constexpr std::size_t countsUsed = isSanitizerBuild ? 2 : threadCounts.size();
constexpr std::int64_t anySize = -1; // no source is too small
constexpr auto oneBlock = static_cast<std::size_t>(ChunkLineReader::readSize);

// Loads the file with no thread beside the one that loads, then with each number of them.
void expectSameOnAllThreads(const QString &path, const std::string &what,
                            const EverythingLoaded::Watcher &watch = {}) {
    const std::string expected = textOf(EverythingLoaded(path, nullptr, watch));
    for (const unsigned count : std::span(threadCounts).first(countsUsed)) {
        ParsingThreads threads(count, anySize);
        const EverythingLoaded loaded(path, &threads, watch);
        EXPECT_EQ(firstDifference(textOf(loaded), expected), "") << what << ", threads: " << count;
    }
}

std::string randomText(std::uint64_t seed, int lines, std::size_t longestRemark = 12) {
    RandomDataFile::Options options;
    options.seed = seed;
    options.start = start;
    options.lines = lines;
    options.timezone = seed % 3 == 0 ? "" : "Europe/Berlin";
    options.wallZone = "Europe/Berlin";
    options.longestRemark = longestRemark;
    return RandomDataFile(options).text();
}

// Records of many columns, each of which begins new periods: nothing takes more memory for its bytes.
std::string recordsThatTakeMemory(int count) {
    constexpr std::size_t columns = 9000;
    std::string text = "DATAH\tSECONDS" + repeated("\tA", columns) + '\n';
    const std::string values = repeated("\t1", columns) + '\n';
    for (int i = 1; i <= count; ++i) {
        text += "DATA\t" + std::to_string(i * 7200) + values;
    }
    return text;
}

// The byte at which a file is read no further for want of memory.
std::size_t endOfReading(const QString &path) {
    const QString problem = EverythingLoaded(path, nullptr).report.problem;
    const QString before = QStringLiteral("Reading ends at byte ");
    const int at = problem.indexOf(before);
    if (at < 0) {
        throw std::runtime_error("read to its end: " + problem.toStdString());
    }
    return problem.mid(at + before.size()).section(QChar(' '), 0, 0).toULongLong();
}

class ParsingOnThreads : public testing::Test {
protected:
    QString write(std::string_view text) const { return folder_.write("AB-12-a.data", text); }

    TempFolder folder_;
};

TEST_F(ParsingOnThreads, ExamplesComeOutTheSame) {
    for (const auto &entry : std::filesystem::directory_iterator(FVQA_EXAMPLES_DIR)) {
        expectSameOnAllThreads(QString::fromStdString(entry.path().string()), entry.path().string());
    }
}

TEST_F(ParsingOnThreads, BlocksOfAllTagsAndDamagedLinesComeOutTheSame) {
    for (std::uint64_t seed = 1; seed <= scaledDown(60); ++seed) {
        expectSameOnAllThreads(write(randomText(seed, 3000)), "seed " + std::to_string(seed));
    }
}

TEST_F(ParsingOnThreads, FilesOfTheWorstKindComeOutTheSame) {
    for (std::uint64_t seed = 1; seed <= scaledDown(60); ++seed) {
        HostileDataFile file(seed, FVQA_ZONEINFO_DIR);
        expectSameOnAllThreads(write(file.source(3000)), "seed " + std::to_string(seed));
    }
}

TEST_F(ParsingOnThreads, FilesThatAreMadeToCostMuchComeOutTheSame) {
    for (const HostileInput &input : hostileInputs()) {
        expectSameOnAllThreads(write(input.make(isSanitizerBuild ? 100'000 : 500'000)), input.name);
    }
}

TEST_F(ParsingOnThreads, LinesOverTheEndsOfBlocksOfBytesComeOutTheSame) {
    for (std::uint64_t seed = 1; seed <= (isSanitizerBuild ? 1 : 3); ++seed) {
        const std::string text = randomText(seed, 20'000, 5000);
        ASSERT_GT(text.size(), 2 * oneBlock);
        expectSameOnAllThreads(write(text), "seed " + std::to_string(seed));
    }
}

TEST_F(ParsingOnThreads, LongRecordLinesOverManyBlocksOfBytesComeOutTheSame) {
    RandomNumbers random(9);
    std::string text = keyLines("QA330") + "DATAH\tSECONDS\tA\tREMARK\tB\n";
    for (std::uint32_t i = 0; text.size() < 5 * oneBlock; ++i) {
        text += "DATA\t" + std::to_string(start + i) + '\t' + std::to_string(random.between(-99999, 99999)) +
                '\t' + std::string(random.below(9000), 'x') + '\t' + std::to_string(i * 0.25) + '\n';
    }
    expectSameOnAllThreads(write(text), "long lines");
}

TEST_F(ParsingOnThreads, ManyPlainRecordsOfSeveralTagsComeOutTheSame) {
    std::string text = keyLines("QA330") + headerLine() + "DATASTATH\tSECONDS\tT\tU\tCHK\n";
    for (std::uint32_t i = 0; text.size() < 4 * oneBlock; ++i) {
        text += recordLines(start + i, 1);
        if (i % 10 == 0) {
            text += "DATASTAT\t" + std::to_string(start + i) + "\t" + std::to_string(i * 0.37) + "\t1e3\t" +
                    std::to_string(i % 256) + '\n';
        }
        if (i % 100'000 == 99'999) {
            text += i % 200'000 == 99'999 ? "SN:\t" + std::to_string(i) + '\n' : headerLine();
        }
    }
    expectSameOnAllThreads(write(text), "tags by turns");
}

TEST_F(ParsingOnThreads, MembersOfArchivesComeOutTheSame) {
    const QString path = folder_.path("a.ghg");
    for (std::uint64_t seed = 4; seed <= 6; ++seed) {
        HostileDataFile file(seed, FVQA_ZONEINFO_DIR);
        std::vector<ZipEntry> members;
        for (const int lines : {2000, 1, 3000}) {
            members.push_back({QString::number(members.size()) + ".data", file.source(lines)});
        }
        members.push_back({"large.data", randomText(seed, 6000, 5000)});
        members.push_back({"last.data", file.source(500)});
        ASSERT_GT(members[3].bytes.size(), oneBlock);
        writeZip(path, members);
        expectSameOnAllThreads(path, "seed " + std::to_string(seed));
    }
}

TEST_F(ParsingOnThreads, ALoadThatIsCancelledStopsBehindTheSameLine) {
    const QString path = write(dataText("QA330", start, 500'000));
    for (const int last : {0, 1, 30, 74, 99}) {
        expectSameOnAllThreads(
            path, std::to_string(last) + " %",
            [last](int percent, std::atomic<bool> &cancelled) { cancelled = cancelled || percent >= last; });
    }
}

// The lines on their way are told of when one comes that depends on them.
TEST_F(ParsingOnThreads, ALoadThatIsCancelledBeforeAKeyLineStopsBehindTheSameLine) {
    const QString path =
        write(dataText("QA330", start, 1500) + "SN:\t1\n" + headerLine() + recordLines(start, 500));
    expectSameOnAllThreads(path, "key line", [](int percent, std::atomic<bool> &cancelled) {
        cancelled = cancelled || percent > 0;
    });
}

TEST_F(ParsingOnThreads, AFileThatAsksForTooMuchMemoryEndsAtTheSameRecord) {
    if (isSanitizerBuild) {
        GTEST_SKIP() << "takes too much memory and time there";
    }
    std::string text = recordsThatTakeMemory(1500);
    const std::size_t end = endOfReading(write(text));
    ASSERT_LT(end, text.size());
    // A line that must not be in the report: the reading ends some records before.
    text.resize(text.find('\n', end + 100'000) + 1);
    text += std::string(ChunkLineReader::maximumLineLength + 1, 'x') + '\n';
    expectSameOnAllThreads(write(text), "too many periods");
}

TEST_F(ParsingOnThreads, NothingIsSaidOfBytesBehindTheLastRecordForWhichThereIsMemory) {
    if (isSanitizerBuild) {
        GTEST_SKIP() << "takes too much memory and time there";
    }
    const std::string records = recordsThatTakeMemory(1500);
    // Lines that mean nothing, until the reading ends a little before the end of a block of bytes.
    std::string filler;
    std::size_t end = endOfReading(write(records));
    for (int tries = 0; tries < 20 && (end > 2 * oneBlock - 50'000 || end < 2 * oneBlock - 500'000);
         ++tries) {
        filler.append((2 * oneBlock - 200'000 - end) / 2, 'x');
        for (std::size_t at = 1000; at < filler.size(); at += 1000) {
            filler[at] = '\n';
        }
        end = endOfReading(write(filler + '\n' + records));
    }
    ASSERT_LT(end, 2 * oneBlock - 50'000);
    ASSERT_GT(end, 2 * oneBlock - 500'000);
    const QString path = write(filler + '\n' + records);
    const FaultyReads faults(path.toStdString(), {.failsAt = 2 * oneBlock + 1});
    expectSameOnAllThreads(path, "a disk that fails");
}

TEST_F(ParsingOnThreads, ADiskThatFailsAndAFileThatEndsEarlyGiveTheSameReport) {
    const std::string text = randomText(7, 10'000, 5000);
    const QString path = write(text);
    ASSERT_GT(text.size(), 2 * oneBlock);
    for (const std::size_t at : {std::size_t{0}, std::size_t{3000}, oneBlock - 1, oneBlock, oneBlock + 1,
                                 2 * oneBlock, 2 * oneBlock + 77777, text.size() - 1}) {
        for (const auto &fault : {FaultyReads::Fault{.failsAt = at}, FaultyReads::Fault{.endsAt = at},
                                  FaultyReads::Fault{.failsAt = at, .largestPiece = 100'003}}) {
            const FaultyReads faults(path.toStdString(), fault);
            expectSameOnAllThreads(path, "fault at " + std::to_string(at));
        }
    }
}

TEST_F(ParsingOnThreads, ALineThatIsTooLongEndsTheReadingAtTheSameByte) {
    const std::string longLine =
        "DATA\t" + std::string(ChunkLineReader::maximumLineLength, '1') + '\n' + recordLines(start, 10);
    for (const std::size_t before : {std::size_t{1000}, oneBlock - 5000, oneBlock + 1000}) {
        std::string text = dataText("QA330", start, 400'000);
        text.resize(text.rfind('\n', before) + 1);
        expectSameOnAllThreads(write(text + longLine), std::to_string(before));
    }
}

TEST_F(ParsingOnThreads, RecordsAreReadAgainAsTheyWereLoaded) {
    const std::string text = randomText(8, 20'000, 1500);
    ASSERT_GT(text.size(), oneBlock);
    const QString path = write(text);
    ParsingThreads threads(2, anySize);
    const EverythingLoaded expected(path, nullptr);
    const EverythingLoaded loaded(path, &threads);
    ASSERT_EQ(loaded.data.fragments().size(), expected.data.fragments().size());
    std::size_t records = 0;
    for (std::size_t i = 0; i < loaded.data.fragments().size(); ++i) {
        const std::vector<Record> again = readAgain(fragmentAt(loaded.data, i));
        records += again.size();
        EXPECT_TRUE(sameRecords(again, readAgain(fragmentAt(expected.data, i)))) << i;
    }
    EXPECT_GT(records, 1000U);
}

TEST_F(ParsingOnThreads, LoadsThatShareThreadsComeOutTheSame) {
    constexpr std::size_t loads = 5;
    std::vector<QString> paths;
    std::vector<std::string> expected;
    for (std::size_t i = 0; i < loads; ++i) {
        // The last ones go on alone when the first have ended.
        const std::string text = randomText(10 + i, 1000 + static_cast<int>(i) * 3000, 2000);
        paths.push_back(folder_.write(QString::number(i) + ".data", text));
        expected.push_back(textOf(EverythingLoaded(paths.back(), nullptr)));
    }
    for (const unsigned count : {3U, 8U}) {
        ParsingThreads threads(count, anySize);
        std::vector<std::string> texts(loads);
        std::vector<std::thread> loaders;
        for (std::size_t i = 0; i < loads; ++i) {
            loaders.emplace_back([&, i] { texts[i] = textOf(EverythingLoaded(paths[i], &threads)); });
        }
        for (std::thread &loader : loaders) {
            loader.join();
        }
        for (std::size_t i = 0; i < loads; ++i) {
            EXPECT_EQ(firstDifference(texts[i], expected[i]), "") << i << " of " << count;
        }
    }
}

TEST_F(ParsingOnThreads, ASmallSourceOrOneThreadIsNotHelped) {
    ParsingThreads two(2);
    const ParsingThreads::Load load(&two);
    EXPECT_FALSE(two.canHelpWith(ParsingThreads::smallSource));
    EXPECT_TRUE(two.canHelpWith(ParsingThreads::smallSource + 1));
    const ParsingThreads::Load other(&two);
    EXPECT_FALSE(two.canHelpWith(ParsingThreads::smallSource + 1));
    ParsingThreads one(1);
    const ParsingThreads::Load alone(&one);
    EXPECT_FALSE(one.canHelpWith(ParsingThreads::smallSource + 1));
}

} // namespace

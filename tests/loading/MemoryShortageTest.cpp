// Memory that runs out while a file loads, at each place in turn where the thread that loads asks for some.

#include "data/RecordCursor.h"
#include "loading/QDataSet.h"
#include "loading/lines/ChunkLineReader.h"
#include "loading/support/DataText.h"
#include "loading/support/EverythingLoaded.h"
#include "loading/support/TempFolder.h"
#include "loading/support/ZipWriting.h"
#include "support/FailingAllocations.h"

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Lasting = FailingAllocations::Lasting;

constexpr std::uint32_t start = 1'600'000'000;
constexpr std::int64_t anySize = -1;  // no source is too small
constexpr int wideWords = 16'777'217; // diagnostic words from here on do not fit into single precision

std::string recordsOfAll(int from, int count) {
    std::string text;
    for (int i = from; i < from + count; ++i) {
        const std::string seconds = std::to_string(start + static_cast<std::uint32_t>(i) * 100);
        // The word's extremes do not fit into single precision from the middle on.
        const std::string word = std::to_string(i < from + count / 2 ? i : wideWords + i);
        text += "DATA\t" + seconds + "\t0\t" + word + "\t" + std::to_string(i % 17) + "\t-1e3\n";
        if (i % 7 == 0) {
            text += "DATASTAT\t" + seconds + '\t' + std::to_string(i) + "\n";
        }
    }
    return text;
}

// Blocks of two tags, of periods of all lengths, and texts too long for a string's own room.
std::string textOfAll(int records) {
    const std::string header = "DATAH\tSECONDS\tNANOSECONDS\tDIAG\tCH4\tCH4_MOLE_FRACTION_OF_AIR(ppm)\n";
    return keyLines("An instrument of a long name", "Europe/Berlin") +
           "Serial Number:\tQA330-0000000000001\n" + "DATADIAGH\tFirst of the bits\tSecond of the bits\n" +
           header + "DATASTATH\tSECONDS\tTEMPERATURE\n" + recordsOfAll(0, records) + header +
           recordsOfAll(records, records / 3);
}

// What came of a load that ran short of memory.
struct Outcome {
    DataSet data;
    std::vector<QString> messages;
    int lastPercent = -1;
    bool hasThrown = false;
    bool wasShort = false;
};

std::size_t recordsIn(const DataSet &data) {
    std::size_t count = 0;
    for (const auto &fragment : data.fragments()) {
        count += fragment->recordCount();
    }
    return count;
}

// The time of the record that has this diagnostic word: see recordsOfAll.
double timeOfWord(double word) {
    return start + 100 * (word < wideWords ? word : word - wideWords);
}

// Whatever records are missing, a period has those of its own time only, each value in its column.
void expectRightPeriods(const DataFragment &fragment) {
    const std::ptrdiff_t word = fragment.valueIndex("DIAG");
    const std::ptrdiff_t constant = fragment.valueIndex("CH4_MOLE_FRACTION_OF_AIR(ppm)");
    if (word < 0 || constant < 0) {
        return;
    }
    for (std::size_t level = 0; level < DataFragment::periods.size(); ++level) {
        const AveragedSeries &series = fragment.series(level);
        for (std::size_t i = 0; i < series.size(); ++i) {
            const auto value = [&](Statistic statistic, std::ptrdiff_t column) {
                return series.value(statistic, i, static_cast<std::size_t>(column));
            };
            for (const Statistic statistic : {Statistic::average, Statistic::maximum, Statistic::minimum}) {
                ASSERT_EQ(value(statistic, constant), -1000) << "level " << level << ", period " << i;
            }
            const double end = series.stamps()[i].seconds;
            for (const Statistic statistic : {Statistic::maximum, Statistic::minimum}) {
                const double time = timeOfWord(value(statistic, word));
                ASSERT_LE(time, end) << "level " << level;
                // A record at the begin is in when it comes first after a gap.
                ASSERT_GE(time, end - DataFragment::periods.at(level)) << "level " << level;
            }
            ASSERT_TRUE(i == 0 || series.stamps()[i - 1].seconds < end);
        }
    }
}

// What was lost for want of memory is found again when there is some, and nothing that was there is lost.
void expectReadAgain(const DataFragment &fragment) {
    std::uint32_t count = 0;
    for (DataFragment::_ContextType records(fragment, wholeRangeStart, wholeRangeEnd); !records.isExhausted();
         records.advance()) {
        ++count;
    }
    EXPECT_GE(count, fragment.recordCount());
}

// A whole load, or a message and no more records than the file holds. A line that was lost may have named the
// columns of those behind it.
void expectDefinedEnd(const Outcome &outcome, const DataSet &whole) {
    EXPECT_FALSE(outcome.hasThrown);
    EXPECT_EQ(outcome.lastPercent, 100);
    if (outcome.messages.empty()) {
        EXPECT_EQ(firstDifference(textOf(outcome.data), textOf(whole)), "");
        return;
    }
    EXPECT_TRUE(outcome.wasShort) << outcome.messages.front().toStdString();
    const QString &last = outcome.messages.back();
    EXPECT_TRUE(last == "There is not enough memory: records may be missing" ||
                last == "Loading failed: std::bad_alloc")
        << last.toStdString();
    EXPECT_LE(recordsIn(outcome.data), recordsIn(whole));
    EXPECT_NO_THROW(textOf(outcome.data));
    for (const auto &fragment : outcome.data.fragments()) {
        expectRightPeriods(*fragment);
        expectReadAgain(*fragment);
    }
}

DataSet loadWhole(const QString &path) {
    DataSet whole;
    whole.merge(EverythingLoaded(path, nullptr).data);
    return whole;
}

class MemoryShortage : public testing::TestWithParam<Lasting> {
protected:
    using Loader = std::function<Outcome(std::size_t good)>;

    void SetUp() override {
        if (!FailingAllocations::isPossible()) {
            GTEST_SKIP() << "this sanitizer allows no operator new of ours";
        }
    }

    QString plainFile(int records) const { return folder_.write("a.data", textOfAll(records)); }

    QString archive(int records) const {
        std::vector<ZipEntry> members = cutIntoMembers(textOfAll(records), 3);
        members.push_back({"settings.metadata", "nothing of interest\n"});
        const QString path = folder_.path("a.ghg");
        writeZip(path, members);
        return path;
    }

    // Loads the file until nothing fails any more, each time with one more block of memory to be had.
    static void expectDefinedEnds(const QString &path, const Loader &load) {
        const DataSet whole = loadWhole(path);
        load(FailingAllocations::never); // what libraries keep is there from now on
        bool wasShort = true;
        std::size_t good = 0;
        for (; wasShort && !HasFailure(); ++good) {
            SCOPED_TRACE("memory ran out after " + std::to_string(good) + " blocks");
            const std::size_t held = FailingAllocations::held();
            {
                const Outcome outcome = load(good);
                expectDefinedEnd(outcome, whole);
                wasShort = outcome.wasShort;
            }
            EXPECT_EQ(FailingAllocations::held(), held) << "blocks are lost";
            EXPECT_EQ(firstDifference(textOf(loadWhole(path)), textOf(whole)), "") << "in the next load";
        }
        EXPECT_GT(good, 100U);
    }

    // By the way of all programs, helped by so many threads less one.
    static Loader loader(const QString &path, unsigned threads) {
        return [path, threads](std::size_t good) {
            Outcome outcome;
            ParsingThreads helpers(threads, anySize);
            DataSet source(path.toStdString());
            LoadReport report;
            {
                const std::atomic<bool> cancelled = false;
                const LoadProgress progress = [&](int percent, qint64) { outcome.lastPercent = percent; };
                const FailingAllocations shortage(good, GetParam());
                try {
                    report = loadFile(path, source, cancelled, progress, threads > 1 ? &helpers : nullptr);
                } catch (const std::bad_alloc &) {
                    outcome.hasThrown = true;
                }
                outcome.wasShort = shortage.hasFailed();
            }
            outcome.messages = messagesOf(source, report);
            outcome.data.merge(source);
            return outcome;
        };
    }

    // As the workers of the window load.
    static Loader worker(const QString &path) {
        return [path](std::size_t good) {
            Outcome outcome;
            outcome.messages.reserve(10);
            QDataSet set;
            QObject::connect(&set, &QDataSet::Progress,
                             [&](const QString &, int percent) { outcome.lastPercent = percent; });
            QObject::connect(&set, &QDataSet::Message,
                             [&](const QString &, const QString &text) { outcome.messages.push_back(text); });
            DataSet source(path.toStdString());
            {
                const std::atomic<bool> cancelled = false;
                const FailingAllocations shortage(good, GetParam());
                try {
                    set.LoadFile(path, source, cancelled);
                } catch (const std::bad_alloc &) {
                    outcome.hasThrown = true;
                }
                outcome.wasShort = shortage.hasFailed();
            }
            outcome.data.merge(source);
            return outcome;
        };
    }

    TempFolder folder_;
};

} // namespace

TEST_P(MemoryShortage, APlainFileIsLoadedWholeOrEndsWithAMessage) {
    const QString path = plainFile(90);
    expectDefinedEnds(path, loader(path, 1));
}

TEST_P(MemoryShortage, AnArchiveIsLoadedWholeOrEndsWithAMessage) {
    const QString path = archive(90);
    expectDefinedEnds(path, loader(path, 1));
}

TEST_P(MemoryShortage, ALoadThatOtherThreadsHelpIsWholeOrEndsWithAMessage) {
    const QString path = plainFile(600);
    expectDefinedEnds(path, loader(path, 3));
}

TEST_P(MemoryShortage, AWorkersLoadIsWholeOrEndsWithAMessage) {
    const QString path = plainFile(60);
    expectDefinedEnds(path, worker(path));
}

TEST_P(MemoryShortage, AReaderOfAMemberReadsTheNextOneWhole) {
    const QString path = archive(90);
    const auto lineCount = [&path](ChunkLineReader &reader) {
        std::size_t lines = 0;
        for (bool isThere = reader.open(path, QStringLiteral("1021")); isThere && reader.nextLine();) {
            ++lines;
        }
        return lines;
    };
    ChunkLineReader first;
    const std::size_t lines = lineCount(first);
    ASSERT_GT(lines, 10U);
    bool wasShort = true;
    for (std::size_t good = 0; wasShort; ++good) {
        ChunkLineReader reader;
        {
            const FailingAllocations shortage(good, GetParam());
            try {
                EXPECT_EQ(lineCount(reader), lines) << good;
            } catch (const std::bad_alloc &) { // NOLINT(bugprone-empty-catch)
            }
            wasShort = shortage.hasFailed();
        }
        EXPECT_EQ(lineCount(reader), lines) << good;
    }
}

TEST_P(MemoryShortage, ABatchThatCannotBeHandedOverIsReadByTheThreadThatNeedsIt) {
    DataSet source("a.data");
    source.parseLine(0, "DATAH\tSECONDS\tCH4");
    source.parseLine(1, "DATA\t5\t1");
    constexpr std::string_view line = "DATA\t6\t2.5";
    ParsingThreads threads(1);
    // The list of those that wait takes memory for many at once.
    constexpr std::size_t most = 1000;
    std::vector<std::unique_ptr<ParsingThreads::Job>> jobs;
    do {
        jobs.push_back(std::make_unique<ParsingThreads::Job>());
        jobs.back()->batch.add(*source.blockReadyFor(line), line, 2);
        const FailingAllocations shortage(0, GetParam());
        threads.hand(*jobs.back());
    } while (jobs.back()->state == ParsingThreads::Job::State::waiting && jobs.size() < most);
    ParsingThreads::Job &job = *jobs.back();
    ASSERT_EQ(job.state, ParsingThreads::Job::State::open);
    threads.finish(job);
    EXPECT_EQ(job.batch.lines()[0].result, FieldResult::good);
    EXPECT_EQ(job.batch.lines()[0].stamp.seconds, 6U);
    EXPECT_EQ(job.batch.lines()[0].values[0], 2.5);
    for (const auto &other : jobs) {
        threads.withdraw(*other);
    }
}

INSTANTIATE_TEST_SUITE_P(, MemoryShortage, testing::Values(Lasting::once, Lasting::fromThen),
                         [](const auto &row) { return row.param == Lasting::once ? "Once" : "FromThenOn"; });

#include "data/VectorLevel.h"

#include "EveryLevel.h"
#include "RandomDataFile.h"
#include "support/LoadedSource.h"
#include "support/RecordComparison.h"
#include "support/SanitizerBuild.h"
#include "support/ScratchFolder.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

bool areSame(std::span<const double> a, std::span<const double> b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), isSameNumber);
}

bool areSame(const AveragedSeries &a, const AveragedSeries &b, std::size_t columns) {
    if (!std::equal(a.stamps().begin(), a.stamps().end(), b.stamps().begin(), b.stamps().end(),
                    isSameStamp)) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        for (const Statistic statistic : {Statistic::average, Statistic::minimum, Statistic::maximum}) {
            if (!areSame(periodOf(a, statistic, i, columns), periodOf(b, statistic, i, columns))) {
                return false;
            }
        }
    }
    return true;
}

bool areSame(const Record &a, const Record &b) {
    return isSameStamp(a, b) && areSame(std::span(a.values), std::span(b.values));
}

void expectSame(const DataFragment &a, const DataFragment &b) {
    EXPECT_EQ(a.recordCount(), b.recordCount());
    EXPECT_EQ(a.checksumFailures(), b.checksumFailures());
    EXPECT_EQ(a.firstOffset(), b.firstOffset());
    EXPECT_EQ(a.endOffset(), b.endOffset());
    EXPECT_EQ(a.halfHourIndex().entries(), b.halfHourIndex().entries());
    EXPECT_EQ(a.firstTime(), b.firstTime());
    EXPECT_EQ(a.lastTime(), b.lastTime());
    EXPECT_TRUE(areSame(a.minimumRecord(), b.minimumRecord()));
    EXPECT_TRUE(areSame(a.maximumRecord(), b.maximumRecord()));
    for (std::size_t level = 0; level < DataFragment::periods.size(); ++level) {
        EXPECT_TRUE(areSame(a.series(level), b.series(level), a.valueCount()))
            << DataFragment::periods[level];
    }
}

// Gives how many records the file holds.
std::size_t expectSameAtEveryLevel(const std::string &path) {
    useVectorLevel(VectorLevel::plain);
    const DataSet plain = loadSource(path);
    std::size_t records = 0;
    for (const VectorLevel level : EveryLevel::available()) {
        useVectorLevel(level);
        const DataSet source = loadSource(path);
        EXPECT_EQ(source.fragments().size(), plain.fragments().size());
        auto expected = plain.fragments().begin();
        for (const auto &fragment : source.fragments()) {
            expectSame(*fragment, **expected);
            records += fragment->recordCount();
            ++expected;
        }
    }
    return records;
}

} // namespace

TEST(VectorLevel, LoadingRandomFilesGivesTheSameAtEveryLevel) {
    const EveryLevel levels;
    const ScratchFolder folder;
    std::size_t records = 0;
    for (std::uint64_t seed = 1; seed <= scaledDown(40); ++seed) {
        RandomDataFile::Options options;
        options.seed = seed;
        options.timezone = "Europe/Berlin";
        options.wallZone = "Europe/Berlin";
        options.start = 1572138000 - 5000;
        options.lines = 3000;
        options.isPlain = seed % 2 == 0;
        records += expectSameAtEveryLevel(folder.write("file.data", RandomDataFile(options).text()));
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
    }
    EXPECT_GT(records, scaledDown(40) * 500);
}

TEST(VectorLevel, LoadingTheExampleFilesGivesTheSameAtEveryLevel) {
    const EveryLevel levels;
    for (const auto &file : std::filesystem::directory_iterator(FVQA_EXAMPLES_DIR)) {
        if (file.path().extension() == ".data") {
            EXPECT_GT(expectSameAtEveryLevel(file.path().string()), 1000U) << file.path();
        }
    }
}

TEST(VectorLevel, IsTheOneThatWasAskedFor) {
    const EveryLevel levels;
    for (const VectorLevel level : EveryLevel::available()) {
        useVectorLevel(level);
        EXPECT_EQ(vectorLevel(), level);
    }
}

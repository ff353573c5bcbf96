#include "cli/OrderedLoader.h"

#include "cli/ProgressBar.h"
#include "cli/SampleFiles.h"
#include "cli/StandardError.h"
#include "cli/TemporaryFolder.h"
#include "loading/support/DataText.h"
#include "loading/support/EverythingLoaded.h"
#include "time/Timezone.h"

#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

class OrderedLoaderTest : public ::testing::Test {
protected:
    OrderedLoaderTest() {
        zoneDirectory = FVQA_ZONEINFO_DIR;
        // The first files take the longest.
        for (std::uint32_t i = 0; i < 12; ++i) {
            files_.push_back(folder_.write(std::to_string(i) + ".data",
                                           sampleData("QA330", 1000 * i + 1, i == 0 ? 20000 : 12 - i)));
        }
    }

    TemporaryFolder folder_;
    std::vector<std::string> files_;
    StandardError standardError_{STDERR_FILENO};
    ProgressBar progress_{standardError_, "Loading", 0};
};

TEST_F(OrderedLoaderTest, FilesComeInTheOrderInWhichTheyWereNamed) {
    for (const unsigned workers : {1U, 3U, 50U}) {
        OrderedLoader loader(files_, workers, progress_);
        std::vector<std::string> names;
        while (const auto file = loader.next()) {
            names.push_back(file->name);
            EXPECT_EQ(file->data.fragments().size(), 1U);
        }
        EXPECT_EQ(names, files_);
        EXPECT_EQ(loader.next(), nullptr);
    }
}

TEST_F(OrderedLoaderTest, ATakerThatLosesInterestIsNotHeldUp) {
    OrderedLoader loader(files_, 2, progress_);
    EXPECT_EQ(loader.next()->name, files_.front());
}

TEST_F(OrderedLoaderTest, ALargeFileComesOutTheSameWhoeverHelpsWithIt) {
    files_.resize(3);
    files_.insert(files_.begin() + 1, folder_.write("large.data", largeDataText("QA340", 1, 70'000)));
    ASSERT_GT(std::filesystem::file_size(files_[1]), std::uintmax_t{ParsingThreads::smallSource});
    std::vector<std::string> expected;
    for (const unsigned workers : {1U, 2U, 4U, 8U}) {
        OrderedLoader loader(files_, workers, progress_);
        std::vector<std::string> texts;
        while (const auto file = loader.next()) {
            texts.push_back(textOf(file->data));
        }
        if (workers == 1) {
            expected = texts;
        }
        ASSERT_EQ(texts.size(), files_.size());
        for (std::size_t i = 0; i < texts.size(); ++i) {
            EXPECT_EQ(firstDifference(texts[i], expected[i]), "") << files_[i] << ", workers: " << workers;
        }
    }
}

TEST_F(OrderedLoaderTest, ATakerThatLosesInterestInALargeFileIsNotHeldUp) {
    files_.push_back(folder_.write("large.data", largeDataText("QA340", 1, 70'000)));
    OrderedLoader loader({files_[1], files_.back()}, 2, progress_);
    EXPECT_EQ(loader.next()->name, files_[1]);
}

TEST_F(OrderedLoaderTest, NoFilesAreNoWork) {
    OrderedLoader loader({}, 2, progress_);
    EXPECT_EQ(loader.next(), nullptr);
}

TEST_F(OrderedLoaderTest, AFileThatCannotBeReadComesWithItsProblem) {
    OrderedLoader loader({folder_.path("missing.data")}, 1, progress_);
    const auto file = loader.next();
    ASSERT_NE(file, nullptr);
    EXPECT_FALSE(file->report.problem.isEmpty());
}

} // namespace

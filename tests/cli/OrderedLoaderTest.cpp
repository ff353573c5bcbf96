#include "cli/OrderedLoader.h"

#include "cli/ProgressBar.h"
#include "cli/SampleFiles.h"
#include "cli/StandardError.h"
#include "cli/TemporaryFolder.h"
#include "time/Timezone.h"

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

// Files that load while the system gives no room for the bytes that are read.

#include "loading/support/AddressSpaceLimit.h"
#include "loading/support/DataText.h"
#include "loading/support/EverythingLoaded.h"
#include "loading/support/TempFolder.h"
#include "loading/support/ZipWriting.h"
#include "support/SanitizerBuild.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <string>

namespace {

constexpr rlim_t mebibyte = rlim_t{1024} * 1024;
constexpr std::uint32_t start = 1'600'000'000;

class LoadingShortage : public testing::Test {
protected:
    void SetUp() override {
        if (isSanitizerBuild) {
            GTEST_SKIP() << "A sanitizer needs more address space than any limit leaves";
        }
        // A large block that was given back is gone, and not kept for the next one.
        ASSERT_EQ(mallopt(M_MMAP_THRESHOLD, 128 * 1024), 1);
    }

    TempFolder folder_;
};

} // namespace

TEST_F(LoadingShortage, AFileForWhoseBytesThereIsNoRoomEndsWithAMessageAndLoadsLater) {
    const std::string text = dataText("QA330", start, 100);
    const QString plain = folder_.write("a.data", text);
    const QString archive = folder_.path("a.ghg");
    writeZip(archive, {{"a.data", text}});
    for (const QString &path : {plain, archive}) {
        {
            const AddressSpaceLimit limit(4 * mebibyte);
            const EverythingLoaded loaded(path, nullptr);
            EXPECT_EQ(loaded.report.problem, "There is not enough memory: records may be missing");
            EXPECT_TRUE(loaded.data.fragments().empty());
            EXPECT_TRUE(loaded.progress.starts_with("0 % of ")) << loaded.progress;
            EXPECT_NE(loaded.progress.find("\n100 % of "), std::string::npos) << loaded.progress;
        }
        const EverythingLoaded loaded(path, nullptr);
        EXPECT_EQ(loaded.report.problem, "");
        ASSERT_EQ(loaded.data.fragments().size(), 1U);
        EXPECT_EQ(loaded.data.fragments().begin()->get()->recordCount(), 100U);
    }
}

TEST_F(LoadingShortage, ALoadWithRoomForOneBlockOfBytesOnlyGetsNoHelpAndIsWhole) {
    const QString path = folder_.write("a.data", dataText("QA330", start, 500'000));
    const std::string expected = textOf(EverythingLoaded(path, nullptr));
    ParsingThreads threads(2, 0);
    const AddressSpaceLimit limit(16 * mebibyte);
    EXPECT_EQ(firstDifference(textOf(EverythingLoaded(path, &threads)), expected), "");
}

// A file that several threads could load while the system gives no thread for that.

#include "loading/support/AddressSpaceLimit.h"
#include "loading/support/DataText.h"
#include "loading/support/EverythingLoaded.h"
#include "loading/support/TempFolder.h"
#include "support/SanitizerBuild.h"

#include <gtest/gtest.h>

// In a program of its own, as the stacks of threads that ended are used again.
TEST(ParsingShortage, ALoadThatGetsNoThreadForHelpDoesItAlone) {
    if (isSanitizerBuild) {
        GTEST_SKIP() << "A sanitizer needs more address space than any limit leaves";
    }
    constexpr rlim_t mebibyte = rlim_t{1024} * 1024;
    const TempFolder folder;
    const QString path = folder.write("a.data", dataText("QA330", 1'600'000'000, 500'000));
    const std::string expected = textOf(EverythingLoaded(path, nullptr));
    // From too little for a thread's stack beside the load to enough for all.
    for (const rlim_t more : {16U, 22U, 30U, 60U}) {
        ParsingThreads threads(2, 0);
        const AddressSpaceLimit limit(more * mebibyte);
        EXPECT_EQ(firstDifference(textOf(EverythingLoaded(path, &threads)), expected), "") << more;
    }
}

// Archives that are made to cost as much as they can: memory does not grow with what a member inflates to.

#include "data/DataSet.h"
#include "data/MemoryAllowance.h"
#include "loading/FileLoading.h"
#include "loading/support/TempFolder.h"
#include "support/HeldMemory.h"
#include "support/HostileArchives.h"
#include "support/SanitizerBuild.h"

#include <QFileInfo>

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

namespace {

constexpr std::uint64_t mebibyte = std::uint64_t{1024} * 1024;

struct Cost {
    std::uint64_t most = 0;
    std::uint64_t reckoned = 0;
    std::size_t blocks = 0;
};

Cost costOf(const QString &path) {
    const std::uint64_t before = heldMemory();
    Cost cost;
    const std::atomic<bool> cancelled = false;
    DataSet source(path.toStdString());
    loadFile(path, source, cancelled,
             [&](int, qint64) { cost.most = std::max(cost.most, std::max(heldMemory(), before) - before); });
    DataSet merged;
    merged.merge(source);
    cost.most = std::max(cost.most, heldMemory() - before);
    cost.reckoned = source.memoryTaken();
    cost.blocks = merged.fragments().size();
    return cost;
}

// FVQA_MEMBERS, or so many that a kilobyte more for each would show. Without 64-bit fields an archive may
// have 65,535.
std::uint64_t memberCount() {
    const char *const text = std::getenv("FVQA_MEMBERS");
    return text == nullptr ? 12000 : std::stoull(text);
}

} // namespace

TEST(HostileArchive, NoneTakesMoreThanItsBlocksItsListOfMembersAndTheReader) {
    if (isSanitizerBuild) {
        GTEST_SKIP() << "the sanitizers have an allocator of their own";
    }
    const TempFolder folder;
    const QString path = folder.path("a.zip");
    const std::uint64_t members = memberCount();
    for (const HostileArchive &archive : hostileArchives()) {
        const std::uint64_t inflated = archive.name.starts_with("members ") ? members * 1024 : 4 * mebibyte;
        archive.write(path, inflated);
        const Cost cost = costOf(path);
        const auto size = static_cast<std::uint64_t>(QFileInfo(path).size());
        EXPECT_LE(cost.reckoned, MemoryAllowance::stock + MemoryAllowance::forEachByteRead * inflated);
        EXPECT_LE(cost.most, 3 * cost.reckoned + 8 * size + 16 * mebibyte) << archive.name;
    }
}

TEST(HostileArchive, EveryMemberIsReadHoweverManyThereAre) {
    const TempFolder folder;
    const QString path = folder.path("a.zip");
    std::size_t asked = 0;
    for (const HostileArchive &archive : hostileArchives()) {
        if (archive.name == "members of a block each") {
            archive.write(path, std::size_t{2000} * 1024);
            asked = costOf(path).blocks;
        }
    }
    EXPECT_EQ(asked, 2000U);
}
